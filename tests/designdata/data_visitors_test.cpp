#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "designdata/block_orin_quill_data_visitor.h"
#include "designdata/symbol_orin_quill_data_visitor.h"
#include "designdb/testing/fault_injector.h"
#include "tests/support/drawn_design.h"

namespace {

using namespace Orin;
using DesignDb::Testing::FaultInjector;
using Quill::Utils::BlockOrinQuillDataVisitor;
using Quill::Utils::SymbolOrinQuillDataVisitor;

// Writes down what it is given: the kind and the object id of each record. Overrides what `Visitor` declares.
template <class Visitor>
class Recorder final : public Visitor {
public:
    void visit(const LabelDataQuill& data) { Write("Label", data); }
    void visit(const AttrDataQuill& data) { Write("Attr", data); }
    void visit(const TextDataQuill& data) { Write("Text", data); }
    void visit(const CircleDataQuill& data) { Write("Circle", data); }
    void visit(const ArcDataQuill& data) { Write("Arc", data); }
    void visit(const RectDataQuill& data) { Write("Rect", data); }
    void visit(const LineDataQuill& data) { Write("Line", data); }
    void visit(const GroupDataQuill& data) { Write("Group", data); }
    void visit(const BusDataQuill& data) { Write("Bus", data); }
    void visit(const NetDataQuill& data) { Write("Net", data); }
    void visit(const CompDataQuill& data) { Write("Comp", data); }
    void visit(const PinDataQuill& data) { Write("Pin", data); }

    // What the walk visited, and the code with which it ended unless it came to its end.
    template <class... Handles>
    static std::string Walk(const Handles&... handles) {
        Recorder recorder;
        try {
            recorder.process(handles...);
        } catch (const Result& result) {
            recorder.m_visits += "thrown " + std::to_string(result.GetErrorCode());
        }
        return recorder.m_visits;
    }

private:
    template <class Record>
    void Write(const char* kind, const Record& data) {
        m_visits += kind + std::to_string(data.objectId) + " ";
    }

    std::string m_visits;
};

using Sheet = Recorder<BlockOrinQuillDataVisitor>;
using Symbol = Recorder<SymbolOrinQuillDataVisitor>;

static_assert(std::is_copy_constructible_v<Sheet> && std::is_copy_constructible_v<Symbol>);
static_assert(sizeof(BlockOrinQuillDataVisitor) == sizeof(void*) && std::is_abstract_v<BlockOrinQuillDataVisitor>);
static_assert(sizeof(SymbolOrinQuillDataVisitor) == sizeof(void*) && std::is_abstract_v<SymbolOrinQuillDataVisitor>);

TEST(DataVisitors, MeetEverythingInAFixedOrder) {
    Tests::DrawnDesign design;
    EXPECT_EQ(Sheet::Walk(design.block, design.sheet), "");
    EXPECT_EQ(Symbol::Walk(design.symbol), "");
    design.DrawFreeGraphics(design.sheetIndex, 2);
    design.DrawAttribute(design.sheetIndex, design.blockIndex, 1);
    EXPECT_EQ(Sheet::Walk(design.block, design.sheet), "Attr1 Line2 Rect3 Arc4 Circle5 Text6 ") << "without members";

    Tests::DrawnDesign full;
    full.DrawSheet();
    full.DrawSymbol();
    EXPECT_EQ(Sheet::Walk(full.block, full.sheet), Tests::DrawnDesign::SheetItems);
    EXPECT_EQ(Symbol::Walk(full.symbol), Tests::DrawnDesign::SymbolItems);

    EXPECT_EQ(Sheet::Walk(ContainerT<const IBlock>(), full.sheet), "thrown 200");
    EXPECT_EQ(Sheet::Walk(full.block, ContainerT<const IGroup>()), "thrown 200");
    EXPECT_EQ(Symbol::Walk(ContainerT<const IComp>()), "thrown 200");
}

// The visits that go when one of the `optional` operations finds nothing. The `required` ones in front of them list
// things to be visited, so that their every failure ends the walk.
struct Step {
    std::string visits;
    std::vector<const char*> required, optional;
};

template <class Walk>
void FailEveryStep(const std::vector<Step>& steps, const std::string& all, const Walk& walk) {
    const auto fail = [&](const char* operation, int code, const std::string& want) {
        FaultInjector faults;
        faults.Inject({.operation = operation, .code = static_cast<EErrorCode>(code)});
        EXPECT_EQ(walk(), want) << operation << " fails with " << code;
        EXPECT_EQ(faults.Failed(), 1U) << operation;
    };
    for (const int code : {200, 201, 202, 203, 204, 205, 206, 207, 102}) {
        const bool absent = code == 200 || code == 202 || (code >= 204 && code <= 206);
        for (const Step& step : steps) {
            const std::size_t place = all.find(step.visits);
            const std::string thrown = all.substr(0, place) + "thrown " + std::to_string(code);
            for (const char* const operation : step.required)
                fail(operation, code, thrown);
            for (const char* const operation : step.optional)
                fail(operation, code, absent ? std::string(all).erase(place, step.visits.size()) : thrown);
        }
    }
}

TEST(DataVisitors, PassOverWhatIsAbsentAndThrowEveryOtherFailure) {
    Tests::DrawnDesign design;
    design.DrawSheet();
    design.DrawSymbol();
    const std::vector<Step> sheet = {
        {"Comp1 Label2 Attr3 Attr4 ", {}, {"IUIDManager::GetComp"}},
        {"Comp1 ",
         {"IBlockViewQuill::Init", "IGroup::GetListObjects", "IBlock::GetParentSnapshot", "ISnapshot::GetUIDManager"},
         {"IBlockViewQuill::GetCompData"}},
        {"Label2 ", {}, {"IBlockViewQuill::GetCompLabel"}},
        {"Attr3 ", {"IComp::GetAttributes"}, {"IBlockViewQuill::GetCompAttr"}},
        {"Attr4 ", {"IComp::GetIterPins", "IPin::GetAttributes"}, {"IBlockViewQuill::GetPinAttr"}},
        {"Net5 Net6 Label7 Attr8 ", {}, {"IUIDManager::GetNet"}},
        {"Net5 ", {"IBlockViewQuill::GetIterNetsQuill"}, {"INetQuill::GetData"}},
        {"Label7 ", {}, {"IBlockViewQuill::GetNetLabel"}},
        {"Attr8 ", {"INet::GetAttributes"}, {"IBlockViewQuill::GetNetAttr"}},
        {"Bus9 Label10 Attr11 ", {}, {"IUIDManager::GetBus"}},
        {"Bus9 ", {}, {"IBlockViewQuill::GetBusData"}},
        {"Label10 ", {}, {"IBlockViewQuill::GetBusLabel"}},
        {"Attr11 ", {"IBus::GetAttributes"}, {"IBlockViewQuill::GetBusAttr"}},
        {"Group12 ", {}, {"IBlockViewQuill::GetGroupData"}},
        {"Label13 ", {}, {"IBlockViewQuill::GetGroupLabel"}},
        {"Attr14 ", {"IGroup::GetAttributes"}, {"IBlockViewQuill::GetGroupAttr"}},
        {"Attr15 ", {"IBlock::GetAttributes"}, {"IBlockViewQuill::GetAttr"}},
        {"Line16 ", {"IBlockViewQuill::GetIterLines"}, {}},
        {"Arc18 ", {}, {"IArcQuill::GetData"}},
        {"Text20 ", {"IBlockViewQuill::GetIterTexts"}, {}},
    };
    FailEveryStep(sheet, Tests::DrawnDesign::SheetItems, [&] { return Sheet::Walk(design.block, design.sheet); });

    const std::vector<Step> symbol = {
        {"Attr1 ", {"ICompViewQuill::Init", "IComp::GetAttributes"}, {"ICompViewQuill::GetAttr"}},
        {"Pin2 ", {"IComp::GetIterPins"}, {"ICompViewQuill::GetPinData"}},
        {"Label3 ", {}, {"ICompViewQuill::GetPinLabel"}},
        {"Attr4 ", {"IPin::GetAttributes"}, {"ICompViewQuill::GetPinAttr"}},
    };
    FailEveryStep(symbol, Tests::DrawnDesign::SymbolItems, [&] { return Symbol::Walk(design.symbol); });

    // The first group among the members is another sheet, which is passed over in any case.
    const std::string all = Tests::DrawnDesign::SheetItems, cluster = "Group12 Label13 Attr14 ";
    for (const char* operation : {"IGroup::GetType", "IUIDManager::GetGroup"}) {
        FaultInjector faults;
        faults.Inject({.operation = operation, .call = 2, .code = EErrorCode::NoValue});
        EXPECT_EQ(Sheet::Walk(design.block, design.sheet), std::string(all).erase(all.find(cluster), cluster.size()));
        faults.Inject({.operation = operation, .call = 2, .code = EErrorCode::AccessDenied});
        EXPECT_EQ(Sheet::Walk(design.block, design.sheet), all.substr(0, all.find(cluster)) + "thrown 201");
    }
}

#if defined(__x86_64__) && !defined(_WIN32)
// Here a pointer to a virtual operation is one more than its place in the table, where the destructor takes two slots.
template <class Visitor, class... Records>
void ExpectSlots() {
    std::uintptr_t want = 1 + sizeof(void*);
    for (const auto place : {[](void (Visitor::*operation)(const Records&)) {
             std::uintptr_t value = 0;
             std::memcpy(&value, &operation, sizeof value);
             return value;
         }(&Visitor::visit)...})
        EXPECT_EQ(place, want += sizeof(void*));
}

TEST(DataVisitors, KeepTheSlotsThatOtherModulesWereBuiltFor) {
    ExpectSlots<BlockOrinQuillDataVisitor, GroupDataQuill, LabelDataQuill, AttrDataQuill, TextDataQuill,
                CircleDataQuill, ArcDataQuill, RectDataQuill, LineDataQuill, BusDataQuill, NetDataQuill,
                CompDataQuill>();
    ExpectSlots<SymbolOrinQuillDataVisitor, LabelDataQuill, AttrDataQuill, TextDataQuill, CircleDataQuill, ArcDataQuill,
                RectDataQuill, LineDataQuill, PinDataQuill>();
}
#endif

}  // namespace
