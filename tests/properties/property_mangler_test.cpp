#include "properties/property_mangler.h"

#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
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

TEST(PropertyMangler, MarksTheKindInBothForms) {
    struct Case {
        const char *why, *name;
        int type;
        const char *text, *databaseText;
    };
    const Case cases[] = {
        {"a regular name stays", "x", 0, "x", "x"},
        {"uncommon", "x", 1, "$$NotCommonProperty_x", "$$NotCommonProperty_x"},
        {"a kind name that begins with an underscore", "x", 2, "$$_RFVarBlock_x", "$$_RFVarBlock_x"},
        {"its sibling", "x", 3, "$$_RFParametric_x", "$$_RFParametric_x"},
        {"internal", "___Bus", 4, "$$Internal____Bus", "$$Internal____Bus"},
        {"constraint", "x", 5, "$$Constraint_x", "$$Constraint_x"},
        {"above the range the forms differ", "x", 6, "$$_x", "x"},
        {"far above the range", "x", 9, "$$_x", "x"},
        {"below the range", "x", -1, "$$_x", "x"},
        {"no name leaves the prefix", "", 4, "$$Internal_", "$$Internal_"},
        {"a null name is none", nullptr, 5, "$$Constraint_", "$$Constraint_"},
        {"a null regular name", nullptr, 0, "", ""},
        {"marks are not looked for", "$$Internal_x", 4, "$$Internal_$$Internal_x", "$$Internal_$$Internal_x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        std::string out = "what stood there";
        Mangler::Mangle(c.name, Kind(c.type), out);
        EXPECT_EQ(out, c.text);
        EXPECT_EQ(Mangler::Mangle(c.name, Kind(c.type)).View(), c.databaseText);
    }
    EXPECT_STREQ(atLoad, "$$Internal_COMPS_ORDER");
}

TEST(PropertyMangler, TakesNamesApartAlikeInAllForms) {
    struct Case {
        const char *why, *name, *plain;
        int type;
    };
    const Case cases[] = {
        {"no mark", "COMPS_ORDER", "COMPS_ORDER", 0},
        {"nothing", "", "", 0},
        {"half a mark", "$x", "$x", 0},
        {"a mark alone", "$$", "$$", 0},
        {"regular names may be marked", "$$Regular_x", "x", 0},
        {"uncommon", "$$NotCommonProperty_x", "x", 1},
        {"a kind name that begins with an underscore", "$$_RFVarBlock_x", "x", 2},
        {"its sibling", "$$_RFParametric_x", "x", 3},
        {"internal", "$$Internal____Bus", "___Bus", 4},
        {"constraint", "$$Constraint_x", "x", 5},
        {"the separator may be any character", "$$InternalXY", "Y", 4},
        {"the separator ends the text", "$$Internal_", "", 4},
        {"the kind name ends the text", "$$Internal", "", 4},
        {"the kind name is cut off", "$$Interna", "$$Interna", 0},
        {"an unknown kind", "$$Foo_x", "$$Foo_x", 0},
        {"case matters", "$$internal_x", "$$internal_x", 0},
        {"no kind, as a value outside the range gives it", "$$_x", "$$_x", 0},
        {"only one prefix goes", "$$Internal_$$Internal_x", "$$Internal_x", 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        PropertyType type = PropertyType::Constraint;
        const char* const behind = Mangler::Unmangle(c.name, type);
        EXPECT_STREQ(behind, c.plain);
        EXPECT_EQ(behind, c.name + std::strlen(c.name) - std::strlen(c.plain)) << "points elsewhere";
        EXPECT_EQ(type, Kind(c.type));
        EXPECT_EQ(Mangler::Unmangle(c.name), behind);
        std::string plain = "what stood there";
        EXPECT_EQ(Mangler::Unmangle(c.name, plain), Kind(c.type));
        EXPECT_EQ(plain, c.plain);
    }
}

TEST(PropertyMangler, TakesNullAndItsOwnOutputAsNames) {
    PropertyType type = PropertyType::Constraint;
    std::string text = "what stood there";
    EXPECT_EQ(Mangler::Unmangle(nullptr), nullptr);
    EXPECT_EQ(Mangler::Unmangle(nullptr, type), nullptr);
    EXPECT_EQ(type, PropertyType::Regular);
    EXPECT_EQ(Mangler::Unmangle(nullptr, text), PropertyType::Regular);
    EXPECT_EQ(text, "");

    text = "some:COMPS_ORDER";
    Mangler::Mangle(text.c_str() + 5, PropertyType::Internal, text);
    EXPECT_EQ(text, "$$Internal_COMPS_ORDER");
    EXPECT_EQ(Mangler::Unmangle(text.c_str(), text), PropertyType::Internal);
    EXPECT_EQ(text, "COMPS_ORDER");
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
    EXPECT_EQ(Format(1236254820, "%H"), Both("14"));
    EXPECT_EQ(Format(0, nullptr), Both("01/01/1970:02:00"));
    EXPECT_EQ(Format(2147483647, "%Y-%m-%d %H:%M:%S"), Both("2038-01-19 05:14:07"));
    const std::string longest(127, 'x');
    EXPECT_EQ(Format(0, longest.c_str()), Both(longest));
}

TEST_F(ModificationTime, LeavesTheOutputAloneWhenThereIsNone) {
    EXPECT_EQ(Format(-1, nullptr, "old"), Both("old")) << "before 1970";
    EXPECT_EQ(Format(0, "", "old"), Both("old")) << "an empty result";
    EXPECT_EQ(Format(0, std::string(128, 'x').c_str(), "old"), Both("old")) << "too long a result";
    {
        Orin::DesignDb::Testing::FaultInjector faults;
        faults.Inject({"IBlockViewQuill::GetModificationTime"});
        faults.Inject({"ICompViewQuill::GetModificationTime"});
        EXPECT_EQ(Format(0, nullptr, "old"), Both("old")) << "an unreadable time";
    }
    std::string out = "old";
    Mangler::GetPropDATETIME(Orin::ContainerT<const Orin::IBlockViewQuill>(), out, nullptr);
    Mangler::GetPropDATETIME(Orin::ContainerT<const Orin::ICompViewQuill>(), out, nullptr);
    EXPECT_EQ(out, "old");
}

}  // namespace
