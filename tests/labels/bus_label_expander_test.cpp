#include "labels/bus_label_expander.h"

#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "labels/net_limiter.h"
#include "labels_fixture.h"

namespace {

using namespace Quill::BusContents;
using Nets = std::vector<std::string>;

TEST(BusLabelExpander, ReadsEveryFormOfItem) {
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"through zero", "D(-2:1),D(1:-2)", 2, "D(-2) D(-1) D(0) D(1) D(1) D(0) D(-1) D(-2)"},
        {"over tens, up and down", "D[8:11],D[101:99]", 1, "D[8] D[9] D[10] D[11] D[101] D[100] D[99]"},
        {"a range, then one that a single index follows", "A[0:1],M[0:1][5]", 1, "A[0] A[1] M[0][5] M[1][5]"},
        {"a single index keeps its digits, a range does not", "D[007],E[01:00],F[3:3]", 1, "D[007] E[1] E[0] F[3]"},
        {"a single index among ranges", "M[1:0][07][2:3]", 1, "M[1][07][2] M[1][07][3] M[0][07][2] M[0][07][3]"},
        {"the other brackets are part of the name", "D(1:0),E[1:0]", 1, "D(1:0) E[1] E[0]"},
        {"no limiter, no brackets", "D[1:0],E(1:0)", 0, "D[1:0] E(1:0)"},
        {"an unknown limiter is none", "D[1:0]", -1, "D[1:0]"},
        {"without brackets every comma separates", "D[1,0]", 0, "D[1 0]"},
        {"a comma in brackets does not", "D[1,0],E", 1, "D[1,0] E"},
        {"a list without a number", "{A,{B}}", 0, "A B"},
        {"blanks and empty items", " A ,,\t{ B , C }2 , D[1:0] ,", 1, "A B C B C D[1] D[0]"},
        {"braces within a name", "~{CS}[1:0],N{A,B}2", 1, "~{CS}[1] ~{CS}[0] N{A,B}2"},
        {"an item of no form is a name", "D[x],D[1:0]_N,{A}2x,D[1:],D[]", 1, "D[x] D[1:0]_N {A}2x D[1:] D[]"},
        {"so are a lone index and nested ones", "[1:0],D[[1:0]],E[1:0]", 1, "[1:0] D[[1:0]] E[1] E[0]"},
        {"a range beyond 64 bits is a name", "D[9223372036854775808:0]", 1, "D[9223372036854775808:0]"},
        {"open bracket", "A,D[1:0", 1, "A,D[1:0"},
        {"open brace", "A[1:0],{B", 1, "A[1:0],{B"},
        {"stray closing one", "A},B", 0, "A},B"},
        {"crossed brackets", "A[{1]},B", 1, "A[{1]},B"},
    };
    for (const auto& [why, label, limiter, want] : cases)
        EXPECT_EQ(Expand(label, limiter), Words(want)) << why;
}

TEST(BusLabelExpander, AgreesWithLoopsOnEveryLabelOfASmallGrammar) {
    using Label = std::pair<std::string, Nets>;
    const auto add = [](Nets& nets, const Nets& more) { nets.insert(nets.end(), more.begin(), more.end()); };
    const std::vector<Label> names = {
        {"A", {"A"}}, {"B(2:1)", {"B(2)", "B(1)"}}, {"C(0:1)(3)", {"C(0)(3)", "C(1)(3)"}}, {"", {}}};
    std::vector<Label> items = names, lists;
    for (int depth = 0; depth < 2; ++depth) {
        lists = items;
        for (const Label& a : items) {
            for (const Label& b : items) {
                lists.push_back({a.first + "," + b.first, a.second});
                add(lists.back().second, b.second);
            }
        }
        items = names;
        for (const Label& list : lists) {
            for (int times = 0; times <= 2; ++times) {
                items.push_back({"{" + list.first + "}" + std::to_string(times), {}});
                for (int i = 0; i < times; ++i)
                    add(items.back().second, list.second);
            }
        }
    }
    ASSERT_GT(lists.size(), 4000U);
    for (const auto& [label, nets] : lists) {
        ASSERT_EQ(Expand(label, RoundLimiter), nets) << label;
        BusLabelExpander expander(label, RoundLimiter);
        ASSERT_EQ(expander.CountMembers(), nets.size()) << label;
        for (std::size_t i = 0; i < nets.size() / 2; ++i)
            expander.Next();
        expander.Rewind();
        ASSERT_EQ(expander.Next().value_or("none"), nets.empty() ? "none" : nets.front()) << label;
    }
}

TEST(BusLabelExpander, CostsNothingForMembersThatNobodyAsksFor) {
    constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();
    const std::string open(100'000, '{');
    std::string twice;
    for (std::size_t i = 0; i < open.size(); ++i)
        twice += "}2";
    const std::tuple<std::string, std::uint64_t, std::string> cases[] = {
        {"A[-9223372036854775808:9223372036854775807]", Most, "A[-9223372036854775808]"},
        {"A[0:99999][0:99999][7:0]", 80'000'000'000, "A[0][0][7]"},
        {"{A,B}99999999999999999999999", Most, "A"},
        {"{A}18446744073709551615,B", Most, "A"},
        {open + "A" + twice, Most, "A"},
        {open + twice + ",B", 1, "B"},
        {open + "C" + std::string(open.size(), '}'), 1, "C"},
    };
    for (const auto& [label, count, first] : cases) {
        BusLabelExpander expander(label, SquareLimiter);
        EXPECT_EQ(expander.CountMembers(), count) << label.substr(0, 50);
        EXPECT_EQ(expander.Next(), first) << label.substr(0, 50);
    }
}

TEST(NetLimiterScope, SetsKnownTextsAndRestoresWhatItFound) {
    {
        const NetLimiterScope square("[]");
        {
            const NetLimiterScope round("()");
            const NetLimiterScope none("");
            EXPECT_EQ(CurrentNetLimiter(), 0);
        }
        const NetLimiterScope unknown("<>");
        EXPECT_EQ(unknown.Limiter(), 1);
        EXPECT_EQ(BusLabelExpander("A[0:1]").CountMembers(), 2U);
    }
    EXPECT_EQ(CurrentNetLimiter(), 0);
}

}  // namespace
