// The nets that a bus label stands for.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/syntax.h"
#include "labels/net_limiter.h"

namespace Quill::Cli {

// How labels are read: the brackets of their indexes (labels/net_limiter.h) and the contents of named buses.
struct LabelRules {
    int limiter = BusContents::SquareLimiter;
    std::map<std::string, std::string> contents = {};
};

// The rules of the project whose design is open (open_design.h).
LabelRules RulesOfProject();

// The rules of the design file of that name, or, without one, square brackets and no contents; the limiter, when it is
// given, stands in for that of the design.
LabelRules RulesOf(const std::optional<std::string>& design, const std::optional<std::string>& limiter);

// The options --design and --limiter.
void AddRuleOptions(const Syntax& command, std::optional<std::string>& design, std::optional<std::string>& limiter);

// The members of the label in their order. A label that is the name of a bus stands for its contents; one that begins
// with "$" is a single net. Throws a CommandError for buses that list each other in a circle, and for a label that
// stands for more than a million nets.
std::vector<std::string> MembersOf(const std::string& label, const LabelRules& rules);

}  // namespace Quill::Cli
