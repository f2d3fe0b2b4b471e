// quill label check: whether a text may be a label.
#include <iostream>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "labels/label_utils.h"

namespace Quill::Cli {

namespace {

struct LabelCheckOptions {
    std::string text;
    bool json = false;
};

struct Question {
    const char* name;  // in JSON
    const char* text;
    bool (*ask)(const std::string& label);
};

constexpr Question Questions[] = {
    {"label", "may be a label", LabelValidationUtils::IslabelValid},
    {"netLabel", "may name a net", LabelValidationUtils::IsNetLabelValid},
    {"inverted", "inverted", LabelInversionUtils::Get},
    {"partlyInverted", "inverted in part", LabelInversionUtils::IsPartial},
};

ExitCode RunLabelCheck(const LabelCheckOptions& options) {
    if (options.json) {
        Json answer{{"text", options.text}};
        for (const Question& question : Questions)
            answer.Add(question.name, question.ask(options.text));
        PrintJson(answer);
    } else {
        Table table({{"Question"}, {"Answer"}});
        for (const Question& question : Questions)
            table.AddRow({question.text, question.ask(options.text) ? "yes" : "no"});
        std::cout << table.Render(HasColours());
    }
    return LabelValidationUtils::IsNetLabelValid(options.text) ? Done : NegativeAnswer;
}

}  // namespace

void AddLabelCheckCommand(CommandLine& line) {
    const auto options = std::make_shared<LabelCheckOptions>();
    const Syntax command = line.Add(
        "label check", "Say whether a text may be a label, and whether it is inverted",
        "A label holds no backslash. One that names a net is not | alone and holds none of @ $ ' \" ; \\ < > { } *\n"
        "either. Exit code 1 when the text may not name a net.\n"
        "\n"
        "Examples:\n"
        "  quill label check '~RESET'",
        [options] { return RunLabelCheck(*options); });
    command.Option("TEXT", options->text, "the text").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
