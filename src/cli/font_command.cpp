// quill font: what a font string says.
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "config/font_string_parser.h"

namespace Quill::Cli {

namespace {

using Parser = Fonts::CFontStringParser;
struct FontOptions {
    std::string text;
    bool json = false;
};

Json AsJson(const Parser::CFontData& font) {
    Json answer{{"text", Parser::toString(font)}, {"style", font.Style()}, {"custom", font.Custom()}};
    if (font.Custom())
        answer.AddMembersOf({{"face", font.FontFace()},
                             {"styleName", font.FontStyle()},
                             {"weight", font.FontWeight()},
                             {"strikeout", font.FontStrikeout()},
                             {"underline", font.FontUnderline()},
                             {"bold", font.FontBold()},
                             {"italic", font.FontItalic()},
                             {"charset", font.FontCharset()}});
    return answer;
}

// The members of the JSON form, one a line.
std::string AsTable(const Parser::CFontData& font) {
    Table table({{"Field"}, {"Value"}});
    const Json fields = AsJson(font);
    for (const auto& [name, value] : *fields.If<Json::Object>()) {
        const auto* const text = value.If<std::string>();
        table.AddRow({name, text != nullptr ? *text : value.Text()});
    }
    return table.Render(HasColours());
}

ExitCode RunFont(const FontOptions& options) {
    Parser::CFontData font;
    Parser::fromString(options.text, font);
    Print(options.json, font, AsJson, AsTable);
    return Done;
}

}  // namespace

void AddFontCommand(CommandLine& line) {
    const auto options = std::make_shared<FontOptions>();
    const Syntax command =
        line.Add("font", "Show what the font string of a text says",
                 "It is the number of a style, or for a custom font the number and eight fields with |\n"
                 "between. \"text\" is the string as the library writes it.\n"
                 "\n"
                 "Examples:\n"
                 "  quill font '3|Arial|0|700|0|0|1|0|0'",
                 [options] { return RunFont(*options); });
    command.Option("TEXT", options->text, "font string").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
