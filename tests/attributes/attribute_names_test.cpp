#include "attributes/attribute_names.h"

#include <set>
#include <string>

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
    const char* schematic;
    const char* netlist;
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
    struct Case {
        const char* flowType;
        bool netlist;
    };
    const Case cases[] = {{"NETLIST", true}, {"Cobalt", false},   {"netlist", true}, {"BRIO", false}, {"NetList", true},
                          {"", false},       {"Netlist ", false}, {"NETLIST", true}, {"QS", false}};
    EXPECT_EQ(refDesignatorAtLoad, "Ref Designator");
    Names::CQuillAttrNames apart("Brio");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flowType);
        Names::CQuillAttrNames names("other");
        names.SetFlowType(c.flowType);
        Names::SetCurrentFlowType(c.flowType);
        for (const NameOfFlows& name : AllNames) {
            EXPECT_STREQ(name.current, c.netlist ? name.netlist : name.schematic);
            EXPECT_STREQ((names.*name.get)(), c.netlist ? name.netlist : name.schematic);
            EXPECT_STREQ((apart.*name.get)(), name.schematic) << "an object follows the current flow";
        }
    }
    EXPECT_STREQ(Names::term, "Term");
    EXPECT_STREQ(Names::XrefAnnotation, "Xref Annotation");
}

// All in one function, where an optimiser would keep the first value of a true constant.
TEST_F(CurrentFlow, IsReadAnewAfterASwitch) {
    const char* const before = Names::pinNumber;
    Names::SetCurrentFlowType("NETLIST");
    const char* const during = Names::pinNumber;
    Names::SetCurrentFlowType("Cobalt");
    const char* const after = Names::pinNumber;
    EXPECT_STREQ(before, "Pin Number") << "what was read stays valid";
    EXPECT_STREQ(during, "#");
    EXPECT_STREQ(after, "Pin Number");
}

TEST_F(CurrentFlow, DecidesWhatIsPackagingInformation) {
    std::set<std::string> names = {"what stood there"};
    CQuillAttributes::GetPackagingInfoAttrs(names);
    EXPECT_EQ(names, std::set<std::string>{"Ref Designator"});
    EXPECT_TRUE(CQuillAttributes::IsPackagingInfo("REF designator"));
    EXPECT_FALSE(CQuillAttributes::IsPackagingInfo("refdes"));

    Names::SetCurrentFlowType("NETLIST");
    EXPECT_TRUE(CQuillAttributes::IsPackagingInfo("refdes"));
    EXPECT_FALSE(CQuillAttributes::IsPackagingInfo("Ref Designator"));
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
    struct Case {
        std::string value;
        bool changed;
        std::string want;
    };
    const Case cases[] = {
        {" \t\rx y\r\t ", true, "x y"}, {"x ", true, "x"},         {"x", false, "x"},    {"", false, ""},
        {" \t\r", false, " \t\r"},      {"\nx\n", false, "\nx\n"}, {" \n ", true, "\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        std::string value = c.value;
        EXPECT_EQ(NQuillUtils::TrimValue(value), c.changed);
        EXPECT_EQ(value, c.want);
    }
}

TEST(ValueText, DropsTheZerosThatEndAFraction) {
    const std::pair<const char*, const char*> cases[] = {
        {"1.500", "1.5"}, {"2.000", "2."}, {"0.0", "0."},      {"1.05", "1.05"},       {"10", "10"},  {"100", "100"},
        {".", "."},       {"", ""},        {"1.0.00", "1.0."}, {"1.500 V", "1.500 V"}, {".50", ".5"},
    };
    for (const auto& [given, want] : cases) {
        std::string value = given;
        NQuillUtils::TrimZero(value);
        EXPECT_EQ(value, want) << given;
    }
}

}  // namespace
