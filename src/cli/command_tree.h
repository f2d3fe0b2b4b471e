// What the command line takes, for whoever writes it down: the same definitions that the parser and the help have.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Quill::Cli {

// What may stand for an argument, for those who complete it.
struct ArgumentValues {
    std::vector<std::string> words;     // one of these
    bool areFiles = false;              // or files,
    std::vector<std::string> suffixes;  // with one of these suffixes; with any when there are none
    bool areFolders = false;            // or folders
};

struct ArgumentInfo {
    std::vector<std::string> spellings;  // "-o", "--output"; of a positional its name
    std::string placeholder;             // of its value; empty for a flag
    std::string description;
    bool isRequired = false;
    bool isRepeated = false;
    ArgumentValues values;
};

struct CommandInfo {
    std::vector<std::string> words;  // "pages", "why"; none for the program itself
    std::string summary;
    std::string details;                // paragraphs
    std::vector<std::string> examples;  // lines
    std::vector<ArgumentInfo> positionals;
    std::vector<ArgumentInfo> options;
    std::vector<std::string> below;  // the words of the commands below it
    bool isComplete = true;          // not only the first word of others

    // "quill pages why"
    std::string Call(const std::string& program) const;
};

// The program and all its commands, each before those below it.
std::vector<CommandInfo> CommandTree(const CLI::App& app);

}  // namespace Quill::Cli
