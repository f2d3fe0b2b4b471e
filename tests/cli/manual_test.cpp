// The manual page and the completions, held against what the program's help says.
#include "tests/cli/run_program.h"

namespace {

// What the help of one command lists.
struct Help {
    std::string command;  // "pages why"
    std::vector<std::string> below;
    std::vector<std::string> options;
};

class Manual : public Tests::ProgramTest {
protected:
    // The help of the program and all its commands.
    std::vector<Help> AllHelp() const {
        std::vector<Help> all{{"", {}, {}}};
        for (std::size_t at = 0; at < all.size(); ++at) {
            std::istringstream lines(Run(all[at].command + " --help").out);
            bool isList = false;  // of the commands below
            for (std::string line; std::getline(lines, line);) {
                const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
                const std::string first = line.substr(indent, line.find(' ', indent) - indent);
                if (indent == 0) isList = line == "Subcommands:";
                if (isList && indent == 2) all[at].below.push_back(first);
                if (indent > 4 || !first.starts_with('-')) continue;
                for (std::size_t begin = 0; begin < first.size();) {
                    const std::size_t end = std::min(first.find(',', begin), first.size());
                    all[at].options.push_back(first.substr(begin, end - begin));
                    begin = end + 1;
                }
            }
            for (const std::string& word : std::vector<std::string>(all[at].below))
                all.push_back({all[at].command + (all[at].command.empty() ? "" : " ") + word, {}, {}});
        }
        return all;
    }

    // The text between the line that begins with `from` and the next one that begins with `to`.
    static std::string Part(const std::string& text, const std::string& from, const std::string& to) {
        const std::size_t begin = text.find("\n" + from + "\n");
        if (begin == std::string::npos) return {};
        return text.substr(begin, text.find("\n" + to, begin + from.size() + 1) - begin);
    }
    static std::string Replaced(std::string text, const std::string& what, const std::string& with) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
            text.replace(at, what.size(), with);
        return text;
    }
    bool HasTool(const char* name) const {
        return std::system(("command -v " + std::string(name) + " > /dev/null").c_str()) == 0;
    }
};

TEST_F(Manual, NamesEveryCommandAndOptionThatTheHelpHas) {
    const std::string man = Replaced(Run("--generate man").out, "\\-", "-");
    const std::string bash = Run("--generate bash").out;
    const std::string zsh = Run("--generate zsh").out;
    const std::vector<Help> all = AllHelp();
    ASSERT_GT(all.size(), 20u);
    for (const Help& help : all) {
        const bool isProgram = help.command.empty();
        const std::string inMan =
            isProgram ? Part(man, ".SH OPTIONS", ".SH") : Part(man, ".SS quill " + help.command, ".S");
        const std::string inBash = Replaced(Part(bash, "        '" + help.command + "')", "            ;;"), "'", " ");
        const std::string function =
            "_quill" + Replaced(isProgram ? "" : " " + help.command, " ", "_") + "_arguments() {";
        const std::string inZsh = Part(zsh, function, "}");
        for (const std::string& option : help.options) {
            const bool isHelp = option == "-h" || option == "--help";  // once in the page
            EXPECT_NE((isHelp ? man : inMan).find("\\fB" + option + "\\fR"), std::string::npos)
                << help.command << ' ' << option;
            EXPECT_NE(inBash.find(" " + option + " "), std::string::npos) << help.command << ' ' << option;
            EXPECT_NE(inZsh.find("'" + option + "["), std::string::npos) << help.command << ' ' << option;
        }
        for (const std::string& word : help.below) {
            EXPECT_NE(inBash.find(" " + word + " "), std::string::npos) << help.command << ' ' << word;
            EXPECT_NE(Part(zsh, Replaced(function, "_arguments", ""), "}").find("'" + word + ":"), std::string::npos)
                << help.command << ' ' << word;
        }
        EXPECT_FALSE(inMan.empty() || inBash.empty() || inZsh.empty()) << help.command;
    }
}

TEST_F(Manual, IsTakenByTheFormatterWithoutAWarning) {
    if (!HasTool("groff")) GTEST_SKIP() << "groff is not installed";
    Run("--generate man");
    ASSERT_EQ(std::system(
                  ("groff -man -ww -Tutf8 '" + Path("out") + "' > '" + Path("page") + "' 2> '" + Path("warnings") + "'")
                      .c_str()),
              0);
    EXPECT_EQ(Read("warnings"), "");
    EXPECT_NE(Read("page").find("A negative answer"), std::string::npos);
}

TEST_F(Manual, CompletesCommandsOptionsValuesAndFiles) {
    if (!HasTool("bash")) GTEST_SKIP() << "bash is not installed";
    for (const char* name : {"a.qdb", "b.json", "c.kicad_sch", "d.txt"})
        Write(name, "");
    std::filesystem::create_directory(Path("folder"));
    Write("completion", Run("--generate bash").out);
    Write("try.sh", R"(source completion
while read -r line; do
    mapfile -t COMP_WORDS < <(printf '%s\n' ${line//_/ \"\"} | tr -d '"')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _quill 2> /dev/null
    echo "${COMPREPLY[*]}"
done
)");
    // In a line "_" stands for an empty word.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"a command", "quill expo", "export"},
        {"commands below one, beside its own argument", "quill bus _", "expand build contents"},
        {"an option", "quill pages --desc", "--descending"},
        {"an option of a command below another", "quill pages why --desc", "--descending"},
        {"the values of an option", "quill pages --order _", "depth level print"},
        {"a value behind an equals sign", "quill pages --order = pr", "print"},
        {"designs and folders", "quill info _", "folder a.qdb b.json c.kicad_sch"},
        {"schematics alone", "quill import -o d.txt _", "folder c.kicad_sch"},
        {"any file", "quill import c.kicad_sch --output d", "d.txt"},
        {"an argument too many", "quill info a.qdb _", ""},
        {"no command behind an argument", "quill pages a.qdb w", ""},
    };
    std::string lines, want;
    for (const auto& [why, line, words] : cases) {
        lines += std::string(line) + '\n';
        want += std::string(words) + '\n';
    }
    Write("lines", lines);
    ASSERT_EQ(std::system(("cd '" + Path("") + "' && bash try.sh < lines > words").c_str()), 0);
    EXPECT_EQ(Read("words"), want);
}

TEST_F(Manual, RefusesAFormThatItDoesNotHave) {
    Check({{"--generate html", 2, "",
            "quill: --generate: There is no form html. \"quill --help\" says how it is used.\n"}});
}

}  // namespace
