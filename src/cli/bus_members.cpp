#include "cli/bus_members.h"

#include <cstdint>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/open_design.h"
#include "labels/bus_contents_utils.h"
#include "labels/bus_label_expander.h"
#include "platform/interface_manager.h"
#include "platform/project_data.h"

namespace Quill::Cli {

namespace {

constexpr std::uint64_t MaximumMembers = 1'000'000;
constexpr std::size_t MaximumLength = 64U << 20;

// What the label stands for, with the names of buses replaced by their contents.
std::string Resolved(const std::string& label, const LabelRules& rules) {
    using BusContents::Utils::ResolveStatus;
    auto resolved = BusContents::Utils::resolve_bus_contents_checked(label, rules.contents, MaximumLength);
    if (resolved.status == ResolveStatus::TooLong)
        throw CommandError(fmt::format("The contents of bus {} are longer than {} bytes", label, MaximumLength));
    if (resolved.status == ResolveStatus::Cycle)
        throw CommandError(fmt::format("Buses list each other in a circle: {}", fmt::join(resolved.cycle, ", ")));
    return std::move(resolved.text);
}

}  // namespace

LabelRules RulesOfProject() {
    LabelRules rules;
    InterfaceFactory* const factory = InterfaceManager::instance().getFactory(IProjectData::InterfaceName);
    Interface* const service = factory != nullptr ? factory->internalCreate() : nullptr;
    if (const auto* const project = dynamic_cast<const IProjectData*>(service)) {
        rules.limiter = BusContents::NetLimiterFromText(project->getSettings()->getNetLimiter());
        rules.contents = project->getSettings()->getBusContents();
    }
    if (factory != nullptr) factory->internalRelease(service);
    return rules;
}

LabelRules RulesOf(const std::optional<std::string>& design, const std::optional<std::string>& limiter) {
    LabelRules rules;
    if (design) {
        const OpenDesign open = ReadDesign(*design);
        rules = RulesOfProject();
    }
    if (limiter) rules.limiter = BusContents::NetLimiterFromText(*limiter);
    return rules;
}

void AddRuleOptions(const Syntax& command, std::optional<std::string>& design, std::optional<std::string>& limiter) {
    command.Option("--design", design, "design with brackets and contents of buses");
    command.Option("--limiter", limiter, "brackets of indexes: '[]', '()' or '' for none").OneOf({"", "[]", "()"});
}

std::vector<std::string> MembersOf(const std::string& label, const LabelRules& rules) {
    if (!label.empty() && label.front() == '$') return {label};
    BusContents::BusLabelExpander expander(Resolved(label, rules), rules.limiter);
    if (expander.CountMembers() > MaximumMembers)
        throw CommandError(fmt::format("Label {} stands for more than {} nets", label, MaximumMembers));
    std::vector<std::string> members;
    while (const auto member = expander.Next())
        members.emplace_back(*member);
    return members;
}

}  // namespace Quill::Cli
