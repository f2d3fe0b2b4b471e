#include "designstore/detail/writer.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include "designstore/detail/rows.h"

namespace Orin::DesignDb {

namespace {

using Member = std::pair<Slot, std::uint64_t>;

// Members are this far apart where nothing else is asked for.
constexpr std::int64_t RankStep = std::int64_t{1} << 20;
// No rank of a file lies beyond; there is room to count on.
constexpr std::int64_t RankLimit = std::numeric_limits<std::int64_t>::max() / 2;

std::int64_t AsNumber(const Index& index) noexcept {
    return static_cast<std::int64_t>(index.Value());
}

// Binds the columns of a row.
class ColumnWriter {
public:
    ColumnWriter(Statement& statement, std::string& blob) noexcept : m_statement(statement), m_blob(blob) {}

    template <class... Values>
    void operator()(const Values&... values) {
        (Put(values), ...);
    }

private:
    void Put(Slot slot) { m_statement << std::int64_t{slot}; }
    void Put(const Index& index) { m_statement << AsNumber(index); }
    void Put(const String& text) { m_statement << text.View(); }
    void Put(EGroupType type) { m_statement << std::int64_t{static_cast<int>(type)}; }
    template <class E>
    void Put(const BitContainerT<E, 1>& set) {
        m_statement << std::int64_t{set.Bits()};
    }
    void Put(const std::optional<std::int32_t>& value) {
        if (value) {
            m_statement << std::int64_t{*value};
        } else {
            m_statement.Null();
        }
    }
    void Put(const Drawings& drawings) {
        if (drawings.IsEmpty()) {
            m_statement.Blob({});
        } else {
            PutBlob(drawings);
        }
    }
    template <class Data>
    requires requires(const Data& data) { data.objectId; }
    void Put(const Data& data) { PutBlob(data); }
    template <class T>
    void PutBlob(const T& value) {
        WriteBlob(value, m_blob);
        m_statement.Blob(m_blob);
    }

    Statement& m_statement;
    std::string& m_blob;
};

// Where in the list of an object's groups the group stands.
std::int64_t PositionOf(const Memberships& memberships, Slot group) noexcept {
    if (memberships.first == group) return 0;
    const auto found = std::find(memberships.further.begin(), memberships.further.end(), group);
    return found - memberships.further.begin() + 1;
}

const Memberships* MembershipsAt(const Graph& graph, Location at) noexcept {
    return VisitRecord(graph, at, static_cast<const Memberships*>(nullptr),
                       [](const auto& record) -> const Memberships* { return MembershipsOf(record); });
}

template <class T>
void SortOnce(std::vector<T>& values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

}  // namespace

// ---- Rows ----

template <class... Key>
void DesignWriter::Remember(ETable table, const Key&... key) {
    if (Newest() == 0 || !HasHistory(table)) return;
    constexpr std::size_t count = sizeof...(Key);
    const TableDefinition& definition = Definition(table);
    TableStatements& statements = m_statements[static_cast<std::size_t>(table)];
    const std::string name(definition.name);
    Statement& remember = statements.remember[count - 1];
    if (!remember)
        remember = Statement(m_file, "INSERT OR IGNORE INTO " + name + "_before SELECT ?1, *, 1 FROM " + name +
                                         " WHERE " + definition.Where(count, 2));
    remember << Newest();
    (remember << ... << key).Run();
    if (count != TableDefinition::Count(definition.key)) return;
    if (!statements.rememberNone) {
        std::string values;
        for (std::size_t i = 0; i < count; ++i)
            values += ", ?";
        statements.rememberNone = Statement(m_file, "INSERT OR IGNORE INTO " + name + "_before(savepoint, present, " +
                                                        std::string(definition.key) + ") VALUES(?, 0" + values + ")");
    }
    statements.rememberNone << Newest();
    (statements.rememberNone << ... << key).Run();
}

Statement& DesignWriter::Put(ETable table) {
    Statement& put = m_statements[static_cast<std::size_t>(table)].put;
    if (!put) {
        const TableDefinition& definition = Definition(table);
        std::string sql = "REPLACE INTO " + std::string(definition.name) + " VALUES(?";
        for (std::size_t i = 1; i < TableDefinition::Count(definition.columns); ++i)
            sql += ", ?";
        put = Statement(m_file, sql + ")");
    }
    return put;
}

template <class... Key>
void DesignWriter::Erase(ETable table, const Key&... key) {
    Remember(table, key...);
    constexpr std::size_t count = sizeof...(Key);
    Statement& erase = m_statements[static_cast<std::size_t>(table)].erase[count - 1];
    if (!erase) {
        const TableDefinition& definition = Definition(table);
        erase = Statement(m_file, "DELETE FROM " + std::string(definition.name) + " WHERE " + definition.Where(count));
    }
    (erase << ... << key).Run();
}

template <class Record>
void DesignWriter::PutRecord(Slot slot, const Record& record) {
    constexpr ETable table = RowOf<Record>::Table;
    constexpr std::int64_t kind = static_cast<std::int64_t>(Record::Kind);
    const std::int64_t id = slot;
    if constexpr (table == ETable::Item) {
        Remember(table, kind, id);
    } else {
        Remember(table, id);
    }
    Statement& put = Put(table);
    if constexpr (table == ETable::Item) put << kind;
    put << id;
    ColumnWriter columns(put, m_blob);
    RowOf<Record>::Columns(columns, record);
    put.Run();
}

void DesignWriter::PutAttribute(EObjectType kind, Slot slot, std::int64_t place, const Attribute& attribute) {
    const auto key = std::tuple(static_cast<std::int64_t>(kind), std::int64_t{slot}, place,
                                static_cast<std::int64_t>(attribute.type), attribute.name.View());
    std::apply([this](const auto&... parts) { Remember(ETable::Attribute, parts...); }, key);
    Statement& put = Put(ETable::Attribute);
    std::apply([&put](const auto&... parts) { (put << ... << parts); }, key);
    (put << attribute.value.View()).Run();
}

template <class Record>
void DesignWriter::PutAttributes(Slot slot, const Record& record) {
    if constexpr (requires { record.attributes; }) {
        for (const Attribute& attribute : record.attributes)
            PutAttribute(Record::Kind, slot, 0, attribute);
    }
    if constexpr (requires { record.occurrences; }) {
        for (const OccurrenceAttributes& occurrence : record.occurrences) {
            const std::int64_t place = NumberOf(occurrence.path);
            for (const Attribute& attribute : occurrence.attributes)
                PutAttribute(Record::Kind, slot, place, attribute);
        }
    }
}

void DesignWriter::WriteDesignAttributes(const Graph& graph) {
    Erase(ETable::Attribute, static_cast<std::int64_t>(EObjectType::Snapshot), std::int64_t{0});
    for (const Attribute& attribute : graph.attributes)
        PutAttribute(EObjectType::Snapshot, 0, 0, attribute);
}

void DesignWriter::PutMember(const Graph& graph, Slot group, std::uint64_t member, std::int64_t rank) {
    const std::int64_t object = AsNumber(Index(member));
    const Memberships* const memberships = MembershipsAt(graph, graph.Locate(Index(member)));
    Remember(ETable::Member, std::int64_t{group}, object);
    (Put(ETable::Member) << std::int64_t{group} << object << rank
                         << (memberships != nullptr ? PositionOf(*memberships, group) : 0))
        .Run();
}

void DesignWriter::PutAllMembers(const Graph& graph, Slot group, const GroupRecord& record) {
    std::int64_t rank = 0;
    record.members.ForEach([&](std::uint64_t member) { PutMember(graph, group, member, rank += RankStep); });
}

void DesignWriter::WriteNextSlots(const Graph& graph) {
    ForEachKind([&]<class Record>() {
        const Slot next = graph.Of<Record>().NextSlot();
        Slot& known = m_state.nextSlots[Record::Kind];
        if (known == next) return;
        (Put(ETable::NextSlot) << static_cast<std::int64_t>(Record::Kind) << std::int64_t{next}).Run();
        m_formerNextSlots.emplace(Record::Kind, known);
        known = next;
    });
}

std::int64_t DesignWriter::NumberOf(Slot place) {
    std::vector<const PathNode*> unknown;
    const PathNode* node = m_places.Find(place);
    for (; node != nullptr && m_state.places.Find(node->slot) == 0; node = node->parent)
        unknown.push_back(node);
    for (auto above = unknown.rbegin(); above != unknown.rend(); ++above) {
        const PathNode& added = **above;
        const std::int64_t number = m_state.places.Next();
        const std::int64_t parent = added.parent != nullptr ? m_state.places.Find(added.parent->slot) : 0;
        (Put(ETable::Place) << number << parent << std::int64_t{added.comp} << std::int64_t{added.config}).Run();
        m_newPlaces.reserve(m_newPlaces.size() + 1);
        m_state.places.Enter(added.slot, number);
        m_newPlaces.push_back(added.slot);
    }
    return m_state.places.Find(place);
}

void DesignWriter::Committed() noexcept {
    m_savePointsChanged = false;
    m_newPlaces.clear();
    m_formerNextSlots.clear();
}

void DesignWriter::RolledBack() noexcept {
    if (m_savePointsChanged) m_state.savePoints.swap(m_formerSavePoints);
    m_savePointsChanged = false;
    for (const Slot place : m_newPlaces)
        m_state.places.Remove(place);
    m_newPlaces.clear();
    for (const auto& [kind, next] : m_formerNextSlots)
        m_state.nextSlots[kind] = next;
    m_formerNextSlots.clear();
}

// ---- A whole design ----

void DesignWriter::WriteAll(const ProjectContent& content, const String& design) {
    (Put(ETable::Design) << std::int64_t{1} << design.View()).Run();
    WriteState(content.working);
    for (const SavedState& savePoint : content.savePoints)
        AddSavePoint(savePoint, content.working);
    Committed();
}

void DesignWriter::WriteState(const Graph& graph) {
    const auto each = [&graph]<class Record>(auto&& write) {
        const Table<Record>& table = graph.Of<Record>();
        for (Slot slot = table.Above(0); slot != 0; slot = table.Above(slot))
            write(slot, *table.Find(slot));
    };
    ForEachKind([&]<class Record>() {
        each.template operator()<Record>([this](Slot slot, const Record& record) { PutRecord(slot, record); });
    });
    // Table by table, in the order of the keys, which fills each tree from one end to the other.
    WriteDesignAttributes(graph);
    ForEachKind([&]<class Record>() {
        if constexpr (requires(const Record& record) { record.attributes; })
            each.template operator()<Record>([this](Slot slot, const Record& record) { PutAttributes(slot, record); });
    });
    each.template operator()<GroupRecord>(
        [&](Slot slot, const GroupRecord& group) { PutAllMembers(graph, slot, group); });
    each.template operator()<BusRecord>([this](Slot slot, const BusRecord& bus) {
        bus.nets.ForEach([&](Slot net) { (Put(ETable::BusNet) << std::int64_t{slot} << std::int64_t{net}).Run(); });
    });
    WriteNextSlots(graph);
}

// ---- Changes ----

void DesignWriter::WriteChanges(const ChangeSet& changes) {
    if (changes.snapshot == WorkingSnapshot) return WriteWorking(changes.graph, changes.touches);
    WriteSavePointAttributes(SavePointOf(changes.snapshot), changes.graph.attributes);
}

void DesignWriter::WriteWorking(const Graph& graph, Touches touches) {
    m_touched = std::move(touches.records);
    const auto place = [](const Touches::Record& r) { return std::pair(r.at.kind, r.at.slot); };
    std::sort(m_touched.begin(), m_touched.end(), [&place](const Touches::Record& a, const Touches::Record& b) {
        return place(a) != place(b) ? place(a) < place(b) : a.extent > b.extent;
    });
    m_touched.erase(std::unique(m_touched.begin(), m_touched.end(),
                                [](const Touches::Record& a, const Touches::Record& b) { return a.at == b.at; }),
                    m_touched.end());
    for (const Touches::Record& touched : m_touched)
        ForEachKind([&]<class Record>() {
            if (Record::Kind == touched.at.kind) WriteTouched<Record>(graph, touched.at.slot, touched.extent);
        });
    if (touches.designAttributes) WriteDesignAttributes(graph);
    WriteAttributes(graph, touches);
    WriteOccurrences(graph, touches);
    WriteConnections(graph, touches);
    WriteMembers(graph, touches);
    WriteNextSlots(graph);
}

template <class Record>
void DesignWriter::WriteTouched(const Graph& graph, Slot slot, Touches::Extent extent) {
    constexpr std::int64_t kind = static_cast<std::int64_t>(Record::Kind);
    const std::int64_t id = slot;
    const Record* const record = graph.Find<Record>(slot);
    if (record == nullptr || extent == Touches::Extent::Replaced) {
        if constexpr (requires(const Record& r) { r.attributes; }) Erase(ETable::Attribute, kind, id);
        if constexpr (std::is_same_v<Record, GroupRecord>) Erase(ETable::Member, id);
        if constexpr (std::is_same_v<Record, BusRecord>) Erase(ETable::BusNet, id);
    }
    if (record == nullptr) {
        if constexpr (RowOf<Record>::Table == ETable::Item) {
            Erase(ETable::Item, kind, id);
        } else {
            Erase(RowOf<Record>::Table, id);
        }
        return;
    }
    PutRecord(slot, *record);
    if (extent == Touches::Extent::Fields) return;
    PutAttributes(slot, *record);
    if constexpr (std::is_same_v<Record, GroupRecord>) PutAllMembers(graph, slot, *record);
    if constexpr (std::is_same_v<Record, BusRecord>)
        record->nets.ForEach([&](Slot net) {
            Remember(ETable::BusNet, id, std::int64_t{net});
            (Put(ETable::BusNet) << id << std::int64_t{net}).Run();
        });
    if (extent == Touches::Extent::Replaced) WriteMembershipOrder(graph, {Record::Kind, slot});
}

// Whether all about an object was written, or it is gone.
bool DesignWriter::IsWhole(EObjectType kind, Slot slot) const noexcept {
    const auto place = [](const Touches::Record& r) { return std::pair(r.at.kind, r.at.slot); };
    const auto found =
        std::lower_bound(m_touched.begin(), m_touched.end(), std::pair(kind, slot),
                         [&place](const Touches::Record& r, const auto& wanted) { return place(r) < wanted; });
    return found != m_touched.end() && place(*found) == std::pair(kind, slot) &&
           found->extent != Touches::Extent::Fields;
}

void DesignWriter::WriteAttributes(const Graph& graph, Touches& touches) {
    const auto key = [](const Touches::OneAttribute& a) {
        return std::tuple(a.of.kind, a.of.slot, a.type, a.name.View());
    };
    std::vector<Touches::OneAttribute>& all = touches.attributes;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [this](const Touches::OneAttribute& a) { return IsWhole(a.of.kind, a.of.slot); }),
              all.end());
    std::sort(all.begin(), all.end(), [&key](const auto& a, const auto& b) { return key(a) < key(b); });
    all.erase(std::unique(all.begin(), all.end(), [&key](const auto& a, const auto& b) { return key(a) == key(b); }),
              all.end());
    for (const Touches::OneAttribute& touched : all) {
        const bool isThere = VisitRecord(graph, touched.of, false, [&](const auto& record) {
            if constexpr (requires { record.attributes; }) {
                const Attribute* const now = FindAttribute(record.attributes, touched.name.View(), touched.type);
                if (now != nullptr) PutAttribute(touched.of.kind, touched.of.slot, 0, *now);
                return now != nullptr;
            } else {
                return false;
            }
        });
        if (!isThere)
            Erase(ETable::Attribute, static_cast<std::int64_t>(touched.of.kind), std::int64_t{touched.of.slot},
                  std::int64_t{0}, static_cast<std::int64_t>(touched.type), touched.name.View());
    }
}

void DesignWriter::WriteOccurrences(const Graph& graph, Touches& touches) {
    SortOnce(touches.occurrences);
    for (const auto& [comp, place] : touches.occurrences) {
        const CompRecord* const record = graph.Find<CompRecord>(comp);
        if (record == nullptr || IsWhole(EObjectType::Comp, comp)) continue;
        const OccurrenceAttributes* const now = FindOccurrence(record->occurrences, place);
        if (now == nullptr && m_state.places.Find(place) == 0) continue;
        const std::int64_t number = NumberOf(place);
        Erase(ETable::Attribute, static_cast<std::int64_t>(EObjectType::Comp), std::int64_t{comp}, number);
        if (now == nullptr) continue;
        for (const Attribute& attribute : now->attributes)
            PutAttribute(EObjectType::Comp, comp, number, attribute);
    }
}

void DesignWriter::WriteConnections(const Graph& graph, Touches& touches) {
    SortOnce(touches.connections);
    for (const auto& [bus, net] : touches.connections) {
        const BusRecord* const record = graph.Find<BusRecord>(bus);
        if (record == nullptr || IsWhole(EObjectType::Bus, bus)) continue;
        const std::int64_t key[] = {bus, net};
        if (record->nets.ContainsSorted(net)) {
            Remember(ETable::BusNet, key[0], key[1]);
            (Put(ETable::BusNet) << key[0] << key[1]).Run();
        } else {
            Erase(ETable::BusNet, key[0], key[1]);
        }
    }
}

// ---- Save points ----

std::int64_t DesignWriter::SavePointOf(const String& name) const {
    for (const auto& [number, known] : m_state.savePoints)
        if (known == name) return number;
    throw StoreFault{"the file holds no such save point"};
}

void DesignWriter::WriteSavePointAttributes(std::int64_t savePoint, const ListAttribute& attributes) {
    Erase(ETable::SavePointAttribute, savePoint);
    for (const Attribute& attribute : attributes)
        (Put(ETable::SavePointAttribute) << savePoint << attribute.name.View() << attribute.value.View()).Run();
}

// The rows of the newest save point are those of the working design until they change. So the tables are made what the
// save point is, which for one that was just made they are already, and then again what the working design is.
void DesignWriter::AddSavePoint(const SavedState& savePoint, const Graph& working) {
    Graph state = savePoint.graph;
    state.attributes = savePoint.attributes;
    Touches away;
    TouchDifference(working, state, away);
    WriteWorking(state, std::move(away));
    m_formerSavePoints = m_state.savePoints;
    m_savePointsChanged = true;
    const std::int64_t number = Newest() + 1;
    (Put(ETable::SavePoint) << number << savePoint.name.View()).Run();
    WriteSavePointAttributes(number, savePoint.graph.attributes);
    m_state.savePoints.emplace_back(number, savePoint.name);
    Touches back;
    TouchDifference(state, working, back);
    WriteWorking(working, std::move(back));
}

// What the next older one took from this one it has to have itself from now on.
void DesignWriter::RemoveSavePoint(const String& name) {
    const std::int64_t number = SavePointOf(name);
    std::int64_t older = 0;
    for (const auto& [known, ignored] : m_state.savePoints)
        if (known < number) older = known;
    for (std::size_t i = 0; i < TableCount; ++i) {
        const TableDefinition& table = Tables[i];
        if (!HasHistory(static_cast<ETable>(i))) continue;
        const std::string before = Joined({table.name, "_before"});
        if (older != 0) {
            Statement move(m_file, Joined({"INSERT OR IGNORE INTO ", before, " SELECT ?, ", table.Names(),
                                           ", present FROM ", before, " WHERE savepoint = ?"}));
            (move << older << number).Run();
        }
        Statement drop(m_file, Joined({"DELETE FROM ", before, " WHERE savepoint = ?"}));
        (drop << number).Run();
    }
    Erase(ETable::SavePointAttribute, number);
    Erase(ETable::SavePoint, number);
    m_formerSavePoints = m_state.savePoints;
    m_savePointsChanged = true;
    std::erase_if(m_state.savePoints, [number](const auto& known) { return known.first == number; });
}

// ---- Members ----

void DesignWriter::WriteMembers(const Graph& graph, Touches& touches) {
    std::vector<Member>& members = touches.members;
    SortOnce(members);
    for (auto begin = members.begin(); begin != members.end();) {
        const Slot group = begin->first;
        const auto end = std::find_if(begin, members.end(), [group](const Member& m) { return m.first != group; });
        if (graph.Find<GroupRecord>(group) != nullptr && !IsWhole(EObjectType::Group, group))
            WriteMembersOf(graph, group, &*begin, &*begin + (end - begin));
        begin = end;
    }
    std::vector<Location>& orders = touches.memberships;
    const auto key = [](const Location& at) { return std::pair(at.kind, at.slot); };
    std::sort(orders.begin(), orders.end(), [&key](Location a, Location b) { return key(a) < key(b); });
    orders.erase(std::unique(orders.begin(), orders.end()), orders.end());
    for (const Location object : orders)
        WriteMembershipOrder(graph, object);
}

std::int64_t DesignWriter::RankOf(Slot group, std::uint64_t member) {
    if (!m_rank) m_rank = Statement(m_file, "SELECT rank FROM member WHERE grp = ? AND object = ?");
    m_rank << std::int64_t{group} << AsNumber(Index(member));
    if (!m_rank.Step()) throw StoreFault{"the file is not as it was left: a member of a group is missing"};
    const std::int64_t rank = m_rank.Integer(0);
    m_rank.Step();
    return rank;
}

// Members that joined, left or moved, sorted. Those that stand in the group get ranks between those of the neighbours
// that stayed where they were.
void DesignWriter::WriteMembersOf(const Graph& graph, Slot group, const Member* begin, const Member* end) {
    const ChunkedSequence<std::uint64_t>& all = graph.Find<GroupRecord>(group)->members;
    std::vector<std::pair<std::size_t, std::uint64_t>> present;  // by position
    const std::size_t touched = static_cast<std::size_t>(end - begin);
    std::vector<bool> isPresent(touched, false);
    // A look for each, or one walk along all, whichever is less work.
    if (touched < 64) {
        for (const Member* member = begin; member != end; ++member) {
            const std::size_t position = all.Find(member->second);
            if (position == all.NotFound) continue;
            present.emplace_back(position, member->second);
            isPresent[static_cast<std::size_t>(member - begin)] = true;
        }
        std::sort(present.begin(), present.end());
    } else {
        std::size_t position = 0;
        all.ForEach([&](std::uint64_t object) {
            const Member* const found = std::lower_bound(begin, end, Member(group, object));
            if (found != end && found->second == object) {
                present.emplace_back(position, object);
                isPresent[static_cast<std::size_t>(found - begin)] = true;
            }
            ++position;
        });
    }
    for (const Member* member = begin; member != end; ++member)
        if (!isPresent[static_cast<std::size_t>(member - begin)])
            Erase(ETable::Member, std::int64_t{group}, AsNumber(Index(member->second)));

    for (std::size_t first = 0; first < present.size();) {
        std::size_t last = first;
        while (last + 1 < present.size() && present[last + 1].first == present[last].first + 1)
            ++last;
        const auto count = static_cast<std::int64_t>(last - first + 1);
        const std::size_t before = present[first].first;
        const std::size_t behind = present[last].first + 1;
        const bool hasBehind = behind < all.Size();
        std::int64_t low = 0;
        std::int64_t step = RankStep;
        const std::int64_t high = hasBehind ? RankOf(group, all[behind]) : 0;
        if (before != 0) {
            low = RankOf(group, all[before - 1]);
            if (hasBehind) step = (high - low) / (count + 1);
        } else if (hasBehind) {
            low = high - RankStep * (count + 1);
        }
        if (step < 1 || low < -RankLimit || low > RankLimit)
            return PutAllMembers(graph, group, *graph.Find<GroupRecord>(group));
        step = std::min(step, RankStep);
        for (std::int64_t i = 0; i < count; ++i)
            PutMember(graph, group, present[first + static_cast<std::size_t>(i)].second, low + step * (i + 1));
        first = last + 1;
    }
}

// The numbers of an object's groups, when it has several.
void DesignWriter::WriteMembershipOrder(const Graph& graph, Location object) {
    const Memberships* const groups = MembershipsAt(graph, object);
    if (groups == nullptr || groups->further.IsEmpty()) return;
    const std::int64_t index =
        VisitRecord(graph, object, std::int64_t{0}, [](const auto& r) { return AsNumber(r.index); });
    if (!m_order) m_order = Statement(m_file, "UPDATE member SET nth = ? WHERE grp = ? AND object = ?");
    std::int64_t nth = 0;
    const auto write = [&](Slot group) {
        Remember(ETable::Member, std::int64_t{group}, index);
        (m_order << nth++ << std::int64_t{group} << index).Run();
    };
    write(groups->first);
    for (const Slot group : groups->further)
        write(group);
}

}  // namespace Orin::DesignDb
