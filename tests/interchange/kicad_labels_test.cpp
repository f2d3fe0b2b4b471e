#include <gtest/gtest.h>

#include "interchange/detail/kicad/label_text.h"
#include "labels/bus_contents_utils.h"

namespace {

using namespace Quill::Interchange::Kicad;
using enum LabelKind;

std::string Times(std::size_t count, const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

const BusAliases Aliases{
    {"ALIAS", {"X", "~{Y}", "", "V[1..0]"}},
    {"OUTER", {"{ALIAS Z}", "Q{ALIAS}", "X"}},
    {"NAMES", {"names", "ALIAS"}},
    {"SELF", {"A", "{SELF}"}},
    {"RING1", {"P{RING2}"}},
    {"RING2", {"{RING1}"}},
    {"SPACES", {"A B"}},
    {"EMPTY", {}},
};

// The buses D[7..0], D1[3..0], ~{CS[0..7]} and G{E[4..6]}.
KnownBuses Known() {
    KnownBuses buses;
    LabelBudget budget;
    for (const char* text :
         {"D[7..0]", "D1[3..0]", "~{CS[0..7]}", "G{E[4..6] F}", "S[0..3]P", "PLAIN", "W[0..99999999]"})
        buses.Add(text, Aliases, budget);
    return buses;
}

TEST(KicadLabels, AreTranslatedByKind) {
    const std::tuple<const char*, std::string, LabelKind, std::string> cases[] = {
        {"a plain label", "CLK", Plain, "CLK"},
        {"a vector, either way", "A[7..0]", Vector, "A[7:0]"},
        {"numbers lose leading zeros", "A[00..015]", Vector, "A[0:15]"},
        {"a range of one is no vector", "A[3..3]", Plain, "A[3..3]"},
        {"nor is one with a number missing", "A[..3]", Plain, "A[..3]"},
        {"nor one beyond all numbers", "A[0..99999999999999999999]", Plain, "A[0..99999999999999999999]"},
        {"nor one without its end", "A[0..3", Plain, "A[0..3"},
        {"nor one that goes on", "A[0..3]x", Plain, "A[0..3]x"},
        {"a half of a pair is written out", "A[1..0]P", Vector, "A1P,A0P"},
        {"so is a vector without a stem", "[1..3]", Vector, "1,2,3"},
        {"so is one within a subscript", "A_{[1..0]}", Vector, "A_{1},A_{0}"},
        {"one within an overbar stays a range", "~{A[7..0]}", Vector, "~A[7:0]"},
        {"a group", "P{A B}", Group, "P.A,P.B"},
        {"without a prefix", "{A  B, C}", Group, "A,B,C"},
        {"with vectors and marks", "P{A[3..0] ~{B} C[0..1]N}", Group, "P.A[3:0],P.~B,P.C0N,P.C1N"},
        {"with a prefix under a bar", "~{P}{A}", Group, "~P.A"},
        {"an alias stands for its members", "P{ALIAS B}", Group, "P.X,P.~Y,P.V[1:0],P.B"},
        {"aliases in groups in aliases", "{OUTER}", Group, "X,~Y,V[1:0],Z,Q.X,Q.~Y,Q.V[1:0],X"},
        {"an alias twice is no circle", "{ALIAS ALIAS}", Group, "X,~Y,V[1:0],X,~Y,V[1:0]"},
        {"an alias that an alias names is a net", "{NAMES}", Group, "names,ALIAS"},
        {"an alias without braces is a net", "ALIAS", Plain, "ALIAS"},
        {"what follows a group has no meaning", "P{A}x", Group, "P.A"},
        {"a blank before the brace is no prefix", "P {A}", Plain, "P {A}"},
        {"braces in a group make none", "P{A{B}}", Plain, "P{A{B}}"},
        {"an escape is a character in a group", "P{A{slash}B{space}C}", Group, "P.A/B C"},
        {"and makes no group", "STBY{slash}RST", Plain, "STBY/RST"},
        {"nor does a subscript", "CK_{p}^{2}", Plain, "CK_{p}^{2}"},
        {"nor a variable", "${A{slash}B}", Plain, "${A{slash}B}"},
        {"an overbar", "~{RESET}", Plain, "~RESET"},
        {"overbars in and behind one another", "A~{B~{C}}D~{E}", Plain, "A~B~CD~E"},
        {"an empty overbar stays", "~{}", Plain, "~{}"},
        {"every escape",
         "{dblquote}{quote}{lt}{gt}{slash}{bar}{colon}{space}{dollar}{tab}{return}|{comma}{backslash}{brace}", Plain,
         "\"'<>/|: $\t\n|{comma}{backslash}{brace}"},
        {"what would part nets or levels becomes its escape", "A,B\\C", Plain, "A{comma}B{backslash}C"},
        {"braces that do not pair leave all as it is", "A,~{B", Plain, "A,~{B"},
        {"the other way round too", "~{A}}", Plain, "~{A}}"},
        {"a member of a known bus", "D3", Plain, "D[3]"},
        {"not one outside", "D8", Plain, "D8"},
        {"not one with zeros", "D03", Plain, "D03"},
        {"a stem that ends in a digit", "D13", Plain, "D1[3]"},
        {"a member under a bar", "~{CS5}", Plain, "~CS[5]"},
        {"not the one without the bar", "CS5", Plain, "CS5"},
        {"a member of a vector in a group", "G.E5", Plain, "G.E[5]"},
        {"also within another group", "{D0 CLK}", Group, "D[0],CLK"},
        {"vectors that are written out have no brackets", "S2P", Plain, "S2P"},
        {"nor have those that are too large", "W5", Plain, "W5"},
        {"digits alone", "12345678901234567890123", Plain, "12345678901234567890123"},
        {"nothing", "", Plain, ""},
    };
    const KnownBuses buses = Known();
    for (const auto& [why, text, kind, want] : cases) {
        SCOPED_TRACE(why);
        LabelBudget budget;
        const TranslatedLabel label = TranslateLabel(text, Aliases, buses, budget);
        EXPECT_EQ(label.text, want);
        EXPECT_EQ(label.kind, kind);
        EXPECT_EQ(label.problem, LabelProblem::None);
        EXPECT_EQ(ClassifyLabel(text), kind);
    }
}

TEST(KicadLabels, ThatCannotBeTranslatedSayWhyAndStayAsTheyAre) {
    BusAliases aliases = Aliases;
    for (int i = 0; i < 40; ++i)  // each doubles the next, and the last one names nothing
        aliases["H" + std::to_string(i)] = {Times(2, "{H" + std::to_string(i + 1) + "}"),
                                            "{H" + std::to_string(i + 1) + "}"};
    for (int i = 0; i < 5000; ++i)
        aliases["L" + std::to_string(i)] = {Times(50, "p") + "{L" + std::to_string(i + 1) + "}"};
    const std::tuple<const char*, std::string, LabelProblem> cases[] = {
        {"no members", "P{ }", LabelProblem::NoMembers},
        {"an alias of nothing", "{EMPTY}", LabelProblem::NoMembers},
        {"an alias in itself", "{A SELF}", LabelProblem::AliasInItself},
        {"at two removes", "{RING1}", LabelProblem::AliasInItself},
        {"an item that would take in the next one", "{A[ B}", LabelProblem::Unwritable},
        {"an item that would be a list", "{A {comma}}", LabelProblem::Unwritable},
        {"a bar over two items", "{~{A B}}", LabelProblem::Unwritable},
        {"a huge range", "A[0..2000000000]", LabelProblem::TooLarge},
        {"the first range that is too large", "A[65536..0]", LabelProblem::TooLarge},
        {"ranges that are too large together", "{A[0..40000] B[0..40000]}", LabelProblem::TooLarge},
        {"too much to write out", "[0..20000]", LabelProblem::TooLarge},
        {"too many items", "{" + Times(70'000, "A ") + "}", LabelProblem::TooLarge},
        {"too long an item", "{" + Times(70'000, "A") + "}", LabelProblem::TooLarge},
        {"aliases that double", "{H0}", LabelProblem::TooLarge},
        {"prefixes that pile up", "{L0}", LabelProblem::TooLarge},
    };
    for (const auto& [why, text, problem] : cases) {
        SCOPED_TRACE(why);
        LabelBudget budget;
        KnownBuses buses;
        buses.Add(text, aliases, budget);
        const TranslatedLabel label = TranslateLabel(text, aliases, buses, budget);
        EXPECT_EQ(label.problem, problem);
        EXPECT_EQ(label.text, text);
        EXPECT_GT(budget.left, LabelBudget{}.left - 1'000'000) << "little is left for other labels";
    }
    LabelBudget budget;
    EXPECT_EQ(TranslateLabel("A[0..65535]", aliases, {}, budget).text, "A[0:65535]");
    budget.left = 20;
    EXPECT_EQ(TranslateLabel("{A B}", aliases, {}, budget).text, "A,B");
    EXPECT_EQ(TranslateLabel("{A B}", aliases, {}, budget).problem, LabelProblem::TooLarge) << "the budget is shared";
}

TEST(KicadLabels, KnownRangesMayOverlapInAnyOrder) {
    KnownBuses buses;
    for (const auto& [low, high] : {std::pair{4, 6}, {10, 12}, {1, 2}, {5, 11}, {20, 20}, {7, 8}})
        buses.AddRange("D", static_cast<std::uint64_t>(low), static_cast<std::uint64_t>(high));
    for (int i = 0; i < 24; ++i) {
        const std::string number = std::to_string(i);
        const bool known = (i >= 1 && i <= 2) || (i >= 4 && i <= 12) || i == 20;
        EXPECT_EQ(buses.WithBrackets("D" + number), known ? "D[" + number + "]" : "D" + number);
    }
}

TEST(KicadLabels, AliasesBecomeContentsWithoutCircles) {
    LabelBudget budget;
    const auto contents = TranslateAliases(Aliases, Known(), budget);
    EXPECT_EQ(contents, (std::map<std::string, std::string>{
                            {"ALIAS", "X,~Y,V[1:0]"},
                            {"NAMES", "{names},{ALIAS}"},
                            {"OUTER", "X,~Y,V[1:0],Z,Q.X,Q.~Y,Q.V[1:0],X"},
                            {"SPACES", "A B"},
                        }));
    for (const auto& [name, text] : contents)
        EXPECT_EQ(Quill::BusContents::Utils::resolve_bus_contents_checked(name, contents).text, text);
}

}  // namespace
