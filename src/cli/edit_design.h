// Commands that change a design.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/command.h"
#include "cli/open_design.h"

namespace Quill::Cli {

struct EditOptions {
    std::string design;
    bool dryRun = false;
};

// Adds DESIGN and --dry-run.
void AddEditOptions(CLI::App& command, EditOptions& options);

// Opens the design file, lets `edit` work on it in one transaction, and puts the changed design in the file's place.
// `edit` gives a sentence for each thing that it did; they are the command's answer. With --dry-run, and when there are
// no sentences, the file is not touched. Throws a CommandError, with the file as it was, when anything fails, and for a
// schematic, which is not to be edited.
ExitCode EditDesign(const EditOptions& options, const std::function<std::vector<std::string>(const OpenDesign&)>& edit);

}  // namespace Quill::Cli
