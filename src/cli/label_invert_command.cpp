// quill label invert: the label of the inverted signal.
#include <iostream>

#include "cli/command.h"
#include "cli/console.h"
#include "labels/label_utils.h"

namespace Quill::Cli {

namespace {

struct LabelInvertOptions {
    std::string text;
    bool off = false;
    bool json = false;
};

ExitCode RunLabelInvert(const LabelInvertOptions& options) {
    std::string label = options.text;
    LabelInversionUtils::Set(label, !options.off);
    if (options.json) {
        PrintJson({{"text", options.text}, {"label", label}});
    } else {
        std::cout << Printable(label) << '\n';
    }
    return Done;
}

}  // namespace

void AddLabelInvertCommand(CommandLine& line) {
    const auto options = std::make_shared<LabelInvertOptions>();
    const Syntax command = line.Add("label invert", "Make a label inverted as a whole",
                                    "Inversion marks of parts go. With --off all marks go.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill label invert 'R~W'\n"
                                    "  quill label invert '~RESET' --off",
                                    [options] { return RunLabelInvert(*options); });
    command.Option("TEXT", options->text, "the label").Required();
    command.Flag("--off", options->off, "make it not inverted");
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
