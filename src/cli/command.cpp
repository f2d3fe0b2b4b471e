#include "cli/command.h"

#include <utility>

#include <CLI/CLI.hpp>

namespace Quill::Cli {

void CommandLine::AddFamily(const char* name, const char* summary) {
    m_app.add_subcommand(name, summary)->require_subcommand(1);
}

Syntax CommandLine::Add(const std::string& name, const char* summary, const char* details, Action action) {
    const std::size_t blank = name.find(' ');
    CLI::App& parent = blank == std::string::npos ? m_app : *m_app.get_subcommand(name.substr(0, blank));
    CLI::App& command = *parent.add_subcommand(name.substr(blank + 1), summary);
    command.footer(details);
    // What a command requires is required of its own use only, not of that of the commands below it.
    for (CLI::Option* const option : parent.get_options())
        if (option->get_required()) m_required[&parent].push_back(option->required(false));
    command.callback([this, &command, action = std::move(action)] {
        if (!command.get_subcommands().empty()) return;
        for (const CLI::Option* const option : m_required[&command])
            if (option->count() == 0) throw CLI::RequiredError(option->get_name());
        m_chosen = action;
    });
    return Syntax(command);
}

void AddDesignArgument(const Syntax& command, std::string& design) {
    command.Option("DESIGN", design, "design file (.qdb), JSON, or the root schematic of a KiCad design").Required();
}

void AddConfigOption(const Syntax& command, std::string& config) {
    command.Option("--config", config, "configuration; by default the one of the design's name, else the first");
}

void AddJsonFlag(const Syntax& command, bool& json) {
    command.Flag("--json", json, "answer in JSON");
}

}  // namespace Quill::Cli
