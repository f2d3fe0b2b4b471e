// quill connectors next: where a sheet connector leads to.
#include "cli/connector_targets.h"

namespace Quill::Cli {

void AddConnectorsNextCommand(CommandLine& line) {
    const auto options = std::make_shared<TargetsOptions>();
    const Syntax command =
        line.Add("connectors next", "Say where a sheet connector leads to",
                 "The next connector with the same label in page order, around from the last to the\n"
                 "first. Exit code 1 when there is no other. \"quill connectors\" tells the keys.\n"
                 "\n"
                 "Examples:\n"
                 "  quill connectors next examples/vibration-recorder.json '48:0:7/[128:0:7]'",
                 [options] { return ShowTargets(*options, true); });
    AddTargetsOptions(command, *options);
}

}  // namespace Quill::Cli
