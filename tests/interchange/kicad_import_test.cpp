// Small designs made for one rule each.
#include "interchange/kicad_import.h"

#include <chrono>
#include <random>

#include <gmock/gmock.h>

#include "interchange/project_data.h"
#include "labels/bus_contents_utils.h"
#include "tests/interchange/imported_design.h"
#include "tests/support/damage.h"

namespace {

using namespace Quill;
using namespace Quill::Interchange;
using namespace Quill::Interchange::Testing;
using namespace Orin;
using testing::HasSubstr;

// A folder of its own for the files of one test.
class KicadImport : public testing::Test {
protected:
    KicadImport() {
        const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
        m_folder = std::filesystem::path(testing::TempDir()) / (std::string("kicad_") + test.name());
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
    }
    ~KicadImport() override { std::filesystem::remove_all(m_folder); }

    std::filesystem::path Put(const std::string& file, const std::string& text) {
        const std::filesystem::path path = m_folder / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    std::string ImportRoot(ImportedDesign& design, const std::string& text, const KicadOptions& options = {}) {
        return Short(design.Import(Put("root.kicad_sch", text), options));
    }
    // A message without the folder in front.
    std::string Short(std::string message) const {
        const std::string folder = m_folder.generic_string() + "/";
        for (std::size_t at; (at = message.find(folder)) != message.npos;)
            message.erase(at, folder.size());
        return message;
    }

    std::filesystem::path m_folder;
};

std::string Schematic(const std::string& items, const std::string& uuid = "root") {
    return "(kicad_sch (version 20231120) (generator \"test\")\n (uuid \"" + uuid + "\") (paper \"A4\")\n" + items +
           ")\n";
}

std::string Sheet(const std::string& name, const std::string& file, const std::string& uuid,
                  const std::string& more = "") {
    return " (sheet (at 10 10) (size 20 20) (uuid \"" + uuid + "\")\n  (property \"Blattname\" \"" + name +
           "\" (at 10 9 0))\n  (property \"Blattdatei\" \"" + file + "\" (at 10 31 0))\n" + more + ")\n";
}

std::string Page(const std::string& project, const std::string& path, const std::string& page) {
    return "(instances (project \"" + project + "\" (path \"" + path + "\" (page \"" + page + "\"))))";
}

// "SHEET NAMES number; ...", walked depth first.
std::string PagesOf(const ImportedDesign& design) {
    std::string text;
    for (const PageID& page : design.Pages(EAlgorithm::DepthFirst)) {
        const OpenPage open(design, page);
        text += text.empty() ? "" : "; ";
        for (const std::string& step : open.names)
            text += step + "/";
        String name;
        EXPECT_TRUE(open.group->GetName(name));
        text += std::string(name.View()) + (open.number.empty() ? "" : " ") + open.number;
    }
    return text;
}

TEST_F(KicadImport, FaultsNameTheirPlaceAndNothingIsWritten) {
    const std::string good = Schematic("");
    // An empty child is no file.
    const std::tuple<const char*, std::string, std::string, std::string> cases[] = {
        {"an empty file", "", "", "root.kicad_sch:1:1: the file is empty"},
        {"another format", "(kicad_pcb (version 1))", "",
         "root.kicad_sch:1:1: this is no KiCad schematic: it does not begin with (kicad_sch"},
        {"brackets that do not close", "(kicad_sch\n (wire (pts", "",
         "root.kicad_sch:2:12: the text ends inside a list"},
        {"a quote that does not close", "(kicad_sch (a b)\r\n (uuid \"x", "",
         "root.kicad_sch:2:8: a text without its closing quote"},
        {"a bracket too many", good + ")", "", "root.kicad_sch:4:1: text after the end of the schematic"},
        {"no number", Schematic("(junction (at 1 1_0))"), "", "root.kicad_sch:3:17: a number should stand here"},
        {"a value that is missing", Schematic("(junction (at 1))"), "", "root.kicad_sch:3:16: a value is missing"},
        {"a length out of this world", Schematic("(junction (at 1 1e300))"), "",
         "root.kicad_sch:3:17: a length beyond one kilometre"},
        {"an error in a child", Schematic(Sheet("A", "sub/a.kicad_sch", "u")), "(kicad_sch\n (wire))) x",
         "sub/a.kicad_sch:2:9: text after the end of the schematic"},
        {"a child that is missing", Schematic(Sheet("A", "sub/b.kicad_sch", "u")), good,
         "root.kicad_sch:5:26: sheet \"A\": sub/b.kicad_sch: cannot be read: No such file or directory"},
        {"a sheet without a file", Schematic(" (sheet (at 1 1))"), good,
         "root.kicad_sch:3:2: sheet \"\": no file is named"},
        {"a file below itself", Schematic(Sheet("A", "sub/a.kicad_sch", "u")),
         Schematic(Sheet("B", "../root.kicad_sch", "u")),
         "sub/a.kicad_sch:5:26: the hierarchy contains itself: root > sub/a > root"},
    };
    for (const auto& [why, root, child, want] : cases) {
        SCOPED_TRACE(why);
        std::filesystem::remove_all(m_folder / "sub");
        if (!child.empty()) Put("sub/a.kicad_sch", child);
        ImportedDesign design;
        EXPECT_EQ(ImportRoot(design, root), want);
        EXPECT_TRUE(design.IsEmpty());
    }
    ImportedDesign design;
    EXPECT_EQ(Short(design.Import(m_folder / "none.kicad_sch")),
              "none.kicad_sch: cannot be read: No such file or directory");
    ASSERT_EQ(ImportRoot(design, good), "");
    EXPECT_THAT(design.Import(m_folder / "root.kicad_sch"), HasSubstr("holds a design already"));
}

TEST_F(KicadImport, DepthOfBracketsIsNoMatter) {
    const std::size_t deep = 2'000'000;
    ImportedDesign design;
    EXPECT_EQ(ImportRoot(design, Schematic(std::string(deep, '(') + std::string(deep, ')'))), "");
}

TEST_F(KicadImport, SheetsThatMultiplyWithoutBoundAreRefused) {
    for (int level = 0; level < 30; ++level) {
        const std::string below = std::to_string(level + 1) + ".kicad_sch";
        Put(std::to_string(level) + ".kicad_sch",
            Schematic(level < 29 ? Sheet("a", below, "a") + Sheet("b", below, "b") : std::string()));
    }
    ImportedDesign design;
    EXPECT_EQ(Short(design.Import(m_folder / "0.kicad_sch")),
              "0.kicad_sch: the hierarchy has more than a million places");
}

TEST_F(KicadImport, InstancesOfOtherProjectsAndPathsWithoutTheRootAreTold) {
    Put("a.kicad_sch", Schematic(Sheet("low", "b.kicad_sch", "ub", Page("root", "/root/ua1", "7"))));
    Put("b.kicad_sch", Schematic(""));
    const std::string own = "(project \"root\" (path \"/root\" (page \"2\")))";
    const std::string other = "(project \"old\" (path \"/root\" (page \"9\")))";
    // With the instances of sheet "one", and the list of the root.
    const std::tuple<const char*, std::string, std::string, std::string> cases[] = {
        {"the project's own wins", "1; one/1 2; one/low/1 7; two/1; two/low/1", "(instances " + own + other + ")", ""},
        {"another's holds alone", "1; one/1 9; one/low/1 7; two/1; two/low/1", "(instances " + other + ")", ""},
        {"another design's is stale", "1; one/1; one/low/1 7; two/1; two/low/1",
         "(instances (project \"x\" (path \"/other\" (page \"9\"))))", ""},
        {"the root lists them", "1 #; one/1 3; one/low/1 7; two/1 3; two/low/1 iv", "",
         "(sheet_instances (path \"/\" (page \"#\")) (path \"/ua1\" (page \"3\")) (path \"/root/ua2\" (page \"3\")) "
         "(path \"/ua2/ub\" (page \"iv\")) (path \"/ua3\" (page \"5\")))"},
    };
    for (const auto& [why, want, instances, list] : cases) {
        SCOPED_TRACE(why);
        ImportedDesign design;
        ASSERT_EQ(ImportRoot(design, Schematic(Sheet("one", "a.kicad_sch", "ua1", instances) +
                                               Sheet("two", "a.kicad_sch", "ua2") + list)),
                  "");
        EXPECT_EQ(PagesOf(design), want);
        EXPECT_EQ(design.name, "root");
    }
}

TEST_F(KicadImport, FlatSheetsAreMergedInTheOrderOfTheirNumbers) {
    const auto label = [](const char* text) {
        return std::string(" (label \"") + text + "\" (at 1 1 0))\n (wire (pts (xy 1 1) (xy 2 1)))";
    };
    const std::string pin = "(pin \"P\" input (at 10 12 180))";
    KicadOptions options;
    options.mergeFlatSheets = true;
    const auto root =
        Put("root.kicad_sch",
            Schematic(Sheet("ten", "ten.kicad_sch", "u1", Page("root", "/root", "10")) +
                      Sheet("Two", "two.kicad_sch", "u2", Page("root", "/root", "2")) +
                      Sheet("two", "last.kicad_sch", "u3") + Sheet("pins", "pins.kicad_sch", "u4", pin) +
                      Sheet("x", "twice.kicad_sch", "u5") + Sheet("y", "twice.kicad_sch", "u6") + label("A")));
    Put("ten.kicad_sch", Schematic(label("B")));
    Put("two.kicad_sch", Schematic(label("C") + Sheet("low", "low.kicad_sch", "u7", Page("root", "/root/u2", "3"))));
    Put("low.kicad_sch", Schematic(label("D")));
    for (const char* file : {"last.kicad_sch", "pins.kicad_sch", "twice.kicad_sch"})
        Put(file, Schematic(""));
    ImportedDesign design;
    ASSERT_EQ(design.Import(root, options), "");
    EXPECT_EQ(PagesOf(design), "1; pins/1; x/1; y/1; Two 2; low 3; ten 10; two_1");

    Put("low.kicad_sch", Schematic(label("A") + label("B")));
    ImportedDesign refused;
    EXPECT_EQ(Short(refused.Import(root, options)),
              "root.kicad_sch: merging flat sheets would join labels of one name on different sheets: "
              "A (root, low); B (low, ten)");
    EXPECT_TRUE(refused.IsEmpty());
}

// "LABEL (OTHER LABELS): how many pins; ..." of the nets of the root block, and of its buses "LABEL: their nets".
std::string NetsOf(const ImportedDesign& design) {
    std::string found;
    IteratorT<const IBlock> blocks;
    IteratorT<const INet> nets;
    IteratorT<const IBus> buses;
    EXPECT_TRUE(design.snapshot->GetIterBlocks(blocks) && blocks->GetIterNets(nets) && blocks->GetIterBuses(buses));
    for (; nets; ++nets) {
        IteratorT<const IPin> pins;
        int count = 0;
        EXPECT_TRUE(nets->GetIterPinsConnected(pins) && pins.GetCount(count));
        const std::string others = AttributeOf(*nets, KicadAttributes::OtherLabels);
        found += (found.empty() ? "" : "; ") + LabelOf(*nets) + (others.empty() ? "" : " (" + others + ")") + ": " +
                 std::to_string(count);
    }
    for (; buses; ++buses) {
        IteratorT<const INet> connected;
        EXPECT_TRUE(buses->GetIterNetsConnected(connected));
        found += (found.empty() ? "" : "; ") + LabelOf(*buses) + ":";
        for (; connected; ++connected)
            found += " " + LabelOf(*connected);
    }
    return found;
}

// A power symbol that is turned and mirrored.
constexpr const char* Library = R"( (lib_symbols
  (symbol "power:VCC" (power)
   (symbol "VCC_0_1" (polyline (pts (xy 0 0) (xy 0 2.54))))
   (symbol "VCC_1_1" (pin power_in line (at 2.54 5.08 270) (length 0) hide (name "VCC") (number "1")))))
)";

TEST_F(KicadImport, PowerSymbolsNameTheNetAtTheirTurnedPin) {
    // How it is placed, where its pin comes to stand, and how a text stands that the symbol has along, left, bottom.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"(at 100 50 0)", "102.54 44.92", ""},
        {"(at 100 50 90)", "94.92 47.46", R"(, "style": {"orientation": "90"})"},
        {"(at 100 50 180)", "97.46 55.08", R"(, "style": {"horizontal": "right", "vertical": "top"})"},
        {"(at 100 50 270)", "105.08 52.54",
         R"(, "style": {"orientation": "90", "horizontal": "right", "vertical": "top"})"},
        {"(at 100 50 0) (mirror x)", "102.54 55.08", R"(, "style": {"vertical": "top"})"},
        {"(at 100 50 0) (mirror y)", "97.46 44.92", R"(, "style": {"horizontal": "right"})"},
        {"(at 100 50 90) (mirror x)", "94.92 52.54", R"(, "style": {"orientation": "90", "horizontal": "right"})"},
        {"(at 100 50 90) (mirror y)", "105.08 47.46", R"(, "style": {"orientation": "90", "vertical": "top"})"},
    };
    for (const auto& [placed, end, reference] : cases) {
        SCOPED_TRACE(placed);
        const std::string symbol = " (symbol (lib_id \"power:VCC\") " + placed +
                                   " (unit 1) (property \"Referenz\" \"#PWR1\" (effects (justify left bottom)))"
                                   " (property \"Wert\" \"+5{slash}3\"))\n";
        ImportedDesign design;
        ASSERT_EQ(ImportRoot(design, Schematic(Library + symbol + " (wire (pts (xy 200 200) (xy " + end + ")))")), "");
        EXPECT_EQ(NetsOf(design), "+5/3: 1");  // pin and wire are one net
        EXPECT_THAT(design.Json(),
                    HasSubstr(R"({"name": "Reference", "id": 2, "attributeId": 4194305)" + reference + "}"));
    }
}

TEST_F(KicadImport, NetsBearTheLabelThatRanksFirst) {
    const std::string library = R"( (lib_symbols
  (symbol "l:PWR" (power) (symbol "PWR_1_1" (pin power_in line (at 0 0 0) (number "1"))))
  (symbol "l:FLAG" (power) (symbol "FLAG_1_1" (pin power_out line (at 0 0 0) (number "1"))))
  (symbol "l:NEAR" (power local) (symbol "NEAR_1_1" (pin power_in line (at 0 0 0) (number "1"))))
  (symbol "l:IC" (symbol "IC_0_0" (pin power_in line (at 0 0 0) (hide yes) (name "VDD") (number "8"))
   (pin passive line (at 5 0 0) (number "1")))))
)";
    const auto symbol = [](const char* name, const char* at, const char* value = "V") {
        return std::string(" (symbol (lib_id \"l:") + name + "\") (at " + at +
               " 0) (unit 1) (property \"Reference\" \"X\") (property \"Value\" \"" + value + "\"))";
    };
    const auto label = [](const char* kind, const char* text, const char* at) {
        return std::string(" (") + kind + " \"" + text + "\" (at " + at + " 0))";
    };
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"global, power, local, hierarchical",
         " (wire (pts (xy 0 0) (xy 9 0)))" + label("hierarchical_label", "H", "0 0") + label("label", "B", "1 0") +
             label("label", "A", "2 0") + symbol("PWR", "9 0") + label("global_label", "G", "3 0"),
         "G (V\nA\nB\nH): 3"},
        {"a local power symbol is a local label", label("label", "B", "0 0") + symbol("NEAR", "0 0", "C"), "B (C): 1"},
        {"a flag names nothing", " (wire (pts (xy 0 0) (xy 9 0)))" + symbol("FLAG", "9 0"), ": 1"},
        {"hidden power pins connect by name", symbol("IC", "0 0") + symbol("IC", "50 0") + symbol("PWR", "9 9", "VDD"),
         "VDD: 3"},
        {"local labels follow the buses of their block, and hierarchical ones that they are one net with",
         label("label", "E2", "1 1") + label("label", "F2", "2 2") + label("hierarchical_label", "F2", "3 3") +
             label("global_label", "E2", "4 4"),
         "E2: 0; F[2]: 1; E[2]: 1"},
        {"a bus without a label is called by a pin on it", " (bus (pts (xy 10 12) (xy 0 12)))", "E[0:3]:"},
        {"nets join a bus by entries and by their names",
         " (bus (pts (xy 0 0) (xy 0 9))) (bus_entry (at 0 5) (size 2 2)) (wire (pts (xy 2 7) (xy 5 7)))" +
             label("label", "K[1..0]", "0 0") + label("label", "K1", "7 7") + label("label", "L", "5 7"),
         "L: 1; K[1]: 0; K[1:0]: L K[1]"},
    };
    Put("child.kicad_sch", Schematic(label("label", "E[0..3]", "0 0") + label("label", "{F[0..3] PRO}", "9 9")));
    Put("root.kicad_pro", "{\"schematic\": {\"bus_aliases\": {\"PRO\": [\"X\", \"Y\"]}}}");
    for (const auto& [why, items, want] : cases) {
        SCOPED_TRACE(why);
        const std::string pin =
            items.find("(bus (pts (xy 10 12)") != items.npos ? "(pin \"E[0..3]\" input (at 10 12 180))" : "";
        ImportedDesign design;
        ASSERT_EQ(ImportRoot(design, Schematic(library + items + Sheet("s", "child.kicad_sch", "u", pin))), "");
        EXPECT_EQ(NetsOf(design), want);
        EXPECT_TRUE(design.warnings.empty());
    }
}

TEST_F(KicadImport, WarnsOfWhatItCannotTakeOver) {
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"an older format", "(kicad_sch (version 20200101))",
         "root.kicad_sch: the format version 20200101 is not known; the file is read as far as it is understood"},
        {"a newer one, with line ends of another system",
         "(kicad_sch\r\n(version 20990101)\r\n(strange (new) things))\r\n",
         "root.kicad_sch: the format version 20990101 is not known; the file is read as far as it is understood"},
        {"images", Schematic("(image (at 1 1) (data |a(b|))"), "root.kicad_sch: images are left out: 1"},
        {"a symbol of which there is no copy", Schematic("(symbol (lib_id \"a:b\") (at 1 1 0))"),
         "root.kicad_sch:3:1: the file has no copy of the symbol a:b, so it has no pins"},
        {"a label that cannot be written", Schematic("(bus_alias \"A\" (members \"{A}\"))(label \"{A}\" (at 1 1 0))"),
         "root.kicad_sch:3:32: the label \"{A}\" has an alias that contains itself; it stays as it is"},
        {"a missing child, where that is allowed", Schematic(Sheet("A", "none.kicad_sch", "u")),
         "root.kicad_sch:5:26: sheet \"A\": none.kicad_sch: cannot be read: No such file or directory"},
        {"a project that cannot be read", Schematic(""),
         "root.kicad_pro: this is no JSON; its bus aliases are left out"},
    };
    KicadOptions options;
    options.allowMissing = true;
    for (const auto& [why, text, want] : cases) {
        SCOPED_TRACE(why);
        ImportedDesign design;
        if (want.starts_with("root.kicad_pro")) Put("root.kicad_pro", "{\"schematic\":");
        ASSERT_EQ(ImportRoot(design, text, options), "");
        EXPECT_EQ(PagesOf(design), "1");
        ASSERT_EQ(design.warnings.size(), 1U);
        EXPECT_EQ(Short(design.warnings[0].Message()), want);
    }
}

TEST_F(KicadImport, WritesWhatTheFilesSay) {
    ImportedDesign design;
    ASSERT_EQ(ImportRoot(design, Tests::FileText(QUILL_TEST_DATA "/kicad_import.kicad_sch")), "");
    EXPECT_TRUE(design.warnings.empty());
    EXPECT_EQ(design.Json(), Tests::FileText(QUILL_TEST_DATA "/kicad_import.json"));
    ImportedDesign again;
    ASSERT_EQ(again.Import(m_folder / "root.kicad_sch"), "");
    EXPECT_EQ(again.Json(), design.Json());

    EXPECT_EQ(BusContents::Utils::getNetLimiter(), -1);
    {
        const ProjectDataService service(design.snapshot);
        EXPECT_EQ(BusContents::Utils::getNetLimiter(), 1);
        EXPECT_EQ(BusContents::Utils::resolve_bus_contents("pair"), "P,N");
    }
    EXPECT_EQ(BusContents::Utils::resolve_bus_contents("pair"), "pair");
}

TEST_F(KicadImport, DamagedFilesGiveAFaultOrADesignThatCanBeWrittenAndReadAgain) {
    const std::string root = Tests::FileText(QUILL_TEST_DATA "/kicad_damaged.kicad_sch");
    const std::string child = Tests::FileText(QUILL_TEST_DATA "/kicad_damaged_child.kicad_sch");
    Put("a.kicad_sch", child);
    const std::vector<std::string> pieces{
        "(",    ")", "\"", "1e9", "-1e-9", "(at 1 1)",   "(mirror x)", "\\",     "|",           std::string(1, '\0'),
        "\xFF", "#", "[",  "..",  "{",     "9999999999", "(unit 0)",   "(sheet", "(path \"/\")"};
    unsigned designs = 0;
    for (unsigned seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const bool damagesRoot = seed < 1400;
        if (seed == 1400) Put("root.kicad_sch", root);
        const auto path =
            damagesRoot ? Put("root.kicad_sch", Tests::Damaged(root, random, pieces)) : m_folder / "root.kicad_sch";
        if (!damagesRoot) Put("a.kicad_sch", Tests::Damaged(child, random, pieces));
        KicadOptions options;
        options.allowMissing = seed % 2 == 0;
        options.mergeFlatSheets = seed % 5 == 0;
        ImportedDesign design;
        const auto start = std::chrono::steady_clock::now();
        const std::string fault = design.Import(path, options);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
        if (!fault.empty()) {
            EXPECT_TRUE(design.IsEmpty());
            EXPECT_EQ(fault.find(" /blocks"), fault.npos) << fault;  // a model that does not fit together
            continue;
        }
        ++designs;
        EXPECT_EQ(Tests::MemoryDesign().Read(design.Json()), "");
    }
    EXPECT_GT(designs, 200U);
}

}  // namespace
