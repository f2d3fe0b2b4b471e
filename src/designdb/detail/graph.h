// The content of one snapshot: all records, and how indexes lead to them.
#pragma once

#include <array>
#include <tuple>
#include <unordered_map>

#include "designdb/detail/records.h"

namespace Orin::DesignDb {

// A record's place among all tables.
struct Location {
    EObjectType kind = EObjectType::None;
    Slot slot = 0;

    explicit operator bool() const noexcept { return slot != 0; }
    bool operator==(const Location&) const = default;
};

// Indexes that callers asked for and that do not name their own place, in shards that graphs share until one writes.
class ORINPI_EXPORT ForeignIndexes {
public:
    Location Find(const Index& index) const noexcept;
    void Enter(const Index& index, Location location);
    void Remove(const Index& index);
    bool IsEmpty() const noexcept { return m_count == 0; }

private:
    static constexpr std::size_t ShardCount = 64;
    struct Shard {
        std::unordered_map<Index, Location> entries;
        mutable std::atomic<std::uint32_t> references{0};

        Shard() = default;
        Shard(const Shard& other) : entries(other.entries) {}
        void AddReference() const noexcept { references.fetch_add(1, std::memory_order_relaxed); }
        void DropReference() const noexcept {
            if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
        }
    };

    static std::size_t ShardOf(const Index& index) noexcept { return std::hash<Index>()(index) % ShardCount; }
    Shard& Own(std::size_t at);

    std::array<RefPtr<Shard>, ShardCount> m_shards;
    std::size_t m_count = 0;
};

// A copy of a graph shares all records with it until either is changed. Reading needs no allocation and may be done by
// several threads; who writes is alone.
class ORINPI_EXPORT Graph {
public:
    template <class Record>
    const Table<Record>& Of() const noexcept {
        return std::get<Table<Record>>(m_tables);
    }
    // For writing.
    template <class Record>
    Table<Record>& Of() noexcept {
        if constexpr (Record::Kind == EObjectType::Block || Record::Kind == EObjectType::Comp ||
                      Record::Kind == EObjectType::Config)
            m_structure = NextStructure();
        return std::get<Table<Record>>(m_tables);
    }

    // Changes whenever what places of the hierarchy depend on may have changed. No two graphs that differ there have
    // the same value, so what was found out under a value holds as long as the value does.
    std::uint64_t Structure() const noexcept { return m_structure; }

    template <class Record>
    const Record* Find(Slot slot) const noexcept {
        return Of<Record>().Find(slot);
    }

    // The slot of the record of that kind and index, or 0.
    template <class Record>
    Slot SlotOf(const Index& index) const noexcept {
        // An index that the database chose is the kind and the slot; the record's own index tells it from a foreign
        // one that merely looks alike.
        if (index.Middle() == 0) {
            const Record* const record = Of<Record>().Find(index.Low());
            if (record != nullptr && record->index == index) return index.Low();
        }
        if (m_foreign.IsEmpty()) return 0;
        const Location found = m_foreign.Find(index);
        return found.kind == Record::Kind ? found.slot : 0;
    }

    template <class Record>
    const Record* Find(const Index& index) const noexcept {
        const Slot slot = SlotOf<Record>(index);
        return slot != 0 ? Of<Record>().Find(slot) : nullptr;
    }

    // Where the object of that index is, of whatever kind; false when there is none.
    Location Locate(const Index& index) const noexcept;

    // A place for a new record: under `wanted`, which no living object bears, or under an index of the database's
    // choice when `wanted` is empty. Readers of the graph may reserve, several at once.
    template <class Record>
    std::pair<Slot, Index> Reserve(const Index& wanted, EObjectType type = Record::Kind) const {
        const Table<Record>& table = Of<Record>();
        if (wanted.IsEmpty()) {
            for (;;) {
                const Slot slot = table.Reserve();
                const Index index(type, 0, slot);
                if (m_foreign.IsEmpty() || !m_foreign.Find(index)) return {slot, index};
            }
        }
        if (wanted.GetType() == type && wanted.Middle() == 0 && wanted.Low() >= table.NextSlot() &&
            wanted.Low() - table.NextSlot() < LargestGap) {
            if (table.ReserveThrough(wanted.Low())) return {wanted.Low(), wanted};
        }
        return {table.Reserve(), wanted};
    }

    // Gives away all slots that the other graph gave.
    void ReserveThrough(const Graph& other) const noexcept {
        std::apply(
            [&other]<class... Records>(const Table<Records>&... tables) {
                (static_cast<void>(tables.ReserveThrough(other.Of<Records>().NextSlot() - 1)), ...);
            },
            m_tables);
    }

    // Whether the index leads to the slot only through the table of foreign indexes.
    template <class Record>
    static bool IsForeign(const Index& index, Slot slot) noexcept {
        return index.Middle() != 0 || index.Low() != slot || !IsOwnType<Record>(index.GetType());
    }

    ForeignIndexes& Foreign() noexcept { return m_foreign; }

    ListAttribute attributes;  // of the design as a whole

    // Calls use(table...) with null pointers to each kind of table.
    template <class Use>
    static void WithTables(Use&& use) {
        [&use]<class... Records>(const std::tuple<Table<Records>...>*) {
            use(static_cast<const Table<Records>*>(nullptr)...);
        }(static_cast<const Tables*>(nullptr));
    }

private:
    // An asked-for index this far beyond the last one is treated as foreign, or a single number could make the tables
    // grow without bound.
    static constexpr Slot LargestGap = 1U << 20;

    static std::uint64_t NextStructure() noexcept;

    template <class Record>
    static constexpr bool IsOwnType(EObjectType type) noexcept {
        return type == Record::Kind || (Record::Kind == EObjectType::BlockView && type == EObjectType::CompView);
    }

    using Tables =
        std::tuple<Table<BlockRecord>, Table<CompRecord>, Table<PinRecord>, Table<NetRecord>, Table<BusRecord>,
                   Table<GroupRecord>, Table<ConfigRecord>, Table<ViewRecord>, Table<PieceRecord>, Table<LineRecord>,
                   Table<RectRecord>, Table<ArcRecord>, Table<CircleRecord>, Table<TextRecord>>;
    Tables m_tables;
    ForeignIndexes m_foreign;
    std::uint64_t m_structure = NextStructure();
};

// Calls visit(record) for the record at a location, with its own type; `missing` is the answer when there is none.
template <class R, class Visit>
R VisitRecord(const Graph& graph, Location at, R missing, Visit&& visit) {
    const auto call = [&]<class Record>(const Record* record) { return record != nullptr ? visit(*record) : missing; };
    switch (at.kind) {
        case EObjectType::Block:
            return call(graph.Find<BlockRecord>(at.slot));
        case EObjectType::Comp:
            return call(graph.Find<CompRecord>(at.slot));
        case EObjectType::Pin:
            return call(graph.Find<PinRecord>(at.slot));
        case EObjectType::Net:
            return call(graph.Find<NetRecord>(at.slot));
        case EObjectType::Bus:
            return call(graph.Find<BusRecord>(at.slot));
        case EObjectType::Group:
            return call(graph.Find<GroupRecord>(at.slot));
        case EObjectType::Config:
            return call(graph.Find<ConfigRecord>(at.slot));
        case EObjectType::BlockView:
            return call(graph.Find<ViewRecord>(at.slot));
        case EObjectType::NetQuill:
            return call(graph.Find<PieceRecord>(at.slot));
        case EObjectType::Line:
            return call(graph.Find<LineRecord>(at.slot));
        case EObjectType::Rect:
            return call(graph.Find<RectRecord>(at.slot));
        case EObjectType::Arc:
            return call(graph.Find<ArcRecord>(at.slot));
        case EObjectType::Circle:
            return call(graph.Find<CircleRecord>(at.slot));
        case EObjectType::Text:
            return call(graph.Find<TextRecord>(at.slot));
        default:
            return missing;
    }
}

// The index of the group or symbol whose view it is; empty when that is not there.
Index ViewOwnerIndex(const Graph& graph, const ViewRecord& view) noexcept;

// ---- Sorted lists inside records. ----

// Where the attribute stands or would stand.
std::size_t AttributePosition(const ListAttribute& attributes, std::string_view name, EAttributeType type) noexcept;
// The attribute, or null.
ORINPI_EXPORT const Attribute* FindAttribute(const ListAttribute& attributes, std::string_view name,
                                             EAttributeType type) noexcept;
// The list with the attribute set, or taken out.
ListAttribute WithAttribute(ListAttribute attributes, const String& name, const String& value, EAttributeType type);
ListAttribute WithoutAttribute(ListAttribute attributes, std::string_view name, EAttributeType type);

bool IsMember(const Memberships& memberships, Slot group) noexcept;

const Drawing* FindDrawing(const Drawings& drawings, Slot view) noexcept;
const DrawnAttribute* FindDrawnAttribute(const Drawing& drawing, std::string_view name,
                                         std::string_view value) noexcept;
ORINPI_EXPORT const OccurrenceAttributes* FindOccurrence(const ListT<OccurrenceAttributes>& occurrences,
                                                         Slot path) noexcept;

}  // namespace Orin::DesignDb
