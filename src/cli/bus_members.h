// The nets that a bus label stands for.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "labels/net_limiter.h"

namespace Quill::Cli {

// How labels are read: the brackets of their indexes (labels/net_limiter.h) and the contents of named buses.
struct LabelRules {
    int limiter = BusContents::SquareLimiter;
    std::map<std::string, std::string> contents = {};
};

// The rules of the project whose design is open (open_design.h).
LabelRules RulesOfProject();

// The members of the label in their order. A label that is the name of a bus stands for its contents; one that begins
// with "$" is a single net. Throws a CommandError for buses that list each other in a circle, and for a label that
// stands for more than a million nets.
std::vector<std::string> MembersOf(const std::string& label, const LabelRules& rules);

}  // namespace Quill::Cli
