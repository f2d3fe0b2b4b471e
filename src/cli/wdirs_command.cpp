// quill wdirs: where design-support files are looked for.
#include <algorithm>
#include <optional>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/flow_lookup.h"
#include "config/wdir_utils.h"

namespace Quill::Cli {

namespace {

struct WdirsOptions {
    std::optional<std::string> flow;
    bool json = false;
};

ExitCode RunWdirs(const WdirsOptions& options) {
    std::vector<std::string> folders;
    const bool known =
        options.flow ? WdirUtils::GetWDIRs(folders, FindFlow(*options.flow).GetType()) : WdirUtils::GetWDIRs(folders);
    if (!known) throw CommandError("The working directories are not known");
    // Where TOVE_HOME is not set, the list has an empty text in the place of the flow's templates.
    folders.erase(std::remove(folders.begin(), folders.end(), std::string()), folders.end());
    if (options.json) {
        PrintJson(folders);
    } else {
        PrintLines(folders);
    }
    return Done;
}

}  // namespace

void AddWdirsCommand(CommandLine& line) {
    const auto options = std::make_shared<WdirsOptions>();
    const Syntax command =
        line.Add("wdirs", "List the folders in which design-support files are looked for",
                 "In their order: those of QUILL_WDIRS, and with FLOW, a name or a type, those of its\n"
                 "templates and of the installation, which TOVE_HOME leads to.\n"
                 "\n"
                 "Examples:\n"
                 "  quill wdirs netlist",
                 [options] { return RunWdirs(*options); });
    command.Option("FLOW", options->flow, "name or type of a flow");
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
