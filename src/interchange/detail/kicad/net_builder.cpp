// Nets and buses of a block, from what hangs together on its pages.
#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <unordered_map>

#include "interchange/detail/kicad/block_draft.h"
#include "interchange/detail/kicad/geometry.h"
#include "interchange/detail/kicad/label_text.h"
#include "interchange/detail/kicad/segment_index.h"
#include "labels/bus_label_expander.h"
#include "labels/net_limiter.h"

namespace Quill::Interchange::Kicad {

namespace {

using Orin::EObjectType;
using Orin::Index;
using Orin::Point;

struct PointOrder {
    bool operator()(const Point& a, const Point& b) const noexcept { return Before(a, b); }
};

// The points where wires are cut, so that the ones that lie on a wire are found without looking at all.
class Cuts {
public:
    void Add(const Point& at) {
        m_byX.push_back(at);
        m_byY.push_back({at.y, at.x});
    }
    void Sort() {
        for (std::vector<Point>* list : {&m_byX, &m_byY}) {
            std::sort(list->begin(), list->end(), PointOrder());
            list->erase(std::unique(list->begin(), list->end()), list->end());
        }
    }
    // The points strictly inside a wire, from its beginning to its end.
    std::vector<Point> Inside(const Point& from, const Point& to) const {
        std::vector<Point> inside;
        const bool level = from.y == to.y;
        const std::vector<Point>& list = level ? m_byY : m_byX;
        const auto key = [level](const Point& at) { return level ? Point{at.y, at.x} : at; };
        Point low = key(from);
        Point high = key(to);
        if (PointOrder()(high, low)) std::swap(low, high);
        auto at = std::upper_bound(list.begin(), list.end(), low, PointOrder());
        for (; at != list.end() && PointOrder()(*at, high); ++at)
            if (const Point point = key(*at); Contains(from, to, point)) inside.push_back(point);
        if (PointOrder()(key(to), key(from))) std::reverse(inside.begin(), inside.end());
        return inside;
    }

private:
    static bool Contains(const Point& from, const Point& to, const Point& at) {
        if (from.x == to.x) return at.x == from.x;
        if (from.y == to.y) return at.y == from.y;
        // Whole multiples of the smallest step along the wire.
        const std::int64_t steps = std::gcd(to.x - from.x, to.y - from.y);
        const Point step{(to.x - from.x) / steps, (to.y - from.y) / steps};
        const Point way{at.x - from.x, at.y - from.y};
        return way.x % step.x == 0 && way.y % step.y == 0 && way.x / step.x == way.y / step.y;
    }

    std::vector<Point> m_byX;
    std::vector<Point> m_byY;  // x and y exchanged
};

// The joints and segments that are drawn of one net or bus on one page.
class Figure {
public:
    std::uint32_t JointAt(const Point& at) {
        const auto [known, isNew] = m_known.try_emplace(at, static_cast<std::uint32_t>(m_joints.size()));
        if (isNew) {
            Orin::ListSegmentsQuillJoint& joint = m_joints.emplace_back();
            joint.position = at;
            m_parents.push_back(known->second);
        }
        return known->second;
    }
    void Attach(const Point& at, const Index& object) {
        Orin::ListSegmentsQuillJoint& joint = m_joints[JointAt(at)];
        if (joint.attached.IsEmpty()) joint.attached = object;
    }
    void AddSegment(const Point& from, const Point& to, const Orin::LineStyle& style) {
        const std::uint32_t a = JointAt(from);
        const std::uint32_t b = JointAt(to);
        if (m_segments.empty()) m_style = style;
        m_segments.emplace_back(a, b);
        m_parents[Root(a)] = Root(b);
    }
    void AddWire(const Point& from, const Point& to, const Cuts& cuts, const Orin::LineStyle& style) {
        Point last = from;
        for (const Point& at : cuts.Inside(from, to)) {
            AddSegment(last, at, style);
            last = at;
        }
        AddSegment(last, to, style);
    }

    const Orin::LineStyle& Style() const noexcept { return m_style; }
    bool IsEmpty() const noexcept { return m_joints.empty(); }

    // What hangs together, each with joints and segments numbered from 1; all in one when `whole`.
    std::vector<Orin::ListSegmentsQuill> Pieces(bool whole) {
        std::map<std::uint32_t, std::size_t> numbers;
        std::vector<std::vector<Orin::ListSegmentsQuillJoint>> joints;
        std::vector<std::vector<Orin::ListSegmentsQuillSegment>> segments;
        std::vector<std::size_t> pieceOf(m_joints.size());
        for (std::uint32_t i = 0; i < m_joints.size(); ++i) {
            const std::uint32_t root = whole ? 0 : Root(i);
            pieceOf[i] = numbers.try_emplace(root, numbers.size()).first->second;
            joints.resize(numbers.size());
            segments.resize(numbers.size());
            auto& list = joints[pieceOf[i]];
            m_joints[i].id = static_cast<Orin::ItemId>(list.size() + 1);
            list.push_back(m_joints[i]);
        }
        for (const auto& [from, to] : m_segments) {
            auto& list = segments[pieceOf[from]];
            list.push_back({static_cast<Orin::ItemId>(list.size() + 1), m_joints[from].id, m_joints[to].id});
        }
        std::vector<Orin::ListSegmentsQuill> pieces(joints.size());
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            pieces[i].joints = Orin::ListT<Orin::ListSegmentsQuillJoint>(joints[i]);
            pieces[i].segments = Orin::ListT<Orin::ListSegmentsQuillSegment>(segments[i]);
        }
        return pieces;
    }

private:
    std::uint32_t Root(std::uint32_t joint) {
        while (m_parents[joint] != joint)
            joint = m_parents[joint] = m_parents[m_parents[joint]];
        return joint;
    }

    std::map<Point, std::uint32_t, PointOrder> m_known;
    std::vector<Orin::ListSegmentsQuillJoint> m_joints;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_segments;
    std::vector<std::uint32_t> m_parents;
    Orin::LineStyle m_style;
};

class NetBuilder {
public:
    NetBuilder(BlockDraft& draft, IndexCounter& indexes)
        : m_draft(draft), m_indexes(indexes), m_connected(Kicad::Connect(draft.geometry)) {}

    void Run() {
        for (const ConnectedItems& items : m_connected.nets)
            m_draft.model.nets.emplace_back().spec = {Stored(items.name), m_indexes.Next(EObjectType::Net)};
        for (const ConnectedItems& items : m_connected.buses)
            m_draft.model.buses.emplace_back().spec = {Stored(items.name), m_indexes.Next(EObjectType::Bus)};
        PlaceEntries();
        for (std::size_t i = 0; i < m_connected.nets.size(); ++i)
            BuildNet(m_connected.nets[i], m_draft.model.nets[i]);
        for (std::size_t i = 0; i < m_connected.buses.size(); ++i)
            BuildBus(m_connected.buses[i], i);
    }

private:
    using Figures = std::map<std::size_t, Figure>;  // by page

    void PlaceEntries();
    void BuildNet(const ConnectedItems& items, NetModel& net);
    void BuildBus(const ConnectedItems& items, std::size_t number);
    Figures DrawWires(const ConnectedItems& items);
    void AttachPins(const ConnectedItems& items, Figures& figures, Indexes* connected);
    template <class Model>
    void AddLabels(const ConnectedItems& items, Model& model);
    template <class Model>
    void DrawLabels(const ConnectedItems& items, Model& model);
    Orin::ListT<Orin::BusDataQuill::Signal> SignalsOf(const BusModel& bus,
                                                      const std::vector<std::uint32_t>& nets) const;
    Index Page(std::size_t page) const { return m_draft.model.groups[page].spec.index; }

    BlockDraft& m_draft;
    IndexCounter& m_indexes;
    const Connectivity m_connected;
    std::vector<std::optional<std::uint32_t>> m_busOf;  // by entry: the bus that it leads to
};

// Which end of each entry stands on its net: the other one leads to the bus.
void NetBuilder::PlaceEntries() {
    m_busOf.resize(m_draft.entries.size());
    for (const BusConnection& connection : m_connected.connections)
        if (connection.entry != NoItem) m_busOf[connection.entry] = connection.bus;
    for (std::uint32_t bus = 0; bus < m_connected.buses.size(); ++bus)
        for (const ItemId entry : m_connected.buses[bus].entries)
            m_busOf[entry] = bus;
    std::vector<std::set<Point, PointOrder>> netPoints(m_draft.geometry.size());
    for (const DraftSegment& segment : m_draft.segments)
        if (!segment.wire->bus) netPoints[segment.page].insert({segment.from, segment.to});
    for (const DraftPin& pin : m_draft.pins)
        netPoints[pin.page].insert(pin.at);
    for (std::size_t i = 0; i < m_draft.entries.size(); ++i) {
        DraftEntry& entry = m_draft.entries[i];
        const std::set<Point, PointOrder>& points = netPoints[entry.page];
        CompModel& ripper = m_draft.model.comps[entry.comp];
        if (m_busOf[i]) ripper.bus = m_draft.model.buses[*m_busOf[i]].spec.index;
        if (points.count(entry.from) != 0 || points.count(entry.to) == 0) continue;
        std::swap(entry.from, entry.to);
        auto& body = std::get<Orin::CompDataQuill>(ripper.drawn.front().body);
        body.position = entry.from;
        body.orientation = static_cast<Orin::EOrientation>((static_cast<int>(body.orientation) + 2) % 4);
    }
}

NetBuilder::Figures NetBuilder::DrawWires(const ConnectedItems& items) {
    std::map<std::size_t, Cuts> cuts;
    for (const ItemId id : items.junctions)
        cuts[m_draft.junctions[id].page].Add(m_draft.junctions[id].at);
    for (const ItemId id : items.labels)
        if (!m_draft.labels[id].pin.IsEmpty()) cuts[m_draft.labels[id].page].Add(m_draft.labels[id].at);
    for (auto& [page, points] : cuts)
        points.Sort();
    Figures figures;
    for (const ItemId id : items.segments) {
        const DraftSegment& segment = m_draft.segments[id];
        figures[segment.page].AddWire(segment.from, segment.to, cuts[segment.page], segment.wire->style);
    }
    for (const ItemId id : items.junctions)
        figures[m_draft.junctions[id].page].JointAt(m_draft.junctions[id].at);
    return figures;
}

// Pins touch the figure where they stand; a net connects them as well.
void NetBuilder::AttachPins(const ConnectedItems& items, Figures& figures, Indexes* connected) {
    const auto attach = [&](std::size_t page, const Point& at, const Index& pin) {
        figures[page].Attach(at, pin);
        if (connected != nullptr) connected->push_back(pin);
    };
    for (const ItemId id : items.pins)
        attach(m_draft.pins[id].page, m_draft.pins[id].at, m_draft.pins[id].pin);
    for (const ItemId id : items.labels)
        if (const DraftLabel& label = m_draft.labels[id]; !label.pin.IsEmpty()) attach(label.page, label.at, label.pin);
}

// The label's text as the file has it, and the further labels. Pins of sheet symbols that are called like buses are
// among them: they say what the bus is called inside.
template <class Model>
void NetBuilder::AddLabels(const ConnectedItems& items, Model& model) {
    std::unordered_map<std::string_view, std::string_view> sources;
    for (const ItemId id : items.labels)
        sources.emplace(m_draft.labels[id].text, m_draft.labels[id].source);
    const auto sourceOf = [&](const std::string& text) {
        const auto found = sources.find(text);
        return found == sources.end() ? std::string_view(text) : found->second;
    };
    if (!items.name.empty()) model.attributes.push_back({KicadAttributes::Source, Stored(sourceOf(items.name))});
    std::vector<std::string> texts = items.alternatives;
    for (const ItemId id : items.labels) {
        const DraftLabel& label = m_draft.labels[id];
        if (label.busPin && label.text != items.name) texts.push_back(label.text);
    }
    std::set<std::string_view> given;
    std::string others;
    std::string otherSources;
    for (const std::string& text : texts) {
        if (!given.insert(text).second) continue;
        others.append(others.empty() ? "" : "\n").append(text);
        otherSources.append(otherSources.empty() ? "" : "\n").append(sourceOf(text));
    }
    if (others.empty()) return;
    model.attributes.push_back({KicadAttributes::OtherLabels, Stored(others)});
    model.attributes.push_back({KicadAttributes::OtherSources, Stored(otherSources)});
}

// A view draws the label of a net once; where else local labels stand, their text stays.
template <class Model>
void NetBuilder::DrawLabels(const ConnectedItems& items, Model& model) {
    std::map<std::size_t, Orin::LabelDataQuill> drawn;
    for (const ItemId id : items.labels) {
        const DraftLabel& label = m_draft.labels[id];
        if (label.local == nullptr) continue;
        const Orin::LabelDataQuill data{0, label.at, StyleOf(label.local->look, label.local->angle)};
        if (label.text == items.name && drawn.emplace(label.page, data).second) continue;
        AddText(label.text, data.position, data.style, m_indexes, *m_draft.model.groups[label.page].view);
    }
    for (const auto& [page, data] : drawn) {
        const Index view = Page(page);
        const auto same = [&view](const Orin::DesignDb::DrawingInfo& drawing) { return drawing.view == view; };
        auto place = std::find_if(model.drawn.begin(), model.drawn.end(), same);
        if (place == model.drawn.end()) place = model.drawn.insert(place, {view, {}, {}, {}});
        place->label = data;
    }
}

void NetBuilder::BuildNet(const ConnectedItems& items, NetModel& net) {
    Figures figures = DrawWires(items);
    AttachPins(items, figures, &net.pins);
    for (const ItemId id : items.entries) {
        const DraftEntry& entry = m_draft.entries[id];
        const Index& pin = m_draft.model.comps[entry.comp].pins.front().spec.index;
        figures[entry.page].Attach(entry.from, pin);
        net.pins.push_back(pin);
    }
    AddLabels(items, net);
    DrawLabels(items, net);
    for (auto& [page, figure] : figures) {
        m_draft.model.groups[page].members.push_back(net.spec.index);
        for (Orin::ListSegmentsQuill& piece : figure.Pieces(false)) {
            Orin::NetDataQuill data;
            data.segments = std::move(piece);
            data.style = figure.Style();
            net.pieces.push_back({m_indexes.Next(EObjectType::NetQuill), Page(page), std::move(data)});
        }
    }
}

// Which members of the bus its nets are. What a label says beyond the last net that is sought is never made.
Orin::ListT<Orin::BusDataQuill::Signal> NetBuilder::SignalsOf(const BusModel& bus,
                                                              const std::vector<std::uint32_t>& nets) const {
    std::unordered_multimap<std::string_view, Index> sought;
    for (const std::uint32_t net : nets)
        sought.emplace(m_connected.nets[net].name, m_draft.model.nets[net].spec.index);
    std::vector<Orin::BusDataQuill::Signal> signals;
    BusContents::BusLabelExpander members(bus.spec.label.View(), BusContents::SquareLimiter);
    std::int32_t position = 0;
    for (; !sought.empty() && position < static_cast<std::int32_t>(MostLabelMembers); ++position) {
        const std::optional<std::string_view> member = members.Next();
        if (!member) break;
        const auto [first, last] = sought.equal_range(*member);
        for (auto found = first; found != last; ++found)
            signals.push_back({position, found->second});
        sought.erase(first, last);
    }
    return Orin::ListT<Orin::BusDataQuill::Signal>(signals);
}

void NetBuilder::BuildBus(const ConnectedItems& items, std::size_t number) {
    BusModel& bus = m_draft.model.buses[number];
    Figures figures = DrawWires(items);
    AttachPins(items, figures, nullptr);
    const auto byBus = [](const BusConnection& connection, std::uint32_t wanted) { return connection.bus < wanted; };
    std::vector<std::uint32_t> nets;
    for (auto connection = std::lower_bound(m_connected.connections.begin(), m_connected.connections.end(),
                                            static_cast<std::uint32_t>(number), byBus);
         connection != m_connected.connections.end() && connection->bus == number; ++connection) {
        if (connection->entry != NoItem) {
            const DraftEntry& entry = m_draft.entries[connection->entry];
            figures[entry.page].Attach(entry.to, m_draft.model.comps[entry.comp].spec.index);
        }
        if (nets.empty() || nets.back() != connection->net) nets.push_back(connection->net);
    }
    for (const std::uint32_t net : nets)
        bus.nets.push_back(m_draft.model.nets[net].spec.index);
    AddLabels(items, bus);
    const Orin::ListT<Orin::BusDataQuill::Signal> signals = SignalsOf(bus, nets);
    for (const ItemId id : items.labels)
        static_cast<void>(figures[m_draft.labels[id].page]);
    for (auto& [page, figure] : figures) {
        m_draft.model.groups[page].members.push_back(bus.spec.index);
        Orin::BusDataQuill data;
        if (!figure.IsEmpty()) data.segments = std::move(figure.Pieces(true).front());
        data.signals = signals;
        data.style = figure.Style();
        bus.drawn.push_back({Page(page), std::move(data), {}, {}});
    }
    DrawLabels(items, bus);
}

}  // namespace

void BuildNets(BlockDraft& draft, IndexCounter& indexes) {
    NetBuilder(draft, indexes).Run();
}

}  // namespace Quill::Interchange::Kicad
