#include "labels/bus_contents_utils.h"

#include <algorithm>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "labels_fixture.h"

namespace {

using namespace Quill::BusContents;
using namespace Quill::BusContents::Utils;
using Contents = std::map<std::string, std::string>;
using Nets = std::vector<std::string>;

TEST(NetLimiterOfTheProject, IsReadAfreshAndTheServiceGivenBack) {
    FakeProject project;
    const std::pair<const char*, int> cases[] = {{"", 0}, {"[]", 1}, {"()", 2}, {"<>", -1}, {"[", -1}, {" ", -1}};
    for (const auto& [text, limiter] : cases) {
        project.limiterText = text;
        EXPECT_EQ(getNetLimiter(), limiter) << text;
    }
    project.onLimiterAsked = [] { throw 7; };
    EXPECT_THROW(getNetLimiter(), int);
    project.open = false;
    EXPECT_EQ(getNetLimiter(), -1) << "no open project";
    EXPECT_TRUE(project.created == 8 && project.released == 8);
    project.available = false;
    EXPECT_EQ(getNetLimiter(), -1) << "no object of the service";
}

TEST(BusContents, AreResolvedDownToTheNets) {
    const std::tuple<const char*, const char*, Contents, const char*> cases[] = {
        {"an item with a blank is not the bus itself", "bus", {{"BUS", "d0, bus,d1"}}, "d0,bus,d1"},
        {"one without is, and stays as it is written", "bus", {{"BUS", "d0,Bus,d1"}}, "d0,Bus,d1"},
        {"a sub-bus that lists itself", "A", {{"A", "x,b"}, {"B", "b,y"}}, "x,b,y"},
        {"a shared sub-bus", "T", {{"S", "a,u,b"}, {"T", "S,s,x,U"}, {"U", "c"}}, "a,c,b,a,c,b,x,c"},
        {"blanks around unknown names go", " \tN\r", {}, "N"},
        {"a newline is content", "\nN\n", {}, "\nN\n"},
        {"a name of blanks stays", " \t", {}, " \t"},
        {"so does an item of blanks", "A", {{"A", "x,  ,y"}}, "x,  ,y"},
        {"empty items keep their commas", "A", {{"A", ",x,,B,"}, {"B", ""}}, ",x,,,"},
        {"names with blanks are looked up with them", "A", {{"A", " B,B"}, {" b", "x"}, {"B", "y"}}, "x,y"},
        {"of equal names the first key holds", "bus", {{"bus", "1"}, {"BUS", "2"}, {"Bus", "3"}}, "2"},
        {"the empty name can be defined", "A", {{"", "e"}, {"A", "x,"}}, "x,e"},
        {"null counts as empty", nullptr, {{"", "e"}}, "e"},
    };
    for (const auto& [why, name, contents, want] : cases) {
        EXPECT_EQ(resolve_bus_contents(name, contents), want) << why;
        EXPECT_EQ(resolve_bus_contents_checked(name != nullptr ? name : "", contents).text, want) << why;
    }
    EXPECT_EQ(resolve_bus_contents(" A "), " A ") << "without a project not even trimmed";
    const FakeProject project("", {{"A", "x,y"}});
    EXPECT_EQ(resolve_bus_contents("a"), "x,y");
    EXPECT_EQ(resolve_bus_contents(" A "), "A");
}

TEST(BusContents, MayBeChainedAndSharedWithoutBound) {
    Contents chain;
    for (int i = 0; i < 100'000; ++i)
        chain["b" + std::to_string(i)] = "B" + std::to_string(i + 1);
    std::string want;
    for (int i = 0; i < 50'000; ++i) {
        chain["top"] += "b0,";  // walked down anew each time, these would never end
        want += "B100000,";
    }
    EXPECT_EQ(resolve_bus_contents("top", chain), want);
}

TEST(BusContents, CheckedFormReportsCirclesAndOverlongResults) {
    const Contents circle = {{"Top", "x,a"}, {"A", "y,b"}, {"B", "C,z"}, {"C", "c,a"}, {"D", "d,x"}};
    const ResolvedContents found = resolve_bus_contents_checked("top", circle);
    EXPECT_TRUE(found.status == ResolveStatus::Cycle && found.text.empty()) << found.text;
    EXPECT_THAT(found.cycle, testing::ElementsAre("A", "B", "C"));
    EXPECT_EQ(resolve_bus_contents_checked("D", circle).status, ResolveStatus::Ok) << "a circle elsewhere";

    Contents doubling;
    for (int i = 0; i < 200; ++i) {
        const std::string next = "b" + std::to_string(i + 1);
        doubling["b" + std::to_string(i)] = next + "," + next;
    }
    EXPECT_EQ(resolve_bus_contents_checked("b0", doubling, 1'000'000).status, ResolveStatus::TooLong);
    EXPECT_EQ(resolve_bus_contents_checked("b199", doubling, 9).text, "b200,b200");
    EXPECT_EQ(resolve_bus_contents_checked("b199", doubling, 8).text, "");
}

TEST(NetNames, AreClassifiedAndSplit) {
    const std::tuple<std::string, bool, std::string, std::string> cases[] = {
        {"A[3]", true, "A", "[3]"},     {"A(3)", true, "A", "(3)"},       {"A3", true, "A3", "kept"},
        {"D0.1", true, "D0.1", "kept"}, {"A[3:0]", false, "A", "[3:0]"},  {"A_3x", false, "A_3x", "kept"},
        {"CLK", true, "CLK", "kept"},   {"A(1)[2]", true, "A", "(1)[2]"}, {"", true, "", "kept"},
        {"[x", true, "", "[x"},         {"A-1", true, "A-1", "kept"},     {"A1-", false, "A1-", "kept"},
    };
    for (const auto& [net, compressible, wantedStem, wantedIndex] : cases) {
        EXPECT_EQ(examineNet(net), compressible) << net;
        std::string stem, index = "kept";
        splitNetName(net, stem, index);
        EXPECT_EQ(stem + " " + index, wantedStem + " " + wantedIndex);
    }
    std::string stem, net = "A[1]";
    splitNetName(net, stem, net);
    EXPECT_EQ(stem + " " + net, "A [1]") << "an output may be the name itself";
}

TEST(CompressedLabel, WritesRunsInTheProjectsBrackets) {
    const std::tuple<const char*, const char*, const char*, bool, const char*> cases[] = {
        {"round, whatever the members have", "A[3] A[2] A(1)", "()", true, "A(3:1)"},
        {"without brackets back to back", "A[3] A[2] A[1]", "", true, "A31"},
        {"unknown brackets are none", "A[3] A[2] B[7]", "<>", true, "A32,B7"},
        {"single, not bracketed; ranges are all the same", "A[1] A[7] A[8]", "[]", false, "A1,A[7:8]"},
        {"unparsed last, in order", "X A[0] N$1[2] A3 D[3:0] A[1]", "[]", true, "A[0:1],X,N$1[2],A3,D[3:0]"},
        {"over tens, up and down", "A[9] A[10] A[11] A[20] A[19]", "[]", true, "A[9:11],A[20:19]"},
        {"a turning run", "A[3] A[4] A[3]", "[]", true, "A[3]"},
        {"members are not sorted", "A[0] B[1] A[1]", "[]", true, "A[0],B[1],A[1]"},
        {"stems are compared exactly", "A[1] a[2] AA[3]", "[]", true, "A[1],a[2],AA[3]"},
        {"empty brackets count as -1", "A[0] A[]", "[]", true, "A[0:-1]"},
        {"but begin no run", "A[] A[0] B[] B[]", "[]", true, "A,A[0],B,B"},
        {"several numbers", "A[4] A[5] A[1][2] A[6] A(7)x", "[]", true, "A[4:5],A[1:2],A[6],A(7)x"},
        {"a sign is skipped", "A[-1] A[2]", "[]", true, "A[1:2]"},
        {"digits before the bracket", "D0[1] D0[2]", "[]", true, "D0[1:2]"},
        {"leading zeros and a missing bracket", "A[007 A[8 A[19 A[20)", "[]", true, "A[7:8],A[19:20]"},
        {"numbers saturate", "A[2147483646] A[9999999999] A[99999999999999999999]", "[]", true,
         "A[2147483646:2147483647],A[2147483647]"},
        {"rest behind the last number", "B[1] A[3]. X", "[]", true, ""},
        {"even a second closing bracket", "A[2] A[3]]", "[]", true, ""},
    };
    FakeProject project;
    for (const auto& [why, list, limiter, bracketSingles, want] : cases) {
        project.limiterText = limiter;
        Nets members = Words(list);
        EXPECT_EQ(BuildBusLabel(members, bracketSingles), want) << why;
        EXPECT_EQ(members, Words(list)) << why;
    }
}

TEST(CompressedLabel, AsksForTheLimiterOncePerRun) {
    FakeProject project;
    int asked = 0;
    project.onLimiterAsked = [&] { project.limiterText = ++asked % 2 == 1 ? "[]" : "()"; };
    Nets members = Words("A[0] A[1] A[2] B[1] C[5] C[4] X");
    EXPECT_EQ(BuildBusLabel(members, true), "A[0:2],B(1),C[5:4],X");
    EXPECT_EQ(asked, 3);
}

TEST(RebuiltLabel, KeepsTheOldLabelOrFollowsItsForm) {
    struct Case {
        const char *why, *oldLabel, *members, *limiter, *want;
        bool bracketSingles = true;
    };
    const Case cases[] = {
        {"unchanged", " A(1:0),B", "A(1) A(0) B", "()", " A(1:0),B"},
        {"unchanged through the contents", "bus", "A[0] A[1] X", "[]", "bus"},
        {"a label of a \"$\" is one net", "$A[1:0],B", "$A[1:0],B", "[]", "$A[1:0],B"},
        {"other brackets name other nets", "A[1:0],", "A[1] A[0]", "()", "A[1:0]"},
        {"order counts", "A[1:0]", "A[0] A[1]", "[]", "A[0:1]"},
        {"number of members counts", "A[2:0]", "A[2] A[1]", "[]", "A[2:1]"},
        {"always square", "A(3:0)", "A(3) A(2) B(1)", "()", "A[3:2],B[1]"},
        {"singles without brackets", "A[3:0]", "A[3] A[1]", "[]", "A3,A1", false},
        {"stem agrees with the old label", "D0-X[1:0]", "D0-X[2] D0-X[3]", "[]", "D0-X[2:3]"},
        {"even where that holds braces", "~{CS}0[1:0]", "~{CS}0[2] ~{CS}0[3]", "[]", "~{CS}0[2:3]"},
        {"with a later item", "A[1:0], D0[1:0]", "A[1] D0[1] D0[0]", "[]", "A[1],D0[1:0]"},
        {"with one in braces", "A,{D0[1:0]}2", "A D0[1] D0[0]", "[]", "A,D0[1:0]"},
        {"or else takes stem characters", "A", "_|~.b3 _|~.b4 E1[2]", "[]", "_|~.b[3:4],E[1:2]"},
        {"signs", "A", "B[1] B[0] B[-1] B-2", "[]", "B[1:-2]"},
        {"a run that begins at -1 does not grow", "A", "B[-1] B[0] B[1]", "[]", "B[-1],B[0:1]"},
        {"a net without a number counts as -1", "A", "B[0] B", "[]", "B[0:-1]"},
        {"but begins no run", "A", "B B[0] C C", "[]", "B,B[0],C,C"},
        {"names that only look like an index, and empty brackets", "A", "RESET-N N$1 P:Q B[] C[x]", "[]",
         "RESET-N,N$1,P:Q,B,C"},
        {"rest behind the last number", "A", "B[1] B[2]x", "[]", ""},
        {"numbers saturate", "A", "B[-9999999999] B[9999999999]", "[]", "B[-2147483648],B[2147483647]"},
        {"a bundle takes nothing apart", "{A}2", "A A A B(1) B(1) B(2) A A(1)", "[]", "{A}3,{B(1)}2,B(2),A,A(1)"},
        {"a bundle with nested braces, then more", "{{A}2}3,B", "A A", "[]", "{A}2"},
        {"no bundle: something follows the number", "{A}2x", "A A", "[]", "A,A"},
        {"no bundle: no brace closes it", "{A", "A A", "[]", "A,A"},
        {"found out at the first difference", "{{B}4000000000}4000000000", "A[0] A[1]", "[]", "A[0],A[1]"},
    };
    const FakeProject project("()", {{"BUS", "A[0:1], X"}});
    for (const Case& c : cases) {
        auto members = Words<std::list<std::string>>(c.members);
        EXPECT_EQ(BuildBusLabel(c.oldLabel, members, c.bracketSingles, c.limiter), c.want) << c.why;
        EXPECT_EQ(members, Words<std::list<std::string>>(c.members)) << c.why;
        EXPECT_EQ(CurrentNetLimiter(), 0);
    }
    std::list<std::string> members = {"A[0]", "A[1]"};
    const NetLimiterScope scope("[]");
    EXPECT_EQ(BuildBusLabel("A[0:1],", members, true, "odd"), "A[0:1],") << "an odd text leaves the limiter in force";
}

}  // namespace
