#include "designstore/detail/design_loader.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "designstore/detail/row_reader.h"

namespace Orin::DesignDb {

namespace {

class Loader {
public:
    // Reads the working design, or the save point of that number.
    Loader(SqliteFile& file, Graph& graph, const PlacesByNumber& places, const FileState& state, std::int64_t savePoint)
        : m_file(file),
          m_graph(graph),
          m_placesByNumber(places),
          m_state(state),
          m_savePoint(savePoint),
          m_blocks(m_graph.Of<BlockRecord>()),
          m_comps(m_graph.Of<CompRecord>()),
          m_nets(m_graph.Of<NetRecord>()),
          m_groups(m_graph.Of<GroupRecord>()) {}

    void Run() {
        ForEachKind([this]<class Record>() { LoadRecords<Record>(); });
        CheckReferences();
        LoadConnections();
        LoadMembers();
        LoadAttributes();
    }

private:
    // Calls use(columns) for each row, see RowsOf.
    template <class Use>
    void Rows(ETable table, const std::string& rest, Use&& use) {
        RowsOf(m_file, table, m_savePoint, rest, use);
    }

    template <class Record>
    void LoadRecords();
    void Enter(Slot, BlockRecord&) {}
    void Enter(Slot slot, CompRecord& comp);
    void Enter(Slot slot, PinRecord& pin);
    void Enter(Slot slot, NetRecord& net);
    void Enter(Slot slot, BusRecord& bus);
    void Enter(Slot slot, GroupRecord& group);
    void Enter(Slot slot, ConfigRecord& config);
    void Enter(Slot slot, ViewRecord& view);
    void Enter(Slot slot, PieceRecord& piece);
    template <class Data>
    void Enter(Slot slot, ItemRecord<Data>& item);

    void CheckReferences();
    void CheckOwners();
    template <class Record>
    void CheckDrawings();
    template <class Record>
    void CheckDrawing(const Record& record, Slot slot, const Drawing& drawing) const;
    void LoadConnections();
    void LoadMembers();
    void LoadAttributes();

    void ExpectGiven(EObjectType kind, Slot slot) const { DesignDb::ExpectGiven(m_state, kind, slot); }
    String Shared(const String& name) {
        if (m_names.size() >= 4096) return name;
        return *m_names.insert(name).first;
    }

    struct TextHash {
        std::size_t operator()(const String& text) const noexcept { return std::hash<std::string_view>()(text.View()); }
    };

    SqliteFile& m_file;
    Graph& m_graph;
    const PlacesByNumber& m_placesByNumber;
    const FileState& m_state;
    const std::int64_t m_savePoint;
    // Asking the graph for a table to write is no mere look.
    Table<BlockRecord>& m_blocks;
    Table<CompRecord>& m_comps;
    Table<NetRecord>& m_nets;
    Table<GroupRecord>& m_groups;
    std::unordered_set<String, TextHash> m_names;
};

// ---- Records ----

template <class Record>
void Loader::LoadRecords() {
    constexpr bool isItem = RowOf<Record>::Table == ETable::Item;
    const Slot next = m_state.nextSlots.find(Record::Kind)->second;
    const std::string kind = std::to_string(static_cast<int>(Record::Kind));
    Table<Record>& table = m_graph.Of<Record>();
    Rows(RowOf<Record>::Table, isItem ? ("WHERE kind = " + kind + " ORDER BY id").c_str() : "ORDER BY id",
         [&](ColumnReader row) {
             if constexpr (isItem) row.Number<std::uint8_t>();
             const Slot slot = row.Number<Slot>();
             Expect(slot != 0 && slot < next, "an id that was never given");
             Record record;
             RowOf<Record>::Columns(row, record);
             Expect(!record.index.IsEmpty() && !m_graph.Locate(record.index), "the index of another object, or none");
             Enter(slot, record);
             table.Prepare(slot);
             if (Graph::IsForeign<Record>(record.index, slot))
                 m_graph.Foreign().Enter(record.index, {Record::Kind, slot});
             table.Put(slot, std::move(record));
         });
    static_cast<void>(table.ReserveThrough(next - 1));
}

void Loader::Enter(Slot slot, CompRecord& comp) {
    Expect(m_blocks.Find(comp.block) != nullptr, "no block");
    ExpectGiven(EObjectType::Comp, comp.definition);
    ExpectGiven(EObjectType::Block, comp.child);
    ExpectGiven(EObjectType::Bus, comp.rippedBus);
    m_blocks.Write(comp.block).comps.InsertSorted(slot);
}

void Loader::Enter(Slot slot, PinRecord& pin) {
    Expect(m_comps.Find(pin.comp) != nullptr, "no component");
    m_comps.Write(pin.comp).pins.Append(slot);
}

void Loader::Enter(Slot slot, NetRecord& net) {
    Expect(m_blocks.Find(net.block) != nullptr, "no block");
    m_blocks.Write(net.block).nets.InsertSorted(slot);
}

void Loader::Enter(Slot slot, BusRecord& bus) {
    Expect(m_blocks.Find(bus.block) != nullptr, "no block");
    m_blocks.Write(bus.block).buses.InsertSorted(slot);
}

void Loader::Enter(Slot slot, GroupRecord& group) {
    Expect(m_blocks.Find(group.block) != nullptr, "no block");
    // An owner may have come after what it owns; those are entered when all groups are there.
    if (group.ownerGroup == 0) m_blocks.Write(group.block).groups.InsertSorted(slot);
}

void Loader::Enter(Slot, ConfigRecord& config) {
    ExpectGiven(EObjectType::Block, config.root);
}

void Loader::Enter(Slot slot, ViewRecord& view) {
    Expect((view.group == 0) != (view.comp == 0), "a view of two objects or of none");
    const auto enter = [slot](auto& owners, Slot owner) {
        Expect(owners.Find(owner) != nullptr && owners.Find(owner)->view == 0, "no owner, or one with another view");
        owners.Write(owner).view = slot;
    };
    if (view.group != 0) {
        enter(m_groups, view.group);
    } else {
        enter(m_comps, view.comp);
    }
}

void Loader::Enter(Slot slot, PieceRecord& piece) {
    Table<ViewRecord>& views = m_graph.Of<ViewRecord>();
    const NetRecord* const net = m_nets.Find(piece.net);
    const ViewRecord* const view = views.Find(piece.view);
    Expect(net != nullptr && view != nullptr && view->group != 0, "no net or no sheet");
    Expect(m_groups.Find(view->group)->block == net->block, "a sheet of another block");
    views.Write(piece.view).pieces.InsertSorted(slot);
    ListT<NetPiece>& pieces = m_nets.Write(piece.net).pieces;
    const NetPiece* const behind = std::upper_bound(pieces.begin(), pieces.end(), piece.view,
                                                    [](Slot wanted, const NetPiece& p) { return wanted < p.view; });
    pieces.Insert(static_cast<std::size_t>(behind - pieces.begin()), {piece.view, slot});
}

template <class Data>
void Loader::Enter(Slot slot, ItemRecord<Data>& item) {
    Table<ViewRecord>& views = m_graph.Of<ViewRecord>();
    Expect(views.Find(item.view) != nullptr, "no view");
    views.Write(item.view).items[static_cast<std::size_t>(ItemTraits<Data>::Item)].InsertSorted(slot);
}

// ---- Between records ----

template <class Record, class Use>
void ForEachOf(const Table<Record>& table, Use&& use) {
    for (Slot slot = table.Above(0); slot != 0; slot = table.Above(slot))
        use(slot, *table.Find(slot));
}

void Loader::CheckReferences() {
    const Graph& graph = m_graph;
    ForEachOf(graph.Of<PinRecord>(), [&](Slot slot, const PinRecord& pin) {
        if (pin.net == 0) return;
        Guarded("pin", slot, [&] {
            const NetRecord* const net = m_nets.Find(pin.net);
            Expect(net != nullptr && net->block == m_comps.Find(pin.comp)->block, "a net that is not of its block");
            m_nets.Write(pin.net).pins.InsertSorted(slot);
        });
    });
    ForEachOf(graph.Of<CompRecord>(), [&](Slot slot, const CompRecord& comp) {
        const BusRecord* const bus = comp.rippedBus != 0 ? graph.Find<BusRecord>(comp.rippedBus) : nullptr;
        if (bus != nullptr)
            Guarded("comp", slot, [&] { Expect(bus->block == comp.block, "a bus that is not of its block"); });
    });
    std::set<std::string_view> names;
    ForEachOf(graph.Of<ConfigRecord>(), [&](Slot slot, const ConfigRecord& config) {
        Guarded("config", slot, [&] { Expect(names.insert(config.name.View()).second, "the name of another one"); });
    });
    CheckOwners();
    CheckDrawings<BlockRecord>();
    CheckDrawings<CompRecord>();
    CheckDrawings<PinRecord>();
    CheckDrawings<NetRecord>();
    CheckDrawings<BusRecord>();
    CheckDrawings<GroupRecord>();
}

// Groups lead to their block, by whatever way.
void Loader::CheckOwners() {
    std::unordered_map<Slot, Slot> known;  // the walk on which a group was met
    ForEachOf(static_cast<const Graph&>(m_graph).Of<GroupRecord>(), [&](Slot first, const GroupRecord& record) {
        if (record.ownerGroup == 0) return;
        Guarded("grp", first, [&] {
            Slot slot = first;
            while (slot != 0 && known.emplace(slot, first).second) {
                const GroupRecord& group = *m_groups.Find(slot);
                slot = group.ownerGroup;
                const GroupRecord* const owner = slot != 0 ? m_groups.Find(slot) : nullptr;
                Expect(slot == 0 || (owner != nullptr && owner->block == group.block), "no owner in its block");
                const auto met = known.find(slot);
                Expect(met == known.end() || met->second != first, "a group that owns itself");
            }
        });
        m_groups.Write(record.ownerGroup).groups.InsertSorted(first);
    });
}

// The number of the variant that can draw a kind of object; 0 where only labels and attributes are drawn.
template <class Record>
constexpr std::size_t BodyOf = 0;
template <>
constexpr std::size_t BodyOf<CompRecord> = 1;
template <>
constexpr std::size_t BodyOf<PinRecord> = 2;
template <>
constexpr std::size_t BodyOf<BusRecord> = 3;
template <>
constexpr std::size_t BodyOf<GroupRecord> = 4;

template <class Record>
void Loader::CheckDrawings() {
    ForEachOf(static_cast<const Graph&>(m_graph).Of<Record>(), [&](Slot slot, const Record& record) {
        if (record.drawings.IsEmpty()) return;
        Guarded(Definition(RowOf<Record>::Table).name, slot, [&] {
            Slot last = 0;
            for (const Drawing& drawing : record.drawings) {
                Expect(drawing.view > last, "drawings out of order");
                last = drawing.view;
                CheckDrawing(record, slot, drawing);
            }
        });
    });
}

template <class Record>
void Loader::CheckDrawing(const Record& record, Slot slot, const Drawing& drawing) const {
    ExpectGiven(EObjectType::BlockView, drawing.view);
    Expect(drawing.body.index() == 0 || drawing.body.index() == BodyOf<Record>, "a drawing of another kind of object");
    Expect(drawing.label.Count() <= 1, "two labels");
    const DrawnAttribute* before = nullptr;
    for (const DrawnAttribute& attribute : drawing.attributes) {
        const auto key = [](const DrawnAttribute& a) { return std::pair(a.name.View(), a.value.View()); };
        Expect(!attribute.name.IsEmpty() && (before == nullptr || key(*before) < key(attribute)),
               "drawn attributes out of order");
        before = &attribute;
    }
    const ViewRecord* const view = static_cast<const Graph&>(m_graph).Find<ViewRecord>(drawing.view);
    if (view == nullptr) return;
    const GroupRecord* const sheet = view->group != 0 ? m_groups.Find(view->group) : nullptr;
    bool fits = false;
    if constexpr (std::is_same_v<Record, PinRecord>) {
        fits = sheet != nullptr ? m_comps.Find(record.comp)->block == sheet->block : record.comp == view->comp;
    } else if constexpr (std::is_same_v<Record, BlockRecord>) {
        fits = sheet != nullptr && sheet->block == slot;
    } else {
        fits =
            sheet != nullptr ? record.block == sheet->block : std::is_same_v<Record, CompRecord> && slot == view->comp;
    }
    Expect(fits, "a drawing on a view that cannot show it");
}

void Loader::LoadConnections() {
    Table<BusRecord>& buses = m_graph.Of<BusRecord>();
    Rows(ETable::BusNet, "", [&](ColumnReader row) {
        const Slot bus = row.Number<Slot>();
        const Slot net = row.Number<Slot>();
        const BusRecord* const of = buses.Find(bus);
        Expect(of != nullptr && m_nets.Find(net) != nullptr && of->block == m_nets.Find(net)->block,
               "no bus and net of one block");
        buses.Write(bus).nets.InsertSorted(net);
        m_nets.Write(net).buses.InsertSorted(bus);
    });
}

// ---- Members ----

void Loader::LoadMembers() {
    struct Member {
        Slot group;
        Location at;
        std::uint64_t object;
        std::int64_t rank;
        std::int64_t nth;
    };
    std::vector<Member> members;
    members.reserve(m_comps.Count());
    Rows(ETable::Member, "", [&](ColumnReader row) {
        Member member{
            row.Number<Slot>(), {}, row.AsIndex().Value(), row.Number<std::int64_t>(), row.Number<std::int64_t>()};
        member.at = m_graph.Locate(Index(member.object));
        const GroupRecord* const group = m_groups.Find(member.group);
        Expect(group != nullptr, "no group");
        const bool fits = VisitRecord(m_graph, member.at, false, [&](const auto& record) {
            if constexpr (requires { record.block; }) {
                return MembershipsOf(record) != nullptr && record.block == group->block &&
                       static_cast<const void*>(&record) != group;
            } else {
                return false;
            }
        });
        Expect(fits, "an object that cannot be a member of the group");
        members.push_back(member);
    });
    const auto place = [](const Member& m) { return std::pair(m.group, m.rank); };
    const auto before = [&place](const Member& a, const Member& b) { return place(a) < place(b); };
    if (!std::is_sorted(members.begin(), members.end(), before)) std::sort(members.begin(), members.end(), before);

    // Nearly all objects are in one group; what is in several is sorted afterwards.
    std::vector<const Member*> several;
    const auto write = [this](Location at, auto&& use) {
        if (at.kind == EObjectType::Comp) return use(m_comps.Write(at.slot).groups);
        if (at.kind == EObjectType::Net) return use(m_nets.Write(at.slot).groups);
        if (at.kind == EObjectType::Bus) return use(m_graph.Of<BusRecord>().Write(at.slot).groups);
        use(m_groups.Write(at.slot).memberships);
    };
    std::unordered_set<std::uint64_t> objects;
    for (const Member& member : members) {
        const Member* const last = &member != members.data() ? &member - 1 : nullptr;
        if (last != nullptr && place(*last) == place(member))
            throw StoreFault{"the file is damaged: table member, row " + std::to_string(member.group) +
                             ": a rank given twice"};
        m_groups.Write(member.group).members.Append(member.object);
        write(member.at, [&](Memberships& memberships) {
            if (memberships.first == 0) {
                memberships.first = member.group;
            } else {
                objects.insert(member.object);
            }
        });
    }
    if (objects.empty()) return;
    for (const Member& member : members)
        if (objects.count(member.object) != 0) several.push_back(&member);
    std::sort(several.begin(), several.end(), [](const Member* a, const Member* b) {
        return std::tuple(a->object, a->nth, a->group) < std::tuple(b->object, b->nth, b->group);
    });
    std::uint64_t current = 0;
    for (const Member* const member : several)
        write(member->at, [&](Memberships& memberships) {
            if (member->object != current) {
                memberships = {member->group, {}};
            } else {
                memberships.further.Append(member->group);
            }
            current = member->object;
        });
}

// ---- Attributes ----

void Loader::LoadAttributes() {
    // Rows come object by object and in the order in which lists are sorted.
    Location current;
    std::int64_t currentPlace = 0;
    ListAttribute list;
    const auto finish = [&] {
        if (list.IsEmpty()) return;
        if (current.kind == EObjectType::Snapshot) {
            m_graph.attributes = std::move(list);
        } else if (currentPlace != 0) {
            ListT<OccurrenceAttributes>& all = m_comps.Write(current.slot).occurrences;
            const Slot place = m_placesByNumber.find(currentPlace)->second->slot;
            const OccurrenceAttributes* const behind =
                std::lower_bound(all.begin(), all.end(), place,
                                 [](const OccurrenceAttributes& o, Slot wanted) { return o.path < wanted; });
            all.Insert(static_cast<std::size_t>(behind - all.begin()), {place, std::move(list)});
        } else {
            ForEachKind([&]<class Record>() {
                if constexpr (requires(Record & r) { r.attributes; })
                    if (Record::Kind == current.kind)
                        m_graph.Of<Record>().Write(current.slot).attributes = std::move(list);
            });
        }
        list = ListAttribute();
    };
    Rows(ETable::Attribute, "ORDER BY kind, object, place, family, name", [&](ColumnReader row) {
        const Location at{static_cast<EObjectType>(row.Number<std::uint8_t>()), row.Number<Slot>()};
        const auto place = row.Number<std::int64_t>();
        const auto family = row.Number<std::int32_t>();
        const String name = row.Text();
        if (at != current || place != currentPlace) {
            finish();
            current = at;
            currentPlace = place;
            const bool bears =
                VisitRecord(m_graph, at, at == Location{EObjectType::Snapshot, 0}, [](const auto& record) {
                    return requires {
                        record.attributes;
                    };
                });
            Expect(bears, "no object that bears attributes");
            Expect(place == 0 || (at.kind == EObjectType::Comp && m_placesByNumber.count(place) != 0), "no such place");
        }
        Expect(!name.IsEmpty(), "an attribute without a name");
        Expect(family == 0 || at.kind == EObjectType::Comp, "a family that only components have");
        list.Append({Shared(name), row.Text(), static_cast<EAttributeType>(family)});
    });
    finish();
}

}  // namespace

void LoadState(SqliteFile& file, Graph& graph, const PlacesByNumber& places, const FileState& state,
               std::int64_t savePoint) {
    Loader(file, graph, places, state, savePoint).Run();
}

}  // namespace Orin::DesignDb
