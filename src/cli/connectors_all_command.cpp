// quill connectors all: what a sheet connector is joined with.
#include "cli/connector_targets.h"

namespace Quill::Cli {

void AddConnectorsAllCommand(CommandLine& line) {
    const auto options = std::make_shared<TargetsOptions>();
    const Syntax command =
        line.Add("connectors all", "List what a sheet connector is joined with",
                 "All other connectors with the same label, in page order. Exit code 1 when there are\n"
                 "none. \"quill connectors\" tells the keys.\n"
                 "\n"
                 "Examples:\n"
                 "  quill connectors all examples/lamp/lamp.kicad_sch '[4:0:7]'",
                 [options] { return ShowTargets(*options, false); });
    AddTargetsOptions(command, *options);
}

}  // namespace Quill::Cli
