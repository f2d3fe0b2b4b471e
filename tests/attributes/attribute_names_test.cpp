#include "attributes/attribute_names.h"

#include <gtest/gtest.h>

#include "attributes/quill_attributes.h"
#include "attributes/value_text.h"

namespace {

namespace Names = NQuillUtils::NAttributeNames;
using NQuillUtils::CQuillAttributes;

// Read while other modules may not be initialised yet.
const std::string refDesignatorAtLoad = Names::refDesignator;

class CurrentFlow : public testing::Test {
protected:
    ~CurrentFlow() override { Names::SetCurrentFlowType("QS"); }
};

struct NameOfFlows {
    const char* const& current;
    const char* (Names::CQuillAttrNames::*get)();
    const char *schematic, *netlist;
};
#define OF_FLOWS(name, schematic, netlist) \
    { Names::name, &Names::CQuillAttrNames::name, schematic, netlist }
const NameOfFlows AllNames[] = {
    OF_FLOWS(globalSignalName, "Global Signal Name", "NETNAME"),
    OF_FLOWS(partNumber, "Part Number", "DEVICE"),
    OF_FLOWS(refDesignator, "Ref Designator", "REFDES"),
    OF_FLOWS(level, "Level", "LEVEL"),
    OF_FLOWS(vhdlModel, "VHDL Model", "VHDL Model"),
    OF_FLOWS(verilogModel, "Verilog Model", "Verilog Model"),
    OF_FLOWS(vhdlType, "VHDL Type", "VHDL_TYPE"),
    OF_FLOWS(verilogFile, "Verilog File", "Verilog File"),
    OF_FLOWS(vhdlFile, "VHDL File", "VHDL File"),
    OF_FLOWS(pinNumber, "Pin Number", "#"),
    OF_FLOWS(pinType, "Pin Type", "PINTYPE"),
    OF_FLOWS(cellName, "Cell Name", "Cell Name"),
    OF_FLOWS(defaultCellName, "Default Cell Name", "Default Cell Name"),
};
#undef OF_FLOWS

TEST_F(CurrentFlow, AndNamesOfAFlowFollowTheTypeInAnyCase) {
    EXPECT_EQ(refDesignatorAtLoad, "Ref Designator");
    Names::CQuillAttrNames apart("Brio"), names("other");
    for (const auto& [flowType, netlist] :
         {std::pair("NetList", true), {"Cobalt", false}, {"NETLIST", true}, {"BRIO", false}, {"Netlist ", false}}) {
        SCOPED_TRACE(flowType);
        names.SetFlowType(flowType);
        Names::SetCurrentFlowType(flowType);
        for (const NameOfFlows& name : AllNames) {
            EXPECT_STREQ(name.current, netlist ? name.netlist : name.schematic);
            EXPECT_STREQ((names.*name.get)(), netlist ? name.netlist : name.schematic);
            EXPECT_STREQ((apart.*name.get)(), name.schematic) << "an object follows the current flow";
        }
    }
}

// All in one function, where an optimiser would keep the first value of a true constant.
TEST_F(CurrentFlow, IsReadAnewAfterASwitch) {
    const char* const before = Names::pinNumber;
    Names::SetCurrentFlowType("NETLIST");
    EXPECT_STREQ(Names::pinNumber, "#");
    EXPECT_STREQ(before, "Pin Number") << "what was read stays valid";
    Names::SetCurrentFlowType("Cobalt");
    EXPECT_STREQ(Names::pinNumber, "Pin Number");
}

TEST_F(CurrentFlow, DecidesWhatIsPackagingInformation) {
    std::set<std::string> names = {"what stood there"};
    CQuillAttributes::GetPackagingInfoAttrs(names);
    EXPECT_EQ(names, std::set<std::string>{"Ref Designator"});
    EXPECT_TRUE(CQuillAttributes::IsPackagingInfo("REF designator") && !CQuillAttributes::IsPackagingInfo("refdes"));
    Names::SetCurrentFlowType("NETLIST");
    EXPECT_TRUE(CQuillAttributes::IsPackagingInfo("refdes") && !CQuillAttributes::IsPackagingInfo("Ref Designator"));
    EXPECT_FALSE(CQuillAttributes::IsPackagingInfo("REFDES "));
}

TEST(QuillAttributes, RecogniseReservedKeysByTheirStoredNames) {
    for (const char* stored :
         {"$$Internal____NetsQuillIndices", "$$Internal____NetsQuillNames", "$$Internal____Signals",
          "$$Internal____Bus", "$$Internal____SignalMap", "$$Internal___BlkDate", "$$Internal___LocalSymbol",
          "$$Internal___ReadOnlySheet", "$$Internal_NAME_PLACEHOLDER"})
        EXPECT_TRUE(CQuillAttributes::IsQuillInternalName(stored)) << stored;
    for (const char* other :
         {"___Bus", "$$internal____Bus", "$$Internal____bus", "$$InternalX___Bus", "$$Internal_", "$$Internal____Bus ",
          "$$Constraint____Bus", "$$Internal____SignalNames", "$$Internal_Design_Name", "$$Internal_ID", ""})
        EXPECT_FALSE(CQuillAttributes::IsQuillInternalName(other)) << other;

    EXPECT_TRUE(CQuillAttributes::IsQuillInternalName("$$Internal_ID", "ID")) << "any key can be asked for";
    EXPECT_FALSE(CQuillAttributes::IsQuillInternalName("ID", "ID"));
    EXPECT_TRUE(CQuillAttributes::IsLocalSymbol("$$Internal___LocalSymbol"));
    EXPECT_FALSE(CQuillAttributes::IsLocalSymbol("__LocalSymbol"));
}

TEST(ValueText, TrimsBlanksButNoNewlines) {
    const auto trimmed = [](std::string value) { return (NQuillUtils::TrimValue(value) ? "+" : "=") + value; };
    EXPECT_EQ(trimmed(" \t\rx y\r\t "), "+x y");
    EXPECT_EQ(trimmed(" \n "), "+\n");
    EXPECT_EQ(trimmed("\nx\n"), "=\nx\n");
    EXPECT_EQ(trimmed("") + trimmed(" \t\r"), "== \t\r") << "nothing would be left";
}

TEST(ValueText, DropsTheZerosThatEndAFraction) {
    const auto trimmed = [](std::string value) { return NQuillUtils::TrimZero(value), value; };
    EXPECT_EQ(trimmed("1.0500"), "1.05");
    EXPECT_EQ(trimmed("100") + trimmed("") + trimmed("."), "100.") << "no zero behind a point";
    EXPECT_EQ(trimmed("1.0.00"), "1.0.") << "behind the first point, at the end";
    EXPECT_EQ(trimmed("1.500 V"), "1.500 V");
}

}  // namespace
