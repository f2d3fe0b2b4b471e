#include "interchange/design_json.h"

#include <gmock/gmock.h>

#include "tests/support/damage.h"
#include "tests/support/memory_design.h"

namespace {

using namespace Orin;
using Quill::Interchange::ReadDesignJson;
using Quill::Interchange::WriteDesignJson;
using testing::HasSubstr;
using Design = Tests::MemoryDesign;

Index Id(EObjectType type, std::uint32_t low) {
    return Index(type, 0, low);
}

std::string Everything() {
    return Tests::FileText(QUILL_TEST_DATA "/everything.json");
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, text.npos) << from;
    return at == text.npos ? text : text.replace(at, from.size(), to);
}

TEST(DesignJson, GivesBackByteByByteWhatItReadAndWhatTheExampleHolds) {
    for (const char* path : {QUILL_TEST_DATA "/everything.json", QUILL_EXAMPLES "/vibration-recorder.json"}) {
        SCOPED_TRACE(path);
        Design design;
        EXPECT_EQ(design.Read(Tests::FileText(path)), "");
        EXPECT_EQ(design.Json(), Tests::FileText(path));
    }
}

// What reader and writer could have wrong alike; the rest stands in the design that is compared after an import.
TEST(DesignJson, BringsEveryKindOfObjectIntoTheDatabase) {
    Design design;
    ASSERT_EQ(design.Read(Everything()), "");
    EXPECT_EQ(design.name, "every \"thing\" \\ \x01\x7F \xC3\xBC");
    String text;
    EXPECT_TRUE(design.snapshot->GetAttribute("LATIN", text));
    EXPECT_EQ(text,
              "M\xFC"
              "l");

    ContainerT<const IBlock> top;
    BlockTypes types;
    ASSERT_TRUE(design.objects.GetBlock(top, Id(EObjectType::Block, 7)) && top->GetType(types));
    EXPECT_EQ(types.Bits(), 0x80000102U);

    ContainerT<const IGroup> sheet, cluster;
    Index index;
    ASSERT_TRUE(design.objects.GetGroup(sheet, Id(EObjectType::Group, 4)) &&
                design.objects.GetGroup(cluster, Id(EObjectType::Group, 2)));
    EXPECT_TRUE(cluster->GetOwner(index) && index == Id(EObjectType::Group, 4));

    ContainerT<const IComp> comp;
    ContainerT<const IBlock> child;
    ASSERT_TRUE(design.objects.GetComp(comp, Id(EObjectType::Comp, 12)) && comp->GetChildBlock(child));
    EXPECT_TRUE(child->GetIndex(index) && index == Id(EObjectType::Block, 6));
    EXPECT_TRUE(comp->GetInstanceIndex(index) && index == Index(3));

    ContainerT<const IConfig> config;
    ContainerT<const IPath> root, below;
    ContainerT<const IComp> here;
    ASSERT_TRUE(design.snapshot->GetDefaultConfig(config, "main") && config->GetRoot(root) &&
                root->GetCompInPath(here, Id(EObjectType::Comp, 12)));
    EXPECT_TRUE(here->GetAttribute("REFDES", text, EAttributeType::User) && text == "U7");
    EXPECT_TRUE(here->GetAttribute("REFDES", text, EAttributeType::System) && text == "system");
    EXPECT_TRUE(comp->GetAttribute("REFDES", text, EAttributeType::User) && text == "U?");
    ASSERT_TRUE(root->GetChildPath(below, Id(EObjectType::Comp, 12)) &&
                below->GetCompInPath(here, Id(EObjectType::Comp, 1)));
    EXPECT_TRUE(here->GetAttribute("REFDES", text, EAttributeType::User) && text == "R7");

    ContainerT<const IBlockViewQuill> view;
    int seconds = 0;
    CompDataQuill body;
    AttrDataQuill drawn;
    ASSERT_TRUE(IBlockViewQuill::Init(view, *top, *sheet) && view->GetModificationTime(seconds));
    EXPECT_EQ(seconds, -5);
    EXPECT_TRUE(view->GetCompData(*comp, body));
    EXPECT_EQ(body, (CompDataQuill{1, {-1, 0}, EOrientation::Degrees180, true}));
    EXPECT_TRUE(view->GetGroupAttr(*cluster, "N", "", drawn) && drawn.showName && drawn.attributeId == 2);
}

TEST(DesignJson, RefusesWhatIsNoDesignNamesThePlaceAndEntersNothing) {
    // `from` is text of everything.json.
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        {"another format", "quill-design", "other", "/format", "quill-design"},
        {"a later version", "\"version\": 1", "\"version\": 2", "/version", "version"},
        {"no version", "\"version\": 1,", "", "", "lacks \"version\""},
        {"unknown member", "\"library\"", "\"a/b~\"", "/blocks/2/a~1b~0", "belongs"},
        {"unknown member deep down", "\"mirrored\"", "\"mirror\"", "/blocks/0/comps/0/drawn/0/body/mirror", "belongs"},
        {"member twice", "\"name\": \"lib\"", "\"index\": \"block:9\"", "/blocks/2/index", "twice"},
        {"no index", "{\"index\": \"net:9\"}", "{}", "/blocks/0/nets/1", "lacks \"index\""},
        {"index of another form", "\"bus:3\", \"label\"", "\"bus:3x\", \"label\"", "/blocks/0/buses/0/index", "index"},
        {"index too large", "\"net:9\"}", "\"net:4294967296\"}", "/blocks/0/nets/1/index", "index"},
        {"index part too large", "\"200:1:5\", \"name\"", "\"256:1:5\", \"name\"", "/blocks/2/comps/0/index", "index"},
        {"index with a sign", "\"net:9\"}", "\"net:+9\"}", "/blocks/0/nets/1/index", "index"},
        {"the empty index", "\"net:9\"}", "\"0:0\"}", "/blocks/0/nets/1/index", "empty"},
        {"index twice", "\"group:77\"", "\"group:2\"", "/blocks/0/groups/3/index", "group:2 is there already"},
        {"index twice, of kinds", "\"group:77\"", "\"comp:12\"", "/blocks/0/comps/0/index", "comp:12 is there"},
        {"number too large", "4294967295", "4294967296", "/blocks/0/groups/0/view/lines/0/id", "from 0 to 4294967295"},
        {"coordinate too large", "9223372036854775807", "9223372036854775808",
         "/blocks/0/groups/0/view/lines/0/points/0/1", "whole number"},
        {"fraction", "\"radius\": 3", "\"radius\": 3.0", "/blocks/0/groups/0/view/circles/0/radius", "whole number"},
        {"time too large", "\"time\": -5", "\"time\": 2147483648", "/blocks/0/groups/0/view/time", "whole number"},
        {"no text", "\"label\": \"U1\"", "\"label\": null", "/blocks/0/comps/0/label", "not a text"},
        {"no list", "\"types\": [\"symbol\"], \"library\"", "\"types\": 1, \"library\"", "/blocks/2/types", "list"},
        {"no object", "{\"index\": \"net:9\"}", "[]", "/blocks/0/nets/1", "object"},
        {"unknown word", "dashDot", "dashdot", "/blocks/0/groups/0/view/lines/0/style/pattern", "words"},
        {"value beyond its enumeration", "\"fill\": 9", "\"fill\": 256", "/blocks/0/groups/0/view/circles/0/style/fill",
         "255"},
        {"bit position too large", "\"drawn\", 31", "\"drawn\", 32", "/blocks/0/types/2", "bit position"},
        {"point of three", "\"middle\": [3, 4]", "\"middle\": [3, 4, 5]", "/blocks/0/groups/0/view/arcs/0/middle", "2"},
        {"U+0000", "line\\n", "\\u0000", "/blocks/0/groups/0/view/texts/0/text", "U+0000"},
        {"U+0000 in bytes", "4DFC6C", "4D00", "/attributes/1/1", "U+0000"},
        {"half a byte", "4DFC6C", "4DF", "/attributes/1/1/hex", "odd"},
        {"no bytes", "4DFC6C", "4DFG", "/attributes/1/1/hex", "hexadecimal"},
        {"attribute twice", "[\"REFDES\", \"system\", \"system\"]", "[\"REFDES\", \"V\"]",
         "/blocks/0/comps/0/attributes/1", "second time"},
        {"attribute without a name", "[\"W\"", "[\"\"", "/blocks/0/nets/0/attributes/0", "empty name"},
        {"family of another object", "[\"W\", \"1\"", "[\"W\", \"1\", 1", "/blocks/0/nets/0/attributes/0",
         "2 elements"},
        {"two drawings on one view", "\"on\": \"group:3:9\", \"body\"", "\"on\": \"group:4\", \"body\"",
         "/blocks/0/comps/0/drawn/1", "second drawing"},
        {"drawn attribute twice", "{\"name\": \"P\", \"value\": \"Q\"}", "{\"name\": \"P\"}",
         "/blocks/0/comps/0/pins/1/drawn/0/attributes/1", "repeats"},
        {"body of what has none", "\"label\": {}", "\"body\": {}", "/blocks/0/nets/0/drawn/0/body", "cannot be"},
        {"nothing drawn", ", \"label\": {}", "", "/blocks/0/nets/0/drawn/0", "nothing"},
        {"drawn on no view", "\"on\": \"group:3:9\"}]", "\"on\": \"group:3:8\"}]", "/blocks/0/nets/0/pieces/2/on",
         "group:3:8 names no object"},
        {"drawn outside of its block", "{\"on\": \"200:1:5\", \"att", "{\"on\": \"group:4\", \"att",
         "/blocks/2/comps/0/drawn/0/on", "does not go together"},
        {"missing definition", "\"definition\": \"200:1:5\"", "\"definition\": \"comp:99\"",
         "/blocks/0/comps/0/definition", "comp:99 names no object"},
        {"missing bus", "\"bus\": \"bus:3\"", "\"bus\": \"bus:4\"", "/blocks/0/comps/1/bus", "names no"},
        {"missing root", "\"name\": \"other\", \"root\": \"block:7\"", "\"name\": \"other\", \"root\": \"block:8\"",
         "/configurations/1/root", "names no"},
        {"missing child block", "\"child\": \"block:6\"", "\"child\": \"comp:12\"", "/blocks/0/comps/0/child",
         "names no"},
        {"pin of another block", "\"pins\": [\"pin:1\"", "\"pins\": [\"pin:3\"", "/blocks/0/nets/0/pins/0", "together"},
        {"pin on two nets", "{\"index\": \"net:9\"}", "{\"index\": \"net:9\", \"pins\": [\"pin:2\"]}",
         "/blocks/0/nets/1/pins/0", "on a net already"},
        {"net on its bus twice", "\"net:8\", \"net:9\"]", "\"net:8\", \"net:8\"]", "/blocks/0/buses/0/nets/1",
         "already"},
        {"member twice in a group", "\"members\": [\"net:8\"", "\"members\": [\"bus:3\"",
         "/blocks/0/groups/0/members/2", "already"},
        {"owner that comes later", "\"type\": \"cluster\", \"owner\": \"group:4\"", "\"owner\": \"group:77\"",
         "/blocks/0/groups/1/owner", "before"},
        {"membership left out", "\"group:2\", \"group:4\"], \"attr", "\"group:2\"], \"attr",
         "/blocks/0/comps/0/memberOf", "each group"},
        {"pin left out of the order", "[\"pin:9\", \"pin:1\", ", "[\"pin:9\", ", "/blocks/0/pinOrder", "each pin"},
        {"name of two configurations", "\"name\": \"other\"", "\"name\": \"main\"", "/configurations/1/name",
         "another"},
        {"place of no configuration", "{\"configuration\": \"config:1\"", "{\"configuration\": \"config:2\"",
         "/blocks/0/comps/0/occurrences/0/configuration", "no configuration with a root"},
        {"one place twice", "{\"configuration\": \"config:1\"", "{\"configuration\": \"config:3\"",
         "/blocks/0/comps/0/occurrences/1", "second occurrence"},
        {"way that leads nowhere", "\"path\": [\"comp:12\"]", "\"path\": [\"comp:5\"]",
         "/blocks/1/comps/0/occurrences/0/path/0", "no block below"},
        {"way to another block", "\"path\": [\"comp:12\"]", "\"path\": []", "/blocks/1/comps/0/occurrences/0/path",
         "component's block"},
        {"too deep", "\"label\": {}", "\"label\": [[[[[[[[[[]]]]]]]]]]",
         "/blocks/0/nets/0/drawn/0/label/0/0/0/0/0/0/0/0/0", "deeply"},
        {"syntax", "\"label\": \"R\"", "\"label\": \"R\" x", "/blocks/0/comps/1", "line 36, column 38: syntax error"},
        {"bytes that are not UTF-8", "\"R\"", "\"\xFC\"", "/blocks/0/comps/1/label", "ill-formed UTF-8"},
    };
    Design design;
    for (const auto& [why, from, to, pointer, reason] : cases) {
        SCOPED_TRACE(why);
        const std::string fault = design.Read(Replaced(Everything(), from, to));
        EXPECT_THAT(fault, HasSubstr(reason));
        EXPECT_EQ(fault[0] == '/' ? fault.substr(0, fault.find(": ")) : "", pointer) << fault;
        EXPECT_TRUE(design.IsEmpty());
    }
    EXPECT_EQ(design.Read("3"), "is not an object");
    EXPECT_THAT(design.Read(std::string(1 << 20, '[')), HasSubstr("nests too deeply"));
    EXPECT_THAT(design.Read("{} {}"), HasSubstr("syntax error"));
}

TEST(DesignJson, EntersOnlyAnEmptySnapshotOfAClientWithoutATransaction) {
    Design design;
    String none;
    ASSERT_TRUE(design.snapshot->BeginTransaction(ETransactionType::Edit));
    EXPECT_NE(design.Read(Everything()), "");
    bool active = false;
    EXPECT_TRUE(design.snapshot->IsTransactionActive(active) && active);
    ASSERT_TRUE(design.snapshot->RollbackTransaction());
    ASSERT_EQ(design.Read(Everything()), "");
    EXPECT_EQ(design.Read(Everything()), "The snapshot holds a design already");
    EXPECT_EQ(design.Json(), Everything());
    EXPECT_TRUE(ReadDesignJson(Everything(), {}, none));
    std::string text = "untouched";
    EXPECT_FALSE(WriteDesignJson({}, none, text));
    EXPECT_EQ(text, "untouched");
}

// The inspector is what the writer sees the design through.
TEST(DesignJson, PassesOverAttributesAtPlacesThatCannotBeReached) {
    Design design;
    ASSERT_EQ(design.Read(Everything()), "");
    DesignDb::Inspector& inspector = design.inspector;
    ListT<DesignDb::OccurrenceInfo> places;
    const Index comp = Id(EObjectType::Comp, 1);
    EXPECT_EQ(DesignDb::Inspector().GetOccurrences(comp, places).GetErrorCode(), 110);
    ASSERT_TRUE(inspector.GetOccurrences(comp, places));
    ASSERT_EQ(places.Count(), 1U);
    EXPECT_EQ(places[0].comps, (ListT<Index>{Id(EObjectType::Comp, 12)}));
    EXPECT_EQ(inspector.GetOccurrences(Id(EObjectType::Block, 7), places).GetErrorCode(), 200);
    EXPECT_EQ(places.Count(), 1U);

    // The way down goes, then comes back, then leads to a block that contains itself.
    for (const auto& [child, count] :
         {std::pair(Index(), 0U), {Id(EObjectType::Block, 6), 1U}, {Id(EObjectType::Block, 7), 0U}}) {
        ASSERT_TRUE(design.editor.SetChildBlock(Id(EObjectType::Comp, 12), child));
        ASSERT_TRUE(inspector.GetOccurrences(comp, places));
        EXPECT_EQ(places.Count(), count);
        Design again;
        EXPECT_EQ(again.Read(design.Json()), "");
    }
}

TEST(DesignJson, SurvivesDamageWithAFaultOrADesign) {
    const std::string whole = Everything();
    Design design;
    for (std::size_t length = 0; length + 1 < whole.size(); length += 7)
        EXPECT_NE(design.Read(whole.substr(0, length)), "") << length;
    std::mt19937 random(1);
    const std::vector<std::string> pieces{"\"", "{", "]", ",", "0", "-", "\xC3", "comp:12", "null", "[[", ":"};
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE(round);
        Design damaged;
        if (damaged.Read(Tests::Damaged(whole, random, pieces)).empty()) {
            Design again;
            EXPECT_EQ(again.Read(damaged.Json()), "");
            EXPECT_EQ(again.Json(), damaged.Json());
        } else {
            EXPECT_TRUE(damaged.IsEmpty());
        }
    }
}

}  // namespace
