#include <algorithm>
#include <chrono>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "interchange/detail/kicad/connectivity.h"

namespace {

using namespace Quill::Interchange::Kicad;
using Orin::Point;

// Sheets written as "w 0 0 4 0  j 2 0 / p 1 1": wires w, buses b, entries e, junctions j, pins p, and labels: global G,
// power P, local L, hierarchical H, of a sheet pin S; a sheet ends at "/". Items are numbered in their order.
// Coordinates are in units of `unit`.
std::vector<SheetGeometry> Sheets(const std::string& text, std::int64_t unit = 1) {
    std::vector<SheetGeometry> sheets(1);
    std::istringstream words(text);
    std::string kind;
    ItemId id = 0;
    while (words >> kind) {
        const auto point = [&] {
            Point at;
            words >> at.x >> at.y;
            return Point{at.x * unit, at.y * unit};
        };
        SheetGeometry& sheet = sheets.back();
        const std::size_t rank = std::string("GPLHS").find(kind);
        if (kind == "/") {
            sheets.emplace_back();
            continue;
        }
        if (rank != std::string::npos) {
            std::string name;
            words >> name;
            const bool bus = name.find_first_of(":,") != std::string::npos;
            sheet.labels.push_back({id, point(), name, static_cast<LabelRank>(rank), bus});
        } else if (kind == "j") {
            sheet.junctions.push_back({id, point()});
        } else if (kind == "p") {
            sheet.pins.push_back({id, point()});
        } else {
            const Point from = point();
            const Point to = point();
            if (kind == "e")
                sheet.entries.push_back({id, from, to});
            else
                sheet.segments.push_back({id, from, to, kind == "b"});
        }
        ++id;
    }
    return sheets;
}

std::vector<ItemId> Ids(const ConnectedItems& items) {
    std::vector<ItemId> all;
    for (const auto* list : {&items.segments, &items.junctions, &items.entries, &items.labels, &items.pins})
        all.insert(all.end(), list->begin(), list->end());
    std::sort(all.begin(), all.end());
    return all;
}

// "A(B)=0 1; 3 | D=2 > 0-1@4": nets with names, alternatives and items, then buses, then bus-net@entry.
std::string Written(const Connectivity& found) {
    std::string text;
    const auto write = [&text](const std::vector<ConnectedItems>& all) {
        for (const ConnectedItems& items : all) {
            text += &items == &all.front() ? "" : "; ";
            text += items.name;
            for (const std::string& other : items.alternatives)
                text += "(" + other + ")";
            text += items.name.empty() ? "" : "=";
            for (const ItemId id : Ids(items))
                text += std::to_string(id) + " ";
            text.pop_back();
        }
    };
    write(found.nets);
    if (!found.buses.empty()) text += " | ";
    write(found.buses);
    for (const BusConnection& c : found.connections) {
        text += " > " + std::to_string(c.bus) + "-" + std::to_string(c.net);
        if (c.entry != NoItem) text += "@" + std::to_string(c.entry);
    }
    return text;
}

// What the random sheets below do not show: names, members, and which junctions belong to a net.
TEST(KicadConnectivity, GivesNetsTheirNamesAndBusesTheirMembers) {
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"a pin inside a wire asks for a junction or a label", "w 0 0 4 0  p 2 0  j 2 0 w 0 1 4 1  p 1 1  L A 1 1",
         "0 1 2; A=3 4 5"},
        {"sheet pins connect and name nothing", "w 0 0 4 0  S A 1 0  S A 9 9  S B 9 9", "0 1; 2 3"},
        {"names by rank, then by text",
         "w 0 0 9 0  S A 0 0  H B 1 0  L D 2 0  L C 3 0  P F 4 0  G H 5 0  G G 6 0  H C 7 0",
         "G(H)(F)(C)(D)(B)=0 1 2 3 4 5 6 7 8"},
        {"equal names", "L A 0 0  H A 1 0  G A 2 0  P A 3 0  S A 4 0  L a 5 0", "A=0 1; A=2 3; 4; a=5"},
        {"also those that do not name", "w 0 0 9 0  G B 0 0  L A 1 0  w 0 3 9 3  L A 0 3  p 9 3", "B(A)=0 1 2 3 4 5"},
        {"and of other sheets", "w 0 0 4 0  L A 0 0  p 7 7 / w 0 0 4 0  p 7 7  L A 4 0", "A=0 1 3 5"},
        {"buses among themselves", "b 0 2 4 2  b 2 0 2 4  j 2 2  w 0 2 2 2  w 2 2 2 4", "2 3 4 | 0 1 2"},
        {"bus labels on sheet pins", "S D[7:0] 0 0  L D[7:0] 0 0  S A 0 0  L A 0 0", "A=2 3 | D[7:0]=0 1"},
        {"members by name",
         "b 0 0 8 0  L D[7:4],E,F[3] 0 0  L D[7] 0 9  L D[3] 1 9  L E 2 9  L F[3] 3 9  L X 4 9  G E 5 9  H D[5] 6 9  L "
         "D[8] 7 9",
         "D[7]=2; D[3]=3; E=4; F[3]=5; X=6; E=7; D[5]=8; D[8]=9 | D[7:4],E,F[3]=0 1 > 0-0 > 0-2 > 0-3 > 0-6"},
        {"an entry says more than a name", "b 0 0 8 0  L A,B 0 0  e 1 0 1 1  e 2 0 2 1  L A 1 1  L A 2 1",
         "A=2 3 4 5 | A,B=0 1 > 0-0@2 > 0-0@3"},
        {"a bus that a net's name stands on holds nothing", "b 0 0 8 0  L A 0 0  L A 0 9", "A=2 | A=0 1"},
    };
    for (const auto& [why, sheet, want] : cases) {
        SCOPED_TRACE(why);
        EXPECT_EQ(Written(Connect(Sheets(sheet))), want);
    }
    const auto far = std::numeric_limits<std::int64_t>::max();
    SheetGeometry beyond;
    beyond.segments = {{0, {-far, 0}, {far, 1}, false}, {1, {far, -far}, {far, far}, false}};
    EXPECT_EQ(Written(Connect({beyond})), "0; 1");
}

// The rules once more, without any index: what is at each point of nets or buses, pair by pair.
struct Naive {
    explicit Naive(const SheetGeometry& sheet) {
        const auto& segments = sheet.segments;
        for (ItemId id = 0; id < 100; ++id)
            sets[id] = id;
        for (const WireSegment& a : segments) {
            for (const WireSegment& b : segments) {
                const bool aligned = Cross(a, b.from) == 0 && Cross(a, b.to) == 0 && a.from != a.to && b.from != b.to;
                if (a.bus == b.bus && aligned && (On(a, b.from) || On(a, b.to))) Join(a.id, b.id);
            }
        }
        const auto tracks = sets;
        // The line that a label or entry takes to: one that ends there, or the one drawn first.
        const auto lineAt = [&](Point at, bool bus) {
            std::optional<ItemId> first;
            for (const WireSegment& s : segments) {
                if (s.bus != bus || !On(s, at)) continue;
                if (s.from == at || s.to == at) return std::optional(s.id);
                first = std::min(first.value_or(NoItem), tracks.at(s.id));
            }
            return first;
        };
        std::vector<std::tuple<Point, bool, ItemId>> places;
        for (const WireSegment& s : segments) {
            places.insert(places.end(), {{s.from, s.bus, s.id}, {s.to, s.bus, s.id}});
            for (const Junction& junction : sheet.junctions) {
                if (On(s, junction.at)) places.push_back({junction.at, s.bus, s.id});
            }
        }
        for (const NetPin& pin : sheet.pins)
            places.push_back({pin.at, false, pin.id});
        for (const NetLabel& label : sheet.labels) {
            const auto own = lineAt(label.at, label.bus);
            const auto other = lineAt(label.at, !label.bus);
            const bool bus = own || !other ? label.bus : !label.bus;
            places.push_back({label.at, bus, label.id});
            if (own || other) places.push_back({label.at, bus, own ? *own : *other});
        }
        for (const BusEntry& entry : sheet.entries) {
            for (const Point end : {entry.from, entry.to}) {
                if (const auto bus = lineAt(end, true))
                    buses[entry.id].push_back(*bus);
                else
                    places.push_back({end, false, entry.id});
            }
        }
        for (const auto& [at, bus, id] : places) {
            for (const auto& [otherAt, otherBus, otherId] : places) {
                if (at == otherAt && bus == otherBus) Join(id, otherId);
            }
        }
        for (const auto& [entry, ends] : buses) {
            for (const ItemId bus : ends)
                if (ends.size() == 2) Join(entry, bus);
        }
    }

    static std::int64_t Cross(const WireSegment& s, Point p) {
        return (s.to.x - s.from.x) * (p.y - s.from.y) - (s.to.y - s.from.y) * (p.x - s.from.x);
    }
    static bool On(const WireSegment& s, Point p) {
        return Cross(s, p) == 0 && p.x >= std::min(s.from.x, s.to.x) && p.x <= std::max(s.from.x, s.to.x) &&
               p.y >= std::min(s.from.y, s.to.y) && p.y <= std::max(s.from.y, s.to.y);
    }
    void Join(ItemId a, ItemId b) {
        const auto [into, from] = std::minmax({sets[a], sets[b]});
        for (auto& [id, set] : sets)
            set = set == from ? into : set;
    }

    std::map<ItemId, ItemId> sets;
    std::map<ItemId, std::vector<ItemId>> buses;  // by entry
};

TEST(KicadConnectivity, AgreesWithANaiveReadingOfTheRulesOnRandomSheets) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        std::mt19937 random(seed);
        const auto side = 3 + random() % 8;
        const auto point = [&] {
            const auto number = [&] { return std::to_string(static_cast<int>(random() % side) - 2) + " "; };
            return number() + number();
        };
        std::string text, kinds;
        for (auto items = 4 + random() % 26; items > 0; --items) {
            const std::string kind(1, "wwwwbbjjeppLLS"[random() % 14]);
            kinds += kind;
            text += kind + " ";
            // Every label has a text of its own, so that nothing is joined by name.
            if (kind == "L" || kind == "S") text += "N" + std::to_string(items) + (random() % 3 == 0 ? ",B " : " ");
            text += point();
            if (kind == "w" || kind == "b" || kind == "e") text += point();
        }
        SCOPED_TRACE(text);
        const auto sheets = Sheets(text);
        const Connectivity found = Connect(sheets);
        // Nothing changes near the largest coordinates, where products would not fit 64 bits.
        ASSERT_EQ(Written(Connect(Sheets(text, -LargestCoordinate / 10))), Written(found));
        const Naive naive(sheets.front());
        std::map<ItemId, std::vector<ItemId>> sets;
        for (ItemId id = 0; id < kinds.size(); ++id)
            if (kinds[id] != 'j') sets[naive.sets.at(id)].push_back(id);
        std::set<std::vector<ItemId>> want;
        for (const auto& [set, ids] : sets)
            if (ids.size() > 1 || kinds[ids[0]] != 'p') want.insert(ids);
        std::set<std::vector<ItemId>> nets;
        for (const auto* all : {&found.nets, &found.buses}) {
            for (ConnectedItems items : *all) {
                items.junctions.clear();
                nets.insert(Ids(items));
            }
        }
        ASSERT_EQ(nets, want);
        std::set<std::pair<ItemId, ItemId>> connections;  // entry and set of the bus
        for (const BusConnection& c : found.connections)
            connections.insert({c.entry, naive.sets.at(found.buses[c.bus].segments.front())});
        std::set<std::pair<ItemId, ItemId>> wanted;
        for (const auto& [entry, ends] : naive.buses) {
            if (ends.size() == 1) wanted.insert({entry, naive.sets.at(ends[0])});
        }
        ASSERT_EQ(connections, wanted);
    }
}

TEST(KicadConnectivity, ThousandsOfLongWiresThatCrossTakeNoLongerThanOthers) {
    SheetGeometry sheet;
    constexpr ItemId Count = 20'000;
    for (ItemId i = 0; i < Count; ++i) {
        const std::int64_t at = i;
        sheet.segments.push_back({4 * i, {0, at}, {Count, at}, false});
        sheet.segments.push_back({4 * i + 1, {at, 0}, {at, Count}, false});
        sheet.segments.push_back({4 * i + 2, {0, 0}, {Count, -1}, false});  // all on one another
        sheet.junctions.push_back({4 * i + 3, {at, at}});
    }
    const auto start = std::chrono::steady_clock::now();
    const Connectivity found = Connect({sheet});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    ASSERT_EQ(found.nets.size(), Count);  // the wires from the origin are one with the first row and column
    EXPECT_EQ(found.nets[0].segments.size(), Count + 2);
    EXPECT_EQ(found.nets[7].segments, (std::vector<ItemId>{28, 29}));
}

}  // namespace
