#include <fmt/format.h>

#include "cli/command_tree.h"
#include "cli/manual.h"

namespace Quill::Cli {

namespace {

// What does not depend on the commands. A kind of value is a list of words, "@folders", or "@files" and suffixes.
constexpr const char* Head = R"(# bash completion for quill

# Fills COMPREPLY with the values of the kind $1 that begin with $cur.
_quill_values() {
    local suffix
    case $1 in
        @folders)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$cur")
            ;;
        @files)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            ;;
        @files*)
            compopt -o filenames
            mapfile -t COMPREPLY < <(
                compgen -d -- "$cur"
                for suffix in ${1#@files }; do compgen -f -X "!*.$suffix" -- "$cur"; done
            )
            ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
            ;;
    esac
}

# The facts about the command $command: the words below it, its options, those with a value, the kinds of its
# arguments, of which the last one holds for all further ones, and with $1 the kind of that option's value.
_quill_facts() {
    case $command in
)";

constexpr const char* Tail = R"(    esac
}

_quill() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local command= below options valued value arguments=() count=0 word i
    COMPREPLY=()
    # "--order=print" comes in three words.
    if [[ $cur == '=' ]]; then
        cur=
    elif [[ $prev == '=' ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    _quill_facts
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word == '=' || ${COMP_WORDS[i - 1]} == '=' || " $valued " == *" ${COMP_WORDS[i - 1]} "* ]]; then
            continue
        elif [[ $word == -* ]]; then
            continue
        elif ((count == 0)) && [[ " $below " == *" $word "* ]]; then
            command+=${command:+ }$word
            _quill_facts
        else
            ((++count))
        fi
    done
    if [[ " $valued " == *" $prev "* ]]; then
        _quill_facts "$prev"
        _quill_values "$value"
    elif [[ $cur == -* ]]; then
        _quill_values "$options"
    else
        ((count < ${#arguments[@]})) || count=$((${#arguments[@]} - 1))
        if ((${#arguments[@]} > 0)); then _quill_values "${arguments[count]}"; fi
        if [[ -n $below ]] && ((count <= 0)); then
            mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -W "$below" -- "$cur")
        fi
    fi
}
complete -F _quill quill
)";

std::string Joined(const std::vector<std::string>& words) {
    return fmt::format("{}", fmt::join(words, " "));
}

std::string KindOf(const ArgumentValues& values) {
    if (values.areFolders) return "@folders";
    if (!values.areFiles) return Joined(values.words);
    return values.suffixes.empty() ? "@files" : "@files " + Joined(values.suffixes);
}

std::string CaseOf(const CommandInfo& command) {
    std::vector<std::string> options, valued;
    std::string kinds, arguments;
    for (const ArgumentInfo& option : command.options) {
        options.insert(options.end(), option.spellings.begin(), option.spellings.end());
        if (option.placeholder.empty()) continue;
        valued.insert(valued.end(), option.spellings.begin(), option.spellings.end());
        kinds += fmt::format("                {}) value='{}' ;;\n", fmt::join(option.spellings, " | "),
                             KindOf(option.values));
    }
    for (const ArgumentInfo& argument : command.positionals)
        arguments += fmt::format("{}'{}'", arguments.empty() ? "" : " ", KindOf(argument.values));
    // An argument too many completes to nothing.
    if (!command.positionals.empty() && !command.positionals.back().isRepeated) arguments += " ''";
    std::string text = fmt::format(
        "        '{}')\n"
        "            below='{}'\n"
        "            options='{}'\n"
        "            valued='{}'\n"
        "            arguments=({})\n",
        Joined(command.words), Joined(command.below), Joined(options), Joined(valued), arguments);
    if (!kinds.empty()) text += "            case $1 in\n" + kinds + "            esac\n";
    return text + "            ;;\n";
}

}  // namespace

std::string BashCompletion(const std::vector<CommandInfo>& commands) {
    std::string script = Head;
    for (const CommandInfo& command : commands)
        script += CaseOf(command);
    return script + Tail;
}

}  // namespace Quill::Cli
