#include "sheets/sheet_name.h"

#include <thread>

#include <gtest/gtest.h>

#include "sheet_design.h"

namespace Quill::Testing {
namespace {

// Initialisers of this module may run before those of the library when it is linked statically.
const SheetName copiedAtLoad = def_sheet_name;
const std::string renderedAtLoad = std::string(comp_sheet_name) + "|" + std::string(null_sheet_name);

TEST(SheetName, ConstantsServeStaticInitialisersAndAllThreads) {
    EXPECT_STREQ(copiedAtLoad, "1");
    EXPECT_EQ(renderedAtLoad, "1|");
    EXPECT_TRUE(comp_sheet_name == def_sheet_name);
    const auto read = [] {
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(comp_sheet_name.__Number() + null_sheet_name.__Number() + *def_sheet_name, 1 + 0 + '1');
    };
    std::thread other(read);
    read();
    other.join();
}

TEST(SheetName, ATextIsReadAsTheNumberAtItsBeginning) {
    const std::pair<const char*, int> cases[] = {
        {" \t007x", 7}, {"-3", -3}, {"main", 0}, {nullptr, 0}, {"99999999999", 2147483647}};
    for (const auto& [text, number] : cases) {
        SheetName name(text);
        EXPECT_EQ(std::as_const(name).__Number(), number);
        EXPECT_STREQ(name, text != nullptr ? text : "");
        EXPECT_EQ(*name.__NumberPtr(), number);
        EXPECT_EQ(std::string(name), std::to_string(number)) << "the number was asked for by reference";
    }
}

TEST(SheetName, RendersTheNumberThatWasAssignedLast) {
    SheetName name(-1);
    EXPECT_STREQ(name, "-1");
    int& number = name.__Number();
    number = 41;
    EXPECT_STREQ(name, "41");
    SheetName copy(name), assigned = comp_sheet_name;
    number = 42;
    EXPECT_STREQ(name, "42");
    EXPECT_STREQ(copy, "41");
    assigned = name;
    number = 43;
    EXPECT_EQ(assigned.__Number(), 42);
    assigned = SheetName("cover");
    EXPECT_STREQ(assigned, "cover");
}

TEST(SheetName, ComparesTextsWithoutLetterCase) {
    EXPECT_TRUE(SheetName("A1") == SheetName("a1") && !(SheetName("A1") != SheetName("a1")));
    EXPECT_TRUE(SheetName("3") == SheetName(3) && SheetName() == SheetName(""));
    EXPECT_TRUE(SheetName("07") != SheetName(7) && SheetName("3 ") != SheetName(3));
    EXPECT_TRUE(SheetName("\xC4") != SheetName("\xE4"));  // letters are those of ASCII
}

TEST(SheetName, IdsAreKeptOnTheSheet) {
    SheetDesign design({{"bare"}, {"with", "", " 12b"}, {"odd", "", "none"}});
    int id = 77;
    EXPECT_TRUE(!ReadSheetId(*design.sheets[0], id) && id == 77) << id;
    EXPECT_TRUE(ReadSheetId(*design.sheets[1], id) && id == 12) << id;
    EXPECT_TRUE(ReadSheetId(*design.sheets[2], id) && id == 0) << id;

    Orin::MutableContainerT<Orin::IGroup> writable;
    EXPECT_FALSE(WriteSheetId(writable, 5));
    ASSERT_TRUE(Orin::LockerT<Orin::IGroup>::Lock(design.sheets[0], writable));
    EXPECT_TRUE(WriteSheetId(writable, -5));
    Orin::String stored;
    EXPECT_TRUE(design.sheets[0]->GetAttribute("$$Internal_ID", stored));
    EXPECT_STREQ(stored, "-5");
}

}  // namespace
}  // namespace Quill::Testing
