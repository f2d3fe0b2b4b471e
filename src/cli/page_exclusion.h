// Sets and removes the marks that exclude pages from printing.
#pragma once

#include <string>
#include <vector>

#include "cli/edit_design.h"

namespace Quill::Cli {

struct ExclusionOptions {
    EditOptions edit;
    std::string config;
    std::vector<std::string> pages;
};

// Adds DESIGN, PAGE..., --config, --dry-run and --json.
void AddExclusionOptions(const Syntax& command, ExclusionOptions& options);

// The mark stands on the sheet, so it holds for all its occurrences; the answer says how many there are.
ExitCode EditExclusion(const ExclusionOptions& options, bool exclude);

}  // namespace Quill::Cli
