// quill flows: the design flows, and what holds for a design in each.
#include <optional>

#include "attributes/attribute_names.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/flow_lookup.h"
#include "cli/json.h"
#include "config/flow_type_info.h"

namespace Quill::Cli {

namespace {

using AttrNames = NQuillUtils::NAttributeNames::CQuillAttrNames;

struct FlowsOptions {
    std::optional<std::string> flow;
    bool json = false;
};

struct AttributeRow {
    const char* what;
    const char* (AttrNames::*name)();
};

// In the order of attributes/attribute_names.h.
constexpr AttributeRow AttributeRows[] = {
    {"globalSignalName", &AttrNames::globalSignalName},
    {"partNumber", &AttrNames::partNumber},
    {"refDesignator", &AttrNames::refDesignator},
    {"level", &AttrNames::level},
    {"vhdlModel", &AttrNames::vhdlModel},
    {"verilogModel", &AttrNames::verilogModel},
    {"vhdlType", &AttrNames::vhdlType},
    {"verilogFile", &AttrNames::verilogFile},
    {"vhdlFile", &AttrNames::vhdlFile},
    {"pinNumber", &AttrNames::pinNumber},
    {"pinType", &AttrNames::pinType},
    {"cellName", &AttrNames::cellName},
    {"defaultCellName", &AttrNames::defaultCellName},
};

// The description of the flow's type.
const IFlowTypeInfo& InfoOf(const CFlow& flow) {
    static const CFlowTypeInfoProvider provider;
    const IFlowTypeInfo* const info = provider.getFlowTypeInfo(flow.GetType().c_str());
    if (info == nullptr) throw CommandError("Nothing is known of the flow type " + flow.GetType());
    return *info;
}

Json FlowAsJson(const CFlow& flow) {
    const IFlowTypeInfo& info = InfoOf(flow);
    return {{"name", flow.GetName()},
            {"type", flow.GetType()},
            {"centralLibrary", info.getHasCentralLibrary()},
            {"symbolLibraries", info.getHasSymbolLibs()},
            {"settingsFile", info.getSettingsFile()},
            {"mapFile", info.getMapCfgFile()},
            {"templates", flow.GetTemplateLocation()}};
}

Json AsJson(const std::list<CFlow>& flows) {
    Json answer = Json::EmptyList();
    for (const CFlow& flow : flows)
        answer.Add(FlowAsJson(flow));
    return answer;
}

std::string AsTable(const std::list<CFlow>& flows) {
    Table table({{"Flow"}, {"Type"}, {"Libraries"}, {"Settings file"}, {"Map file"}, {"Templates"}});
    for (const CFlow& flow : flows) {
        const IFlowTypeInfo& info = InfoOf(flow);
        std::string libraries = info.getHasCentralLibrary() ? "central" : "";
        if (info.getHasSymbolLibs()) libraries += libraries.empty() ? "symbol" : ", symbol";
        table.AddRow({flow.GetName(), flow.GetType(), libraries, info.getSettingsFile(), info.getMapCfgFile(),
                      flow.GetTemplateLocation()});
    }
    return table.Render(HasColours());
}

Json NamesAsJson(const CFlow& flow) {
    AttrNames names(flow.GetType());
    Json answer = FlowAsJson(flow);
    Json attributes;
    for (const AttributeRow& row : AttributeRows)
        attributes.Add(row.what, (names.*row.name)());
    answer.Add("attributes", std::move(attributes));
    return answer;
}

std::string NamesAsTable(const CFlow& flow) {
    AttrNames names(flow.GetType());
    Table table({{"Attribute"}, {"Name"}});
    for (const AttributeRow& row : AttributeRows)
        table.AddRow({row.what, (names.*row.name)()});
    return table.Render(HasColours());
}

ExitCode RunFlows(const FlowsOptions& options) {
    if (options.flow) {
        Print(options.json, FindFlow(*options.flow), NamesAsJson, NamesAsTable);
    } else {
        Print(options.json, CFlowCollection::Instance().GetList(), AsJson, AsTable);
    }
    return Done;
}

}  // namespace

void AddFlowsCommand(CommandLine& line) {
    const auto options = std::make_shared<FlowsOptions>();
    const Syntax command =
        line.Add("flows", "List the design flows, or the attribute names of one",
                 "With the kind of libraries that a flow works with, its settings and map file, and the\n"
                 "folder of its templates, which is known where TOVE_HOME is set. With FLOW, a name or a\n"
                 "type, the names of the common attributes in designs of this flow.\n"
                 "\n"
                 "Examples:\n"
                 "  quill flows\n"
                 "  quill flows netlist",
                 [options] { return RunFlows(*options); });
    command.Option("FLOW", options->flow, "name or type of a flow");
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
