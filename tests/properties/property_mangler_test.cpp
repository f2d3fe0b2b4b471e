#include "properties/property_mangler.h"

#include <cstring>
#include <string>

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

// The marked name in both forms.
std::string Marked(const char* name, int type) {
    std::string text = "what stood there";
    Mangler::Mangle(name, Kind(type), text);
    return text + " " + std::string(Mangler::Mangle(name, Kind(type)).View());
}

TEST(PropertyMangler, MarksTheKindAndTakesTheMarkOffInAllForms) {
    const struct {
        const char *why, *marked, *plain;
        int type;
        bool comesBack = true;
    } cases[] = {
        {"a regular name stays", "COMPS_ORDER", "COMPS_ORDER", 0},
        {"nothing", "", "", 0},
        {"uncommon", "$$NotCommonProperty_x", "x", 1},
        {"a kind name that begins with an underscore", "$$_RFVarBlock_x", "x", 2},
        {"its sibling", "$$_RFParametric_x", "x", 3},
        {"internal", "$$Internal____Bus", "___Bus", 4},
        {"constraint", "$$Constraint_x", "x", 5},
        {"no name leaves the prefix", "$$Internal_", "", 4},
        {"only one prefix comes and goes", "$$Internal_$$Internal_x", "$$Internal_x", 4},
        {"half a mark", "$x", "$x", 0},
        {"a mark alone", "$$", "$$", 0},
        {"regular names may be marked", "$$Regular_x", "x", 0, false},
        {"the separator may be any character", "$$InternalXY", "Y", 4, false},
        {"the kind name ends the text", "$$Internal", "", 4, false},
        {"the kind name is cut off", "$$Interna", "$$Interna", 0},
        {"an unknown kind", "$$Foo_x", "$$Foo_x", 0},
        {"case matters", "$$internal_x", "$$internal_x", 0},
        {"no kind, as a value outside the range gives it", "$$_x", "$$_x", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        PropertyType type = PropertyType::Constraint;
        const char* const behind = Mangler::Unmangle(c.marked, type);
        EXPECT_EQ(behind, c.marked + std::strlen(c.marked) - std::strlen(c.plain)) << behind;
        EXPECT_EQ(type, Kind(c.type));
        EXPECT_EQ(Mangler::Unmangle(c.marked), behind);
        std::string text = "what stood there";
        EXPECT_EQ(Mangler::Unmangle(c.marked, text), Kind(c.type));
        EXPECT_EQ(text, c.plain);
        EXPECT_EQ(c.comesBack, Marked(c.plain, c.type) == std::string(c.marked) + " " + c.marked);
    }
    for (const int outside : {-1, 6, 9})
        EXPECT_EQ(Marked("x", outside), "$$_x x") << "there the forms differ";
    EXPECT_STREQ(atLoad, "$$Internal_COMPS_ORDER");
}

TEST(PropertyMangler, TakesNullAndItsOwnOutputAsNames) {
    PropertyType type = PropertyType::Constraint;
    std::string text = "what stood there";
    EXPECT_TRUE(Mangler::Unmangle(nullptr) == nullptr && Mangler::Unmangle(nullptr, type) == nullptr);
    EXPECT_EQ(type, PropertyType::Regular);
    EXPECT_TRUE(Mangler::Unmangle(nullptr, text) == PropertyType::Regular && text.empty()) << text;
    EXPECT_EQ(Marked(nullptr, 5), "$$Constraint_ $$Constraint_");
    EXPECT_EQ(Marked(nullptr, 0), " ");

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

using ModificationTime = Tests::SmallDesign;

TEST_F(ModificationTime, OfBothKindsOfViewIsFormattedInLocalTimeOrLeavesTheOutputAlone) {
    const Tests::TwoHoursAhead zone;
    const std::string longest(127, 'x'), tooLong(128, 'x');
    const struct {
        int seconds;
        const char *format, *want;
    } cases[] = {
        {1236254820, nullptr, "05/03/2009:14:07"},
        {0, nullptr, "01/01/1970:02:00"},
        {2147483647, "%Y-%m-%d %H:%M:%S", "2038-01-19 05:14:07"},
        {0, longest.c_str(), longest.c_str()},
        {0, tooLong.c_str(), "old"},
        {0, "", "old"},        // an empty result
        {-1, nullptr, "old"},  // before 1970
    };
    Orin::ContainerT<const Orin::IBlockViewQuill> sheetView;
    Orin::ContainerT<const Orin::ICompViewQuill> symbolView;
    std::string out = "old";
    Mangler::GetPropDATETIME(sheetView, out, nullptr);
    Mangler::GetPropDATETIME(symbolView, out, nullptr);
    EXPECT_EQ(out, "old") << "no view";
    for (const auto& c : cases) {
        EXPECT_TRUE(editor.SetModificationTime(sheetIndex, c.seconds));
        EXPECT_TRUE(editor.SetModificationTime(compIndex, c.seconds));
        EXPECT_TRUE(Orin::IBlockViewQuill::Init(sheetView, *block, *sheet));
        EXPECT_TRUE(Orin::ICompViewQuill::Init(symbolView, *comp));
        std::string symbolOut = out = "old";
        Mangler::GetPropDATETIME(sheetView, out, c.format);
        Mangler::GetPropDATETIME(symbolView, symbolOut, c.format);
        EXPECT_EQ(out, c.want);
        EXPECT_EQ(symbolOut, c.want);
    }
}

}  // namespace
