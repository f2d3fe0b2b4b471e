#include <fmt/format.h>

#include "cli/command_tree.h"
#include "cli/manual.h"

namespace Quill::Cli {

namespace {

struct Paragraph {
    const char* term;
    const char* text;
};

constexpr Paragraph ExitStatus[] = {
    {"0", "Done."},
    {"1", "A negative answer: what was asked for is not there, or there is something to complain of."},
    {"2", "An error. One message on standard error says what is wrong, and nothing was written."},
};

constexpr Paragraph Environment[] = {
    {"NO_COLOR", "When set and not empty, tables have no colours."},
    {"TERM", "A terminal without a name, or one called dumb, gets neither colours nor progress."},
    {"TOVE_HOME", "The folder of the installation whose configuration is read."},
};

constexpr Paragraph FilesRead[] = {
    {"*.qdb", "Design files. While one is written, NAME.qdb-wal, NAME.qdb-shm and NAME.qdb-lock stand beside it."},
    {"*.json", "Designs as JSON."},
    {"*.kicad_sch", "Schematics of KiCad. DESIGN is then the root schematic, which is read and never written."},
};

constexpr const char* Session[] = {
    "quill import board.kicad_sch -o board.qdb",
    "quill pages board.qdb --order print",
    "quill sheets renumber board.qdb controller --start 10 --step 10 --dry-run",
    "quill export board.qdb -o board.json",
};

// Text as the formatter takes it: nothing in it is a command.
std::string EscapedRoff(std::string_view text) {
    std::string escaped;
    bool beginsLine = true;
    for (const char c : text) {
        if (beginsLine && (c == '.' || c == '\'')) escaped += "\\&";
        beginsLine = c == '\n';
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else if (c == '\'') {
            escaped += "\\(aq";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

// Builds the page line by line.
class Page {
public:
    void Request(std::string_view request) { m_text += fmt::format("{}\n", request); }
    void Section(std::string_view title) { Request(fmt::format(".SH {}", title)); }
    void Text(std::string_view text) { Request(EscapedRoff(text)); }

    template <std::size_t Count>
    void Terms(const char* section, const Paragraph (&paragraphs)[Count]) {
        Section(section);
        for (const Paragraph& paragraph : paragraphs)
            Term("\\fB" + EscapedRoff(paragraph.term) + "\\fR", paragraph.text);
    }
    // `term` may hold requests of the formatter.
    void Term(const std::string& term, std::string_view text) {
        Request(".TP");
        Request(term);
        Text(text);
    }

    // Paragraphs with an empty line between them.
    void Paragraphs(const std::string& text) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find("\n\n", at), text.size());
            Request(".PP");
            Text(text.substr(at, end - at));
            at = end + 2;
        }
    }

    template <class Lines>
    void Example(const Lines& lines) {
        Request(".PP");
        Request(".RS 4");
        Request(".nf");
        for (const auto& line : lines)
            Text(line);
        Request(".fi");
        Request(".RE");
    }

    std::string Take() { return std::move(m_text); }

private:
    std::string m_text;
};

// "\fB-o\fR, \fB--output\fR \fIFILE\fR"
std::string TermOf(const ArgumentInfo& option) {
    std::string term;
    for (const std::string& spelling : option.spellings)
        term += (term.empty() ? "\\fB" : ", \\fB") + EscapedRoff(spelling) + "\\fR";
    if (!option.placeholder.empty()) term += " \\fI" + EscapedRoff(option.placeholder) + "\\fR";
    return term;
}

std::string SynopsisOf(const CommandInfo& command) {
    std::string synopsis = "\\fB" + EscapedRoff(command.Call("quill")) + "\\fR";
    for (const ArgumentInfo& argument : command.positionals) {
        const std::string name =
            "\\fI" + EscapedRoff(argument.placeholder) + (argument.isRepeated ? "\\fR..." : "\\fR");
        synopsis += argument.isRequired ? " " + name : " [" + name + "]";
    }
    for (const ArgumentInfo& option : command.options)
        if (option.isRequired)
            synopsis += " " + TermOf({{option.spellings.front()}, option.placeholder, {}, {}, {}, {}});
    return synopsis + " [\\fIOPTIONS\\fR]";
}

bool IsHelp(const ArgumentInfo& option) {
    return option.spellings.back() == "--help";
}

std::string DescriptionOf(const ArgumentInfo& argument) {
    std::string text = argument.description;
    std::string words;
    for (const std::string& word : argument.values.words)
        words += (words.empty() ? "; one of " : ", ") + word;
    return text + words;
}

void Describe(const CommandInfo& command, Page& page) {
    page.Request(".SS " + EscapedRoff(command.Call("quill")));
    page.Text(command.summary + '.');
    if (!command.isComplete) return;
    page.Request(".PP");
    page.Request(SynopsisOf(command));
    for (const ArgumentInfo& positional : command.positionals)
        page.Term("\\fI" + EscapedRoff(positional.placeholder) + "\\fR", DescriptionOf(positional));
    for (const ArgumentInfo& option : command.options)
        if (!IsHelp(option)) page.Term(TermOf(option), DescriptionOf(option));
    page.Paragraphs(command.details);
    if (!command.examples.empty()) page.Example(command.examples);
}

}  // namespace

std::string ManPage(const std::vector<CommandInfo>& commands) {
    const CommandInfo& program = commands.front();
    Page page;
    page.Request(fmt::format(".TH QUILL 1 \"\" \"{}\" \"User Commands\"", EscapedRoff("quill " QUILL_VERSION)));
    page.Request(".nh");
    page.Request(".ad l");
    page.Section("NAME");
    page.Text("quill - works on schematic designs");
    page.Section("SYNOPSIS");
    page.Request("\\fBquill\\fR \\fICOMMAND\\fR [\\fIARGUMENTS\\fR]");
    page.Section("DESCRIPTION");
    page.Text(
        "quill does from the command line what the library QuillUtils70 does for an application. Answers go to "
        "standard "
        "output, messages to standard error.");
    page.Paragraphs(
        "DESIGN is a design file, told by its content; or the root schematic of a KiCad design, told by its name "
        "ending "
        "in .kicad_sch; else it is JSON. No command that asks changes it. Commands that edit do so in one transaction: "
        "the file holds all of it, or is as it was. With --dry-run they say what they would do, and do nothing.\n\n"
        "Tables are for people. The forms that --json gives stay as they are; members may be added.");
    page.Section("OPTIONS");
    for (const ArgumentInfo& option : program.options)
        page.Term(TermOf(option), DescriptionOf(option));
    page.Section("COMMANDS");
    for (const CommandInfo& command : commands)
        if (!command.words.empty()) Describe(command, page);
    page.Terms("EXIT STATUS", ExitStatus);
    page.Terms("ENVIRONMENT", Environment);
    page.Terms("FILES", FilesRead);
    page.Section("EXAMPLES");
    page.Text("From a schematic to a design file with its sheets renumbered, looked at before it is done:");
    page.Example(Session);
    return page.Take();
}

}  // namespace Quill::Cli
