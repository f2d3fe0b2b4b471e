#include "config/flow.h"

#include <algorithm>
#include <utility>

#include "config/detail/installation.h"
#include "text/ascii.h"

namespace Quill {
namespace {

struct FlowRow {
    const char* name;
    const char* type;
};

constexpr FlowRow kFlows[] = {
    {"halyard", "QS"},
    {"netlist", "NETLIST"},
    {"cobalt", "Cobalt"},
    {"Brio", "Brio"},
};

template <class Getter>
const CFlow* FirstMatch(const std::list<CFlow>& flows, Getter getter, const std::string& text) {
    const auto found = std::find_if(flows.begin(), flows.end(),
                                    [&](const CFlow& flow) { return Text::EqualNoCase((flow.*getter)(), text); });
    return found == flows.end() ? nullptr : &*found;
}

}  // namespace

CFlow::CFlow(std::string name, std::string type) : m_name(std::move(name)), m_type(std::move(type)) {}

std::string CFlow::GetTemplateLocation() const {
    const std::string root = ConfigDetail::NormalisedInstallationRoot();
    return root.empty() ? std::string() : root + "/standard/templates/quillsketch/" + m_name;
}

CFlowCollection::CFlowCollection() {
    for (const FlowRow& row : kFlows)
        m_flows.emplace_back(row.name, row.type);
}

CFlowCollection& CFlowCollection::Instance() {
    static CFlowCollection collection;
    return collection;
}

const CFlow* CFlowCollection::GetFlowByName(const std::string& name) const {
    return FirstMatch(m_flows, &CFlow::GetName, name);
}

const CFlow* CFlowCollection::GetFlowByType(const std::string& type) const {
    return FirstMatch(m_flows, &CFlow::GetType, type);
}

}  // namespace Quill
