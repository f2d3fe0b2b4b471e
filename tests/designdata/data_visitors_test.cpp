#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "designdata/block_orin_quill_data_visitor.h"
#include "designdata/symbol_orin_quill_data_visitor.h"
#include "designdb/testing/fault_injector.h"
#include "tests/support/drawn_design.h"
#include "tests/support/visit_recorder.h"

namespace {

using namespace Orin;
using DesignDb::Testing::FaultInjector;
using Quill::Utils::BlockOrinQuillDataVisitor;
using Quill::Utils::SymbolOrinQuillDataVisitor;

using Sheet = Tests::VisitRecorder<BlockOrinQuillDataVisitor>;
using Symbol = Tests::VisitRecorder<SymbolOrinQuillDataVisitor>;

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

TEST(DataVisitors, PassOverWhatIsAbsentAndThrowEveryOtherFailure) {
    Tests::DrawnDesign design;
    design.DrawSheet();
    const std::string all = Tests::DrawnDesign::SheetItems;
    const std::pair<const char*, std::string> cases[] = {
        {"IUIDManager::GetComp", "Comp1 Label2 Attr3 Attr4 "},  // first the operation, then what goes with its result
        {"IBlockViewQuill::GetCompData", "Comp1 "},
        {"IUIDManager::GetNet", "Net5 Net6 Label7 Attr8 "},
        {"INetQuill::GetData", "Net5 "},
        {"IBlockViewQuill::GetBusLabel", "Label10 "},
        {"IBlockViewQuill::GetGroupAttr", "Attr14 "},
        {"IArcQuill::GetData", "Arc18 "},
    };
    for (const int code : {200, 201, 202, 203, 204, 205, 206, 207, 102})
        for (const auto& [operation, visits] : cases) {
            SCOPED_TRACE(operation + std::to_string(code));
            const bool absent = code == 200 || code == 202 || (code >= 204 && code <= 206);
            const std::size_t place = all.find(visits);
            FaultInjector faults;
            faults.Inject({.operation = operation, .code = static_cast<EErrorCode>(code)});
            EXPECT_EQ(Sheet::Walk(design.block, design.sheet),
                      absent ? std::string(all).erase(place, visits.size())
                             : all.substr(0, place) + "thrown " + std::to_string(code));
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
