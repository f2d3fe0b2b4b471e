#include <fmt/format.h>

#include "cli/command_tree.h"
#include "cli/manual.h"

namespace Quill::Cli {

namespace {

// As it stands in single quotes, and where `inBrackets`, in the parts of an argument of _arguments.
std::string Quoted(std::string_view text, bool inSpecification) {
    std::string quoted;
    for (const char c : text) {
        if (inSpecification && (c == ':' || c == '[' || c == ']' || c == '\\')) quoted += '\\';
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c == '\n' ? ' ' : c;
        }
    }
    return quoted;
}

std::string FunctionOf(const CommandInfo& command) {
    std::string name = "_quill";
    for (const std::string& word : command.words)
        name += "_" + word;
    return name;
}

// What _arguments calls to complete the value.
std::string ActionOf(const ArgumentValues& values) {
    if (values.areFolders) return "_files -/";
    if (!values.words.empty()) return fmt::format("({})", fmt::join(values.words, " "));
    if (!values.areFiles) return " ";
    if (values.suffixes.empty()) return "_files";
    return fmt::format("_files -g \"*.({})(-.)\"", fmt::join(values.suffixes, "|"));
}

std::string SpecificationOf(const ArgumentInfo& option, const std::string& spelling) {
    std::string specification = spelling + "[" + Quoted(option.description, true) + "]";
    if (!option.placeholder.empty())
        specification += ":" + Quoted(option.placeholder, true) + ":" + ActionOf(option.values);
    return specification;
}

// The function that completes the arguments of one command.
std::string ArgumentsOf(const CommandInfo& command) {
    std::string text = FunctionOf(command) + "_arguments() {\n    _arguments -s -S";
    const auto add = [&text](const std::string& specification) { text += " \\\n        '" + specification + "'"; };
    for (const ArgumentInfo& option : command.options)
        for (const std::string& spelling : option.spellings)
            add(SpecificationOf(option, spelling));
    for (const ArgumentInfo& argument : command.positionals)
        add(std::string(argument.isRepeated   ? "*"
                        : argument.isRequired ? ""
                                              : ":") +
            ":" + Quoted(argument.placeholder, true) + ":" + ActionOf(argument.values));
    return text + "\n}\n\n";
}

// The function that leads to the commands below one.
std::string Branch(const CommandInfo& command, const std::vector<CommandInfo>& commands) {
    std::string list, cases;
    for (const CommandInfo& other : commands) {
        if (other.words.size() != command.words.size() + 1 ||
            !std::equal(command.words.begin(), command.words.end(), other.words.begin()))
            continue;
        list += fmt::format("            '{}:{}'\n", other.words.back(), Quoted(other.summary, false));
        cases += fmt::format("            {}) shift words; ((CURRENT--)); {}; return ;;\n", other.words.back(),
                             FunctionOf(other));
    }
    const std::string name = FunctionOf(command);
    if (list.empty()) return name + "() {\n    " + name + "_arguments\n}\n\n";
    return fmt::format(
        "{0}() {{\n"
        "    if ((CURRENT == 2)); then\n"
        "        local -a below=(\n{1}        )\n"
        "        _describe -t commands 'command of {3}' below\n"
        "    else\n"
        "        case $words[2] in\n{2}        esac\n"
        "    fi\n"
        "    {0}_arguments\n"
        "}}\n\n",
        name, list, cases, command.Call("quill"));
}

}  // namespace

std::string ZshCompletion(const std::vector<CommandInfo>& commands) {
    std::string script = "#compdef quill\n\n";
    for (const CommandInfo& command : commands)
        script += ArgumentsOf(command) + Branch(command, commands);
    // Called by the completion system with the file as a function, or read by "source" and registered.
    return script +
           "if [[ $funcstack[1] == _quill ]]; then\n"
           "    _quill \"$@\"\n"
           "else\n"
           "    compdef _quill quill\n"
           "fi\n";
}

}  // namespace Quill::Cli
