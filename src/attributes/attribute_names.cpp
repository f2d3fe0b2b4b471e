#include "attributes/attribute_names.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "text/ascii.h"

namespace NQuillUtils::NAttributeNames {

namespace {

enum Slot : std::size_t {
    GlobalSignalName,
    PartNumber,
    RefDesignator,
    Level,
    VhdlModel,
    VerilogModel,
    VhdlType,
    VerilogFile,
    VhdlFile,
    PinNumber,
    PinType,
    CellName,
    DefaultCellName,
    SlotCount,
};

using Row = std::array<const char*, SlotCount>;

constexpr Row SchematicNames = {
    "Global Signal Name", "Part Number", "Ref Designator", "Level",    "VHDL Model", "Verilog Model",     "VHDL Type",
    "Verilog File",       "VHDL File",   "Pin Number",     "Pin Type", "Cell Name",  "Default Cell Name",
};
constexpr Row NetlistNames = {
    "NETNAME",      "DEVICE",    "REFDES", "LEVEL",   "VHDL Model", "Verilog Model",     "VHDL_TYPE",
    "Verilog File", "VHDL File", "#",      "PINTYPE", "Cell Name",  "Default Cell Name",
};

// By flow number.
constexpr Row Flows[] = {SchematicNames, NetlistNames, SchematicNames, SchematicNames};

struct FlowType {
    std::string_view name;
    std::size_t number;
};
constexpr FlowType FlowTypes[] = {{"NETLIST", 1}, {"Cobalt", 2}, {"Brio", 3}};

std::size_t FlowNumber(std::string_view flowType) noexcept {
    for (const FlowType& type : FlowTypes)
        if (Quill::Text::EqualNoCase(type.name, flowType)) return type.number;
    return 0;
}

// The library's default flow, "QS", is none of the named ones, so row 0 is current until a flow is chosen.
constinit std::size_t currentFlow = 0;
constinit Row current = Flows[0];

}  // namespace

constinit const char* const& globalSignalName = current[GlobalSignalName];
constinit const char* const& partNumber = current[PartNumber];
constinit const char* const& refDesignator = current[RefDesignator];
constinit const char* const& level = current[Level];
constinit const char* const& vhdlModel = current[VhdlModel];
constinit const char* const& verilogModel = current[VerilogModel];
constinit const char* const& vhdlType = current[VhdlType];
constinit const char* const& verilogFile = current[VerilogFile];
constinit const char* const& vhdlFile = current[VhdlFile];
constinit const char* const& pinNumber = current[PinNumber];
constinit const char* const& pinType = current[PinType];
constinit const char* const& cellName = current[CellName];
constinit const char* const& defaultCellName = current[DefaultCellName];

void SetCurrentFlowType(const std::string& flowType) {
    currentFlow = FlowNumber(flowType);
    current = Flows[currentFlow];
}

CQuillAttrNames::CQuillAttrNames(const std::string& flowType) {
    SetFlowType(flowType);
}

void CQuillAttrNames::SetFlowType(const std::string& flowType) {
    const Row& names = Flows[FlowNumber(flowType)];
    std::copy(names.begin(), names.end(), m_names.begin());
}

const char* CQuillAttrNames::globalSignalName() {
    return m_names[GlobalSignalName].c_str();
}
const char* CQuillAttrNames::partNumber() {
    return m_names[PartNumber].c_str();
}
const char* CQuillAttrNames::refDesignator() {
    return m_names[RefDesignator].c_str();
}
const char* CQuillAttrNames::level() {
    return m_names[Level].c_str();
}
const char* CQuillAttrNames::vhdlModel() {
    return m_names[VhdlModel].c_str();
}
const char* CQuillAttrNames::verilogModel() {
    return m_names[VerilogModel].c_str();
}
const char* CQuillAttrNames::vhdlType() {
    return m_names[VhdlType].c_str();
}
const char* CQuillAttrNames::verilogFile() {
    return m_names[VerilogFile].c_str();
}
const char* CQuillAttrNames::vhdlFile() {
    return m_names[VhdlFile].c_str();
}
const char* CQuillAttrNames::pinNumber() {
    return m_names[PinNumber].c_str();
}
const char* CQuillAttrNames::pinType() {
    return m_names[PinType].c_str();
}
const char* CQuillAttrNames::cellName() {
    return m_names[CellName].c_str();
}
const char* CQuillAttrNames::defaultCellName() {
    return m_names[DefaultCellName].c_str();
}

}  // namespace NQuillUtils::NAttributeNames
