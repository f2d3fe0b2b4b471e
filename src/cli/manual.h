// The manual page of the program and its completions for shells, written from the definitions of the command line.
#pragma once

#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace Quill::Cli {

std::string ManPage(const CLI::App& app);
std::string BashCompletion(const CLI::App& app);
std::string ZshCompletion(const CLI::App& app);

// The forms of the manual, for the hidden option --generate.
struct ManualForm {
    const char* name;
    std::string (*write)(const CLI::App& app);
};
inline constexpr ManualForm ManualForms[] = {{"man", ManPage}, {"bash", BashCompletion}, {"zsh", ZshCompletion}};

}  // namespace Quill::Cli
