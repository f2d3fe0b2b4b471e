// quill: what the library does, from the command line.
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "cli/command.h"
#include "cli/command_tree.h"
#include "cli/console.h"
#include "cli/manual.h"
#include "orin/result.h"

namespace Quill::Cli {

namespace {

// A word that only commands of two words begin with.
template <const char* Name, const char* Summary>
void AddFamily(CommandLine& line) {
    line.AddFamily(Name, Summary);
}

constexpr char Savepoint[] = "savepoint", SavepointSummary[] = "Keep designs as they are, and restore them";
constexpr char Bus[] = "bus", BusSummary[] = "Expand and build bus labels";
constexpr char Label[] = "label", LabelSummary[] = "Check and invert labels";

// In the order in which the help lists them.
// clang-format off
constexpr void (*Commands[])(CommandLine&) = {
    AddImportCommand,
    AddExportCommand,
    AddInfoCommand,
    AddStampCommand,
    AddFamily<Savepoint, SavepointSummary>,
    AddSavepointListCommand,
    AddSavepointAddCommand,
    AddSavepointRestoreCommand,
    AddSavepointRemoveCommand,
    AddPagesCommand,
    AddPagesWhyCommand,
    AddPagesExcludeCommand,
    AddPagesIncludeCommand,
    AddSheetsCommand,
    AddSheetsMoveCommand,
    AddSheetsUpCommand,
    AddSheetsDownCommand,
    AddSheetsRenumberCommand,
    AddSheetsNewCommand,
    AddWalkCommand,
    AddIdsCommand,
    AddRenderCommand,
    AddReportCommand,
    AddReuseCommand,
    AddConnectorsCommand,
    AddConnectorsNextCommand,
    AddConnectorsAllCommand,
    AddConnectorsLonelyCommand,
    AddNetsCommand,
    AddBusesCommand,
    AddFamily<Bus, BusSummary>,
    AddBusExpandCommand,
    AddBusBuildCommand,
    AddBusContentsCommand,
    AddFamily<Label, LabelSummary>,
    AddLabelCheckCommand,
    AddLabelInvertCommand,
    AddEventsCommand,
    AddFontCommand,
    AddFlowsCommand,
    AddMapCommand,
    AddLibrariesCommand,
    AddSymbolsCommand,
    AddWdirsCommand,
    AddWatchCommand,
};
// clang-format on

int Fail(std::string_view message) {
    Say(message);
    return Error;
}

// What was not written must not pass for an answer.
ExitCode Flushed(ExitCode code) {
    if (!std::cout.flush()) throw CommandError("Standard output cannot be written");
    return code;
}

// How the build gets what is installed beside the program.
void AddGenerateOption(CLI::App& app) {
    const auto generate = [&app](const std::string& name) {
        for (const ManualForm& form : ManualForms)
            if (form.name == name) {
                std::cout << form.write(CommandTree(app));
                throw CLI::Success();
            }
        throw CLI::ValidationError("--generate", "There is no form " + name);
    };
    app.add_option_function<std::string>("--generate", generate)->trigger_on_parse()->group("");
}

int Run(int argc, char** argv) {
    CLI::App app("Works on schematic designs.", "quill");
    app.require_subcommand(1);
    app.set_version_flag("--version", "quill " QUILL_VERSION, "print the version of the program and exit");
    app.footer("Exit codes: 0 done, 1 a negative answer, 2 an error.\n\n\"quill COMMAND --help\" has examples.");
    CommandLine line(app);
    for (const auto add : Commands)
        add(line);
    AddGenerateOption(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& answered) {
        app.exit(answered);
        return Flushed(Done);
    } catch (const CLI::ParseError& error) {
        return Fail(std::string(error.what()) + ". \"quill --help\" says how it is used.");
    }
    return Flushed(line.Chosen()());
}

}  // namespace

}  // namespace Quill::Cli

int main(int argc, char** argv) {
    using Quill::Cli::Fail;
    try {
        return Quill::Cli::Run(argc, argv);
    } catch (const std::bad_alloc&) {
        return Fail("Out of memory");
    } catch (const Orin::Result& failure) {
        return Fail(failure.GetDescription().View());
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
