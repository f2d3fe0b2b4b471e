#include "cli/command.h"

#include <utility>

namespace Quill::Cli {

void CommandLine::AddFamily(const char* name, const char* summary) {
    m_app.add_subcommand(name, summary)->require_subcommand(1);
}

CLI::App& CommandLine::Add(const std::string& name, const char* summary, const char* details, Action action) {
    const std::size_t blank = name.find(' ');
    CLI::App& parent = blank == std::string::npos ? m_app : *m_app.get_subcommand(name.substr(0, blank));
    CLI::App& command = *parent.add_subcommand(name.substr(blank + 1), summary);
    command.footer(details);
    command.callback([this, action = std::move(action)] { m_chosen = action; });
    return command;
}

void AddDesignArgument(CLI::App& command, std::string& design) {
    command.add_option("DESIGN", design, "design file (JSON)")->required();
}

void AddConfigOption(CLI::App& command, std::string& config) {
    command.add_option("--config", config, "configuration; by default the one of the design's name, else the first");
}

void AddJsonFlag(CLI::App& command, bool& json) {
    command.add_flag("--json", json, "answer in JSON");
}

}  // namespace Quill::Cli
