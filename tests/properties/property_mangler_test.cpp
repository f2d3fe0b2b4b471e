#include "properties/property_mangler.h"

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/small_design.h"
#include "tests/support/time_zone.h"

namespace {

using Mangler = Quill::Utils::CPropertyMangler;
using Quill::DataModel::PropertyType;

PropertyType Kind(int value) {
    return static_cast<PropertyType>(value);
}

// The initialisers of this module may run before those of the library when it is linked statically.
const Orin::String atLoad = Mangler::Mangle("COMPS_ORDER", PropertyType::Internal);

struct Case {
    const char *why, *marked, *plain;
    int type;
};
const Case BothWays[] = {
    {"a regular name stays", "COMPS_ORDER", "COMPS_ORDER", 0},
    {"nothing", "", "", 0},
    {"uncommon", "$$NotCommonProperty_x", "x", 1},
    {"a kind name that begins with an underscore", "$$_RFVarBlock_x", "x", 2},
    {"its sibling", "$$_RFParametric_x", "x", 3},
    {"internal", "$$Internal____Bus", "___Bus", 4},
    {"constraint", "$$Constraint_x", "x", 5},
    {"no name leaves the prefix", "$$Internal_", "", 4},
    {"only one prefix comes and goes", "$$Internal_$$Internal_x", "$$Internal_x", 4},
};

void ExpectMarked(const char* name, int type, const char* text, const char* databaseText) {
    std::string out = "what stood there";
    Mangler::Mangle(name, Kind(type), out);
    EXPECT_EQ(out, text);
    EXPECT_EQ(Mangler::Mangle(name, Kind(type)).View(), databaseText);
}

TEST(PropertyMangler, MarksTheKindInBothForms) {
    for (const Case& c : BothWays) {
        SCOPED_TRACE(c.why);
        ExpectMarked(c.plain, c.type, c.marked, c.marked);
    }
    ExpectMarked(nullptr, 5, "$$Constraint_", "$$Constraint_");
    ExpectMarked(nullptr, 0, "", "");
    for (const int outside : {-1, 6, 9})  // there the forms differ
        ExpectMarked("x", outside, "$$_x", "x");
    EXPECT_STREQ(atLoad, "$$Internal_COMPS_ORDER");
}

TEST(PropertyMangler, TakesNamesApartAlikeInAllForms) {
    std::vector<Case> cases = {
        {"half a mark", "$x", "$x", 0},
        {"a mark alone", "$$", "$$", 0},
        {"regular names may be marked", "$$Regular_x", "x", 0},
        {"the separator may be any character", "$$InternalXY", "Y", 4},
        {"the kind name ends the text", "$$Internal", "", 4},
        {"the kind name is cut off", "$$Interna", "$$Interna", 0},
        {"an unknown kind", "$$Foo_x", "$$Foo_x", 0},
        {"case matters", "$$internal_x", "$$internal_x", 0},
        {"no kind, as a value outside the range gives it", "$$_x", "$$_x", 0},
    };
    cases.insert(cases.end(), std::begin(BothWays), std::end(BothWays));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        PropertyType type = PropertyType::Constraint;
        const char* const behind = Mangler::Unmangle(c.marked, type);
        EXPECT_EQ(behind, c.marked + std::strlen(c.marked) - std::strlen(c.plain)) << behind;
        EXPECT_EQ(type, Kind(c.type));
        EXPECT_EQ(Mangler::Unmangle(c.marked), behind);
        std::string plain = "what stood there";
        EXPECT_EQ(Mangler::Unmangle(c.marked, plain), Kind(c.type));
        EXPECT_EQ(plain, c.plain);
    }
}

TEST(PropertyMangler, TakesNullAndItsOwnOutputAsNames) {
    PropertyType type = PropertyType::Constraint;
    std::string text = "what stood there";
    EXPECT_TRUE(Mangler::Unmangle(nullptr) == nullptr && Mangler::Unmangle(nullptr, type) == nullptr);
    EXPECT_EQ(type, PropertyType::Regular);
    EXPECT_TRUE(Mangler::Unmangle(nullptr, text) == PropertyType::Regular && text.empty()) << text;

    text = "some:COMPS_ORDER";
    Mangler::Mangle(text.c_str() + 5, PropertyType::Internal, text);
    EXPECT_EQ(text, "$$Internal_COMPS_ORDER");
    EXPECT_TRUE(Mangler::Unmangle(text.c_str(), text) == PropertyType::Internal && text == "COMPS_ORDER") << text;
}

TEST(PropertyMangler, KnowsTheDatePropertyByItsExactName) {
    EXPECT_TRUE(Mangler::IsPropDATETIME("@DATETIME"));
    for (const char* other : {"@datetime", "DATETIME", "@DATETIME ", ""})
        EXPECT_FALSE(Mangler::IsPropDATETIME(other)) << other;
}

class ModificationTime : public Tests::SmallDesign {
protected:
    // The time of both kinds of view, each written over `out`.
    std::pair<std::string, std::string> Format(int seconds, const char* format, std::string out = "") {
        std::string symbolOut = out;
        Orin::ContainerT<const Orin::IBlockViewQuill> sheetView;
        Orin::ContainerT<const Orin::ICompViewQuill> symbolView;
        EXPECT_TRUE(editor.SetModificationTime(sheetIndex, seconds) && editor.SetModificationTime(compIndex, seconds));
        EXPECT_TRUE(Orin::IBlockViewQuill::Init(sheetView, *block, *sheet));
        EXPECT_TRUE(Orin::ICompViewQuill::Init(symbolView, *comp));
        Mangler::GetPropDATETIME(sheetView, out, format);
        Mangler::GetPropDATETIME(symbolView, symbolOut, format);
        return {out, symbolOut};
    }
    static std::pair<std::string, std::string> Both(const std::string& text) { return {text, text}; }
};

TEST_F(ModificationTime, IsFormattedInLocalTime) {
    const Tests::TwoHoursAhead zone;
    EXPECT_EQ(Format(1236254820, nullptr), Both("05/03/2009:14:07"));
    EXPECT_EQ(Format(0, nullptr), Both("01/01/1970:02:00"));
    EXPECT_EQ(Format(2147483647, "%Y-%m-%d %H:%M:%S"), Both("2038-01-19 05:14:07"));
    const std::string longest(127, 'x');
    EXPECT_EQ(Format(0, longest.c_str()), Both(longest));
}

TEST_F(ModificationTime, LeavesTheOutputAloneWhenThereIsNone) {
    EXPECT_EQ(Format(-1, nullptr, "old"), Both("old")) << "before 1970";
    EXPECT_EQ(Format(0, "", "old"), Both("old")) << "an empty result";
    EXPECT_EQ(Format(0, std::string(128, 'x').c_str(), "old"), Both("old")) << "too long a result";
    std::string out = "old";
    Mangler::GetPropDATETIME(Orin::ContainerT<const Orin::IBlockViewQuill>(), out, nullptr);
    Mangler::GetPropDATETIME(Orin::ContainerT<const Orin::ICompViewQuill>(), out, nullptr);
    EXPECT_EQ(out, "old");
}

}  // namespace
