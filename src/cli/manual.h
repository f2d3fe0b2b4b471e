// The manual page of the program and its completions for shells, written from the definitions of the command line.
#pragma once

#include <string>
#include <vector>

#include "cli/command_tree.h"

namespace Quill::Cli {

// Each takes what CommandTree gives.
std::string ManPage(const std::vector<CommandInfo>& commands);
std::string BashCompletion(const std::vector<CommandInfo>& commands);
std::string ZshCompletion(const std::vector<CommandInfo>& commands);

// The forms of the manual, for the hidden option --generate.
struct ManualForm {
    const char* name;
    std::string (*write)(const std::vector<CommandInfo>& commands);
};
inline constexpr ManualForm ManualForms[] = {{"man", ManPage}, {"bash", BashCompletion}, {"zsh", ZshCompletion}};

}  // namespace Quill::Cli
