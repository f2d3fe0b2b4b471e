#include "interchange/detail/kicad/connectivity.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "interchange/detail/kicad/bus_members.h"
#include "interchange/detail/kicad/segment_index.h"

namespace Quill::Interchange::Kicad {

namespace {

// Sets of nodes that hang together; a node is the place of an item among all items of the block.
class NodeSets {
public:
    std::uint32_t Add() {
        m_parents.push_back(static_cast<std::uint32_t>(m_parents.size()));
        return m_parents.back();
    }

    std::uint32_t Find(std::uint32_t node) {
        while (m_parents[node] != node) {
            m_parents[node] = m_parents[m_parents[node]];
            node = m_parents[node];
        }
        return node;
    }

    // The lower node stands for both sets.
    void Join(std::uint32_t a, std::uint32_t b) {
        a = Find(a);
        b = Find(b);
        m_parents[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<std::uint32_t> m_parents;
};

Orin::Point Within(Orin::Point point) {
    return {std::clamp(point.x, -LargestCoordinate, LargestCoordinate),
            std::clamp(point.y, -LargestCoordinate, LargestCoordinate)};
}

enum class NodeKind : std::uint8_t { Segment, Entry, Label, Pin };

struct Node {
    NodeKind kind;
    bool bus = false;
    ItemId id = NoItem;
    const NetLabel* label = nullptr;
};

using OptionalNode = std::optional<std::uint32_t>;

class BlockConnector {
public:
    void AddSheet(const SheetGeometry& sheet);
    void JoinByName();
    Connectivity Collect();

private:
    enum class PlaceKind : std::uint8_t { Wire, Bus, Junction, Entry, Label, Pin };

    // That an item has an end, or its place, at a point.
    struct Place {
        Orin::Point at;
        PlaceKind kind;
        std::uint32_t item;  // a node; of a junction its place in m_junctions
    };

    // The lines of one kind on a sheet.
    struct Lines {
        std::vector<Segment> segments;
        std::vector<std::uint32_t> nodes;
        std::vector<std::uint32_t> nodeOfTrack;
        std::vector<SegmentIndex::Hit> hits;
        std::size_t hit = 0;  // the first one that is still ahead
    };

    struct JunctionNodes {
        ItemId id;
        OptionalNode net;
        OptionalNode bus;
    };

    struct EntryEnd {
        std::uint32_t entry;
        std::uint32_t bus;
    };

    std::uint32_t AddNode(const Node& node) {
        m_nodes.push_back(node);
        return m_sets.Add();
    }

    void Join(OptionalNode& all, std::uint32_t node) {
        if (all)
            m_sets.Join(*all, node);
        else
            all = node;
    }

    static void FindHits(Lines& lines, NodeSets& sets, const std::vector<Orin::Point>& points);
    OptionalNode TakeHits(Lines& lines, std::uint32_t point, bool joinAll);
    void ConnectPoint(const Place* begin, const Place* end, std::uint32_t point, Lines& wires, Lines& buses);
    void ConnectEntries();

    std::vector<Node> m_nodes;
    NodeSets m_sets;
    std::vector<JunctionNodes> m_junctions;
    std::vector<EntryEnd> m_entryEnds;  // those on buses, of the sheet being added
    std::vector<EntryEnd> m_connections;
};

void BlockConnector::AddSheet(const SheetGeometry& sheet) {
    Lines wires;
    Lines buses;
    std::vector<Place> places;
    for (const WireSegment& segment : sheet.segments) {
        const std::uint32_t node = AddNode({NodeKind::Segment, segment.bus, segment.id});
        Lines& lines = segment.bus ? buses : wires;
        lines.segments.push_back({Within(segment.from), Within(segment.to)});
        lines.nodes.push_back(node);
        for (const Orin::Point end : {lines.segments.back().from, lines.segments.back().to})
            places.push_back({end, segment.bus ? PlaceKind::Bus : PlaceKind::Wire, node});
    }
    for (const BusEntry& entry : sheet.entries) {
        const std::uint32_t node = AddNode({NodeKind::Entry, false, entry.id});
        for (const Orin::Point end : {entry.from, entry.to})
            places.push_back({Within(end), PlaceKind::Entry, node});
    }
    for (const NetLabel& label : sheet.labels) {
        const std::uint32_t node = AddNode({NodeKind::Label, label.bus, label.id, &label});
        places.push_back({Within(label.at), PlaceKind::Label, node});
    }
    for (const NetPin& pin : sheet.pins)
        places.push_back({Within(pin.at), PlaceKind::Pin, AddNode({NodeKind::Pin, false, pin.id})});
    for (const Junction& junction : sheet.junctions) {
        places.push_back({Within(junction.at), PlaceKind::Junction, static_cast<std::uint32_t>(m_junctions.size())});
        m_junctions.push_back({junction.id, {}, {}});
    }
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        return std::tie(a.at.x, a.at.y, a.kind, a.item) < std::tie(b.at.x, b.at.y, b.kind, b.item);
    });

    // Pins take no notice of the middle of a wire, and the ends of wires neither.
    std::vector<Orin::Point> points;
    for (const Place& place : places) {
        const bool asks =
            place.kind == PlaceKind::Junction || place.kind == PlaceKind::Entry || place.kind == PlaceKind::Label;
        if (asks && (points.empty() || points.back() != place.at)) points.push_back(place.at);
    }
    FindHits(wires, m_sets, points);
    FindHits(buses, m_sets, points);

    std::uint32_t point = 0;
    for (std::size_t begin = 0, end = 0; begin < places.size(); begin = end) {
        while (end < places.size() && places[end].at == places[begin].at)
            ++end;
        while (point < points.size() && Before(points[point], places[begin].at))
            ++point;
        ConnectPoint(&places[begin], &places[begin] + (end - begin), point, wires, buses);
    }
    ConnectEntries();
}

void BlockConnector::FindHits(Lines& lines, NodeSets& sets, const std::vector<Orin::Point>& points) {
    const SegmentIndex index(lines.segments);
    for (std::size_t i = 0; i < lines.nodes.size(); ++i) {
        const std::uint32_t track = index.TrackOfSegment()[i];
        if (track == SegmentIndex::NoTrack) continue;
        // Tracks are numbered by their first segment, so a new one is always the next.
        if (track == lines.nodeOfTrack.size()) lines.nodeOfTrack.push_back(lines.nodes[i]);
        sets.Join(lines.nodeOfTrack[track], lines.nodes[i]);
    }
    lines.hits = index.Find(points);
}

// A node of the lines that pass through the point: of all, which are joined, or of the first one.
OptionalNode BlockConnector::TakeHits(Lines& lines, std::uint32_t point, bool joinAll) {
    OptionalNode node;
    while (lines.hit < lines.hits.size() && lines.hits[lines.hit].point < point)
        ++lines.hit;
    for (; lines.hit < lines.hits.size() && lines.hits[lines.hit].point == point; ++lines.hit) {
        if (!node || joinAll) Join(node, lines.nodeOfTrack[lines.hits[lines.hit].track]);
    }
    return node;
}

// Connects what stands at one point; `point` is its place among those that were looked up, if it is one of them.
void BlockConnector::ConnectPoint(const Place* begin, const Place* end, std::uint32_t point, Lines& wires,
                                  Lines& buses) {
    const auto has = [begin, end](PlaceKind kind) {
        return std::any_of(begin, end, [kind](const Place& place) { return place.kind == kind; });
    };
    const bool junction = has(PlaceKind::Junction);
    OptionalNode net;  // everything of nets, or of buses, that connects here
    OptionalNode bus;
    for (const Place* place = begin; place != end; ++place) {
        if (place->kind == PlaceKind::Wire) Join(net, place->item);
        if (place->kind == PlaceKind::Bus) Join(bus, place->item);
    }
    OptionalNode passingWire;
    OptionalNode passingBus;
    if (junction || has(PlaceKind::Label) || has(PlaceKind::Entry)) {
        passingWire = TakeHits(wires, point, junction);
        passingBus = TakeHits(buses, point, junction);
    }
    if (junction && passingWire) Join(net, *passingWire);
    if (junction && passingBus) Join(bus, *passingBus);
    // Of lines that pass, a label or entry takes one only where none ends.
    if (net) passingWire = net;
    if (bus) passingBus = bus;

    for (const Place* place = begin; place != end; ++place) {
        if (place->kind == PlaceKind::Pin) {
            Join(net, place->item);
        } else if (place->kind == PlaceKind::Entry) {
            if (passingBus)
                m_entryEnds.push_back({place->item, *passingBus});
            else
                Join(net, place->item);
        } else if (place->kind == PlaceKind::Label) {
            Node& label = m_nodes[place->item];
            label.bus = label.bus ? passingBus || !passingWire : passingBus && !passingWire;
            const OptionalNode& passing = label.bus ? passingBus : passingWire;
            OptionalNode& all = label.bus ? bus : net;
            if (passing) Join(all, *passing);
            Join(all, place->item);
        }
    }
    for (const Place* place = begin; place != end; ++place) {
        if (place->kind != PlaceKind::Junction) continue;
        m_junctions[place->item].net = net;
        m_junctions[place->item].bus = bus;
    }
}

void BlockConnector::ConnectEntries() {
    const auto byEntry = [](const EntryEnd& a, const EntryEnd& b) {
        return std::tie(a.entry, a.bus) < std::tie(b.entry, b.bus);
    };
    std::sort(m_entryEnds.begin(), m_entryEnds.end(), byEntry);
    for (std::size_t i = 0; i < m_entryEnds.size(); ++i) {
        const EntryEnd& end = m_entryEnds[i];
        if (i + 1 < m_entryEnds.size() && m_entryEnds[i + 1].entry == end.entry) {
            m_nodes[end.entry].bus = true;
            m_sets.Join(end.entry, end.bus);
            m_sets.Join(end.entry, m_entryEnds[++i].bus);
        } else {
            m_connections.push_back(end);
        }
    }
    m_entryEnds.clear();
}

bool IsGlobal(LabelRank rank) {
    return rank == LabelRank::Global || rank == LabelRank::Power;
}

void BlockConnector::JoinByName() {
    std::map<std::tuple<bool, bool, std::string_view>, std::uint32_t> first;
    for (std::uint32_t i = 0; i < m_nodes.size(); ++i) {
        const NetLabel* label = m_nodes[i].label;
        if (!label || label->rank == LabelRank::SheetPin || label->text.empty()) continue;
        const auto [at, added] = first.try_emplace({m_nodes[i].bus, IsGlobal(label->rank), label->text}, i);
        if (!added) m_sets.Join(at->second, i);
    }
}

using Names = std::vector<const NetLabel*>;

// Leaves each rank and text once, best first, and gives the net or bus its name.
void SetName(ConnectedItems& items, Names& names) {
    const auto key = [](const NetLabel* label) { return std::tie(label->rank, label->text); };
    std::sort(names.begin(), names.end(), [key](const NetLabel* a, const NetLabel* b) { return key(a) < key(b); });
    const auto same = [key](const NetLabel* a, const NetLabel* b) { return key(a) == key(b); };
    names.erase(std::unique(names.begin(), names.end(), same), names.end());
    if (names.empty()) return;
    // Sheet pins, which sort last, say what a bus is called inside: one of them counts when nothing else does.
    while (names.size() > 1 && names.back()->rank == LabelRank::SheetPin)
        names.pop_back();
    items.rank = names.front()->rank;
    items.name = names.front()->text;
    std::set<std::string_view> texts{items.name};
    for (const NetLabel* label : names) {
        if (texts.insert(label->text).second) items.alternatives.push_back(label->text);
    }
}

Connectivity BlockConnector::Collect() {
    constexpr std::uint32_t Nowhere = NoItem;
    std::vector<std::uint32_t> sizes(m_nodes.size(), 0);
    for (std::uint32_t i = 0; i < m_nodes.size(); ++i)
        ++sizes[m_sets.Find(i)];

    Connectivity result;
    std::vector<std::uint32_t> places(m_nodes.size(), Nowhere);  // of the set of a first node, among nets or buses
    const auto itemsOf = [&](std::uint32_t node) -> ConnectedItems& {
        const std::uint32_t set = m_sets.Find(node);
        auto& all = m_nodes[set].bus ? result.buses : result.nets;
        if (places[set] == Nowhere) {
            places[set] = static_cast<std::uint32_t>(all.size());
            all.emplace_back();
        }
        return all[places[set]];
    };
    std::vector<Names> netNames;
    std::vector<Names> busNames;
    for (std::uint32_t i = 0; i < m_nodes.size(); ++i) {
        const Node& node = m_nodes[i];
        if (node.kind == NodeKind::Pin && sizes[m_sets.Find(i)] == 1) continue;
        ConnectedItems& items = itemsOf(i);
        auto& names = node.bus ? busNames : netNames;
        names.resize(node.bus ? result.buses.size() : result.nets.size());
        switch (node.kind) {
            case NodeKind::Segment:
                items.segments.push_back(node.id);
                break;
            case NodeKind::Entry:
                items.entries.push_back(node.id);
                break;
            case NodeKind::Pin:
                items.pins.push_back(node.id);
                break;
            case NodeKind::Label:
                items.labels.push_back(node.id);
                if ((node.bus || node.label->rank != LabelRank::SheetPin) && !node.label->text.empty()) {
                    names[places[m_sets.Find(i)]].push_back(node.label);
                }
                break;
        }
    }
    for (const JunctionNodes& junction : m_junctions) {
        for (const OptionalNode& node : {junction.net, junction.bus}) {
            const bool listed = node && places[m_sets.Find(*node)] != Nowhere;
            if (listed) itemsOf(*node).junctions.push_back(junction.id);
        }
    }

    BusMembers members;
    for (std::uint32_t i = 0; i < busNames.size(); ++i) {
        SetName(result.buses[i], busNames[i]);
        for (const NetLabel* label : busNames[i]) {
            if (label->bus) members.AddBus(label->text, IsGlobal(label->rank), i);
        }
    }
    for (const EntryEnd& end : m_connections) {
        result.connections.push_back(
            {places[m_sets.Find(end.bus)], places[m_sets.Find(end.entry)], m_nodes[end.entry].id});
    }
    std::size_t byName = 0;
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < netNames.size(); ++i) {
        SetName(result.nets[i], netNames[i]);
        for (const NetLabel* label : netNames[i]) {
            found.clear();
            members.FindBuses(label->text, IsGlobal(label->rank), found);
            for (std::size_t k = 0; k < found.size() && byName < MostConnectionsByName; ++k, ++byName)
                result.connections.push_back({found[k], i, NoItem});
        }
    }
    auto& connections = result.connections;
    std::sort(connections.begin(), connections.end(), [](const BusConnection& a, const BusConnection& b) {
        return std::tie(a.bus, a.net, a.entry) < std::tie(b.bus, b.net, b.entry);
    });
    // A connection by name adds nothing where there is another one.
    const auto repeated = [](const BusConnection& a, const BusConnection& b) {
        return a.bus == b.bus && a.net == b.net && b.entry == NoItem;
    };
    connections.erase(std::unique(connections.begin(), connections.end(), repeated), connections.end());
    return result;
}

}  // namespace

Connectivity Connect(const std::vector<SheetGeometry>& sheets) {
    BlockConnector connector;
    for (const SheetGeometry& sheet : sheets)
        connector.AddSheet(sheet);
    connector.JoinByName();
    return connector.Collect();
}

}  // namespace Quill::Interchange::Kicad
