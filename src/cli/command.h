// What a command of the program is made of. Each command has a file of its own and a line in main.cpp.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

namespace Quill::Cli {

// Exit codes of the program.
enum ExitCode : int {
    Done = 0,
    NegativeAnswer = 1,
    Error = 2,
};

// Ends a command with exit code Error; the message goes to standard error.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The command that the command line chose; it gives the exit code.
using Action = std::function<ExitCode()>;

// Add `quill export DESIGN -o FILE` and `quill info DESIGN`. `chosen` is set when the command line is parsed and
// outlives `app`.
void AddExportCommand(CLI::App& app, Action& chosen);
void AddInfoCommand(CLI::App& app, Action& chosen);

}  // namespace Quill::Cli
