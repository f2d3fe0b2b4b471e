// quill: what the library does, from the command line.
#include <exception>
#include <iostream>

#include "cli/command.h"
#include "cli/console.h"

namespace {

int Fail(std::string_view message) {
    std::cerr << "quill: " << Quill::Cli::Printable(message) << '\n';
    return Quill::Cli::Error;
}

int Run(int argc, char** argv) {
    using namespace Quill::Cli;
    Action chosen;
    CLI::App app("Works on schematic designs.", "quill");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 done, 1 a negative answer, 2 an error.\n\n\"quill COMMAND --help\" has examples.");
    AddExportCommand(app, chosen);
    AddInfoCommand(app, chosen);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return Fail(std::string(error.what()) + ". \"quill --help\" says how it is used.");
    }
    const ExitCode code = chosen();
    // What was not written must not pass for an answer.
    if (!std::cout.flush()) throw CommandError("Standard output cannot be written");
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        return Fail("Out of memory");
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
