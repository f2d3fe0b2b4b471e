// What the commands of the program are made of. Each has a file of its own, which enters it in the command line.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/syntax.h"

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

// What a command does; it gives the exit code.
using Action = std::function<ExitCode()>;

// Where commands enter themselves, and what the command line then chose among them.
class CommandLine {
public:
    // Borrows `app`.
    explicit CommandLine(CLI::App& app) : m_app(app) {}

    // Adds the first word of commands that have two.
    void AddFamily(const char* name, const char* summary);

    // Adds the command called `name`: a word, or the name of a family, or of a command that is complete with its
    // options, and a word. `details` stand below the options in the command's help and hold examples. `action` is
    // called when the command line chose this command.
    Syntax Add(const std::string& name, const char* summary, const char* details, Action action);

    // The action of the command that was chosen; empty until the command line is parsed.
    const Action& Chosen() const noexcept { return m_chosen; }

private:
    CLI::App& m_app;
    std::map<const CLI::App*, std::vector<const CLI::Option*>> m_required;  // of commands with commands below them
    Action m_chosen;
};

// The options that most commands have.
void AddDesignArgument(const Syntax& command, std::string& design);
void AddConfigOption(const Syntax& command, std::string& config);
void AddJsonFlag(const Syntax& command, bool& json);

// ---- The commands, by their files ----

void AddBusBuildCommand(CommandLine& line);
void AddBusContentsCommand(CommandLine& line);
void AddBusExpandCommand(CommandLine& line);
void AddBusesCommand(CommandLine& line);
void AddConnectorsCommand(CommandLine& line);
void AddConnectorsAllCommand(CommandLine& line);
void AddConnectorsLonelyCommand(CommandLine& line);
void AddConnectorsNextCommand(CommandLine& line);
void AddEventsCommand(CommandLine& line);
void AddExportCommand(CommandLine& line);
void AddFlowsCommand(CommandLine& line);
void AddFontCommand(CommandLine& line);
void AddIdsCommand(CommandLine& line);
void AddImportCommand(CommandLine& line);
void AddInfoCommand(CommandLine& line);
void AddLabelCheckCommand(CommandLine& line);
void AddLabelInvertCommand(CommandLine& line);
void AddLibrariesCommand(CommandLine& line);
void AddMapCommand(CommandLine& line);
void AddNetsCommand(CommandLine& line);
void AddPagesCommand(CommandLine& line);
void AddPagesExcludeCommand(CommandLine& line);
void AddPagesIncludeCommand(CommandLine& line);
void AddPagesWhyCommand(CommandLine& line);
void AddRenderCommand(CommandLine& line);
void AddReportCommand(CommandLine& line);
void AddReuseCommand(CommandLine& line);
void AddSavepointAddCommand(CommandLine& line);
void AddSavepointListCommand(CommandLine& line);
void AddSavepointRemoveCommand(CommandLine& line);
void AddSavepointRestoreCommand(CommandLine& line);
void AddSheetsCommand(CommandLine& line);
void AddSheetsDownCommand(CommandLine& line);
void AddSheetsMoveCommand(CommandLine& line);
void AddSheetsNewCommand(CommandLine& line);
void AddSheetsRenumberCommand(CommandLine& line);
void AddSheetsUpCommand(CommandLine& line);
void AddStampCommand(CommandLine& line);
void AddSymbolsCommand(CommandLine& line);
void AddWalkCommand(CommandLine& line);
void AddWatchCommand(CommandLine& line);
void AddWdirsCommand(CommandLine& line);

}  // namespace Quill::Cli
