// What a sheet connector leads to.
#pragma once

#include <string>

#include "cli/command.h"

namespace Quill::Cli {

struct TargetsOptions {
    std::string design;
    std::string key;
    std::string config;
    bool json = false;
};

// Adds DESIGN, KEY, --config and --json.
void AddTargetsOptions(const Syntax& command, TargetsOptions& options);

// Shows all that the connector is joined with, or the next one only, which is an object in JSON and no array.
// NegativeAnswer when it stands alone.
ExitCode ShowTargets(const TargetsOptions& options, bool nextOnly);

}  // namespace Quill::Cli
