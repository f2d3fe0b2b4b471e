#include "cli/command_tree.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "text/ascii.h"

namespace Quill::Cli {

namespace {

enum class Files { Any, Design, Schematic, Folder };

struct FileRow {
    const char* name;  // of the argument
    Files files;
};

// The arguments that are files, by their names, which mean the same in all commands.
constexpr FileRow FileRows[] = {
    {"DESIGN", Files::Design}, {"--design", Files::Design}, {"ROOT", Files::Schematic}, {"EDITS", Files::Any},
    {"FILE", Files::Any},      {"--output", Files::Any},    {"--record", Files::Any},   {"--replay", Files::Any},
    {"DIR", Files::Folder},    {"FOLDER", Files::Folder},
};

struct SuffixRow {
    Files files;
    const char* suffix;
};

constexpr SuffixRow Suffixes[] = {
    {Files::Design, "qdb"}, {Files::Design, "json"}, {Files::Design, "kicad_sch"}, {Files::Schematic, "kicad_sch"}};

// The words of a check that an option bears: "TEXT:{depth,level,print}".
std::vector<std::string> WordsIn(const std::string& type) {
    std::vector<std::string> words;
    const std::size_t begin = type.find('{');
    if (begin == std::string::npos) return words;
    const std::string list = type.substr(begin + 1, type.find('}', begin) - begin - 1);
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(',', at), list.size());
        words.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

ArgumentInfo Describe(const CLI::Option& option, bool isFamilyToo) {
    ArgumentInfo info;
    info.description = option.get_description();
    info.isRepeated = option.get_items_expected_max() > 1;
    const std::string name = option.get_name(option.get_positional());
    if (option.get_positional()) {
        info.spellings = {name};
        info.placeholder = name;
        // A command with others below it asks for what it requires itself (command.cpp).
        info.isRequired = option.get_required() || isFamilyToo;
    } else {
        for (const std::string& letter : option.get_snames())
            info.spellings.push_back("-" + letter);
        for (const std::string& word : option.get_lnames())
            info.spellings.push_back("--" + word);
        info.isRequired = option.get_required();
        if (option.get_items_expected_max() == 0) return info;
        info.placeholder = Text::ToUpper(info.spellings.back().substr(info.spellings.back().find_last_of('-') + 1));
    }
    info.values.words = WordsIn(option.get_type_name());
    for (const FileRow& row : FileRows) {
        if (std::find(info.spellings.begin(), info.spellings.end(), row.name) == info.spellings.end()) continue;
        info.values.areFiles = row.files != Files::Folder;
        info.values.areFolders = row.files == Files::Folder;
        if (!option.get_positional()) info.placeholder = "FILE";
        for (const SuffixRow& suffix : Suffixes)
            if (suffix.files == row.files) info.values.suffixes.emplace_back(suffix.suffix);
    }
    return info;
}

// Takes the text below the options apart.
void ReadDetails(const std::string& text, CommandInfo& info) {
    constexpr std::string_view Heading = "Examples:\n";
    const std::size_t heading = std::min(text.find(Heading), text.size());
    info.details = text.substr(0, heading);
    while (!info.details.empty() && info.details.back() == '\n')
        info.details.pop_back();
    for (std::size_t at = std::min(heading + Heading.size(), text.size()); at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::size_t begin = std::min(text.find_first_not_of(' ', at), end);
        info.examples.push_back(text.substr(begin, end - begin));
        at = end + 1;
    }
}

// Groups of options count as commands without a name.
std::vector<const CLI::App*> CommandsBelow(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* below) { return !below->get_name().empty(); });
}

void AddArguments(const CLI::App& app, bool hasCommandsBelow, CommandInfo& info) {
    for (const CLI::Option* const option : app.get_options()) {
        if (option->get_group().empty()) continue;  // hidden
        ArgumentInfo argument = Describe(*option, hasCommandsBelow);
        (option->get_positional() ? info.positionals : info.options).push_back(std::move(argument));
    }
}

}  // namespace

std::string CommandInfo::Call(const std::string& program) const {
    std::string call = program;
    for (const std::string& word : words)
        call += " " + word;
    return call;
}

std::vector<CommandInfo> CommandTree(const CLI::App& app) {
    std::vector<CommandInfo> tree;
    std::vector<std::pair<const CLI::App*, std::vector<std::string>>> open{{&app, {}}};  // the next one is the last
    while (!open.empty()) {
        const auto [command, words] = std::move(open.back());
        open.pop_back();
        CommandInfo& info = tree.emplace_back();
        info.words = words;
        info.summary = command->get_description();
        ReadDetails(command->get_footer(), info);
        const std::vector<const CLI::App*> below = CommandsBelow(*command);
        info.isComplete = command->get_require_subcommand_min() == 0;
        AddArguments(*command, !below.empty(), info);
        for (const CLI::App* const group : command->get_subcommands([](const CLI::App*) { return true; }))
            if (group->get_name().empty()) AddArguments(*group, false, info);
        for (auto next = below.rbegin(); next != below.rend(); ++next) {
            std::vector<std::string> path = words;
            path.push_back((*next)->get_name());
            open.emplace_back(*next, std::move(path));
        }
        for (const CLI::App* const next : below)
            info.below.push_back(next->get_name());
    }
    return tree;
}

}  // namespace Quill::Cli
