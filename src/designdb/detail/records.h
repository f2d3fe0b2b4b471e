// What the database keeps of each object.
//
// Objects refer to each other by slot. A reference is not cleared when its target is deleted; it leads to nothing then,
// and to the object again when the deletion is undone. Lists are kept exact.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <variant>

#include "designdb/detail/chunked_sequence.h"
#include "designdb/detail/table.h"
#include "orin/records.h"

namespace Orin::DesignDb {

// Slots in ascending order, which is the order in which the objects were added.
using SlotSet = ChunkedSequence<Slot>;

// A drawn attribute.
struct DrawnAttribute {
    String name;
    String value;
    AttrDataQuill data;

    bool operator==(const DrawnAttribute&) const = default;
};

// What one view shows of one object.
struct Drawing {
    Slot view = 0;
    std::variant<std::monostate, CompDataQuill, PinDataQuill, BusDataQuill, GroupDataQuill> body;
    ListT<LabelDataQuill> label;       // none or one
    ListT<DrawnAttribute> attributes;  // sorted by name, then value

    bool operator==(const Drawing&) const = default;
};

// Of an object: sorted by view.
using Drawings = ListT<Drawing>;

// The groups of which an object is a member, in the order in which it became one. Nearly all objects are on one sheet,
// so the first group stands by itself.
struct Memberships {
    Slot first = 0;
    ListT<Slot> further;

    bool operator==(const Memberships&) const = default;
};

// Attributes that a component has at one place of the hierarchy.
struct OccurrenceAttributes {
    Slot path = 0;
    ListAttribute attributes;

    bool operator==(const OccurrenceAttributes&) const = default;
};

struct BlockRecord {
    static constexpr EObjectType Kind = EObjectType::Block;

    Index index;
    BlockTypes types;
    String name;
    String libraryName;
    ListAttribute attributes;  // here and below: sorted by type, then name
    SlotSet comps;
    SlotSet nets;
    SlotSet buses;
    SlotSet groups;
    Drawings drawings;

    bool operator==(const BlockRecord&) const = default;
};

struct CompRecord {
    static constexpr EObjectType Kind = EObjectType::Comp;

    // What is read most stands together with the index, which every look-up reads.
    Index index;
    ListAttribute attributes;
    ListT<OccurrenceAttributes> occurrences;  // sorted by path
    String label;
    CompTypes types;
    Slot block = 0;
    Slot definition = 0;
    Slot child = 0;
    Slot view = 0;  // of the symbol
    Slot rippedBus = 0;
    Index instance;  // empty: the index itself
    String name;
    String partition;
    ListT<Slot> pins;
    Drawings drawings;
    Memberships groups;

    bool operator==(const CompRecord&) const = default;
};

struct PinRecord {
    static constexpr EObjectType Kind = EObjectType::Pin;

    Index index;
    Slot comp = 0;
    Slot net = 0;
    String label;
    ListAttribute attributes;
    Drawings drawings;

    bool operator==(const PinRecord&) const = default;
};

// A piece of a net and the view on which it is drawn.
struct NetPiece {
    Slot view = 0;
    Slot piece = 0;

    bool operator==(const NetPiece&) const = default;
};

struct NetRecord {
    static constexpr EObjectType Kind = EObjectType::Net;

    Index index;
    Slot block = 0;
    String label;
    ListAttribute attributes;
    SlotSet pins;
    SlotSet buses;
    ListT<NetPiece> pieces;  // sorted by view, then in the order of adding
    Drawings drawings;
    Memberships groups;

    bool operator==(const NetRecord&) const = default;
};

struct BusRecord {
    static constexpr EObjectType Kind = EObjectType::Bus;

    Index index;
    Slot block = 0;
    String label;
    ListAttribute attributes;
    SlotSet nets;
    Drawings drawings;
    Memberships groups;

    bool operator==(const BusRecord&) const = default;
};

struct GroupRecord {
    static constexpr EObjectType Kind = EObjectType::Group;

    Index index;
    EGroupType type = EGroupType::Unknown;
    Slot block = 0;
    Slot ownerGroup = 0;  // 0: the block owns it
    Slot view = 0;
    String name;
    ListAttribute attributes;
    ChunkedSequence<std::uint64_t> members;  // index values in the user's order
    SlotSet groups;                          // that it owns
    Drawings drawings;
    Memberships memberships;

    bool operator==(const GroupRecord&) const = default;
};

struct ConfigRecord {
    static constexpr EObjectType Kind = EObjectType::Config;

    Index index;
    Slot root = 0;
    String name;
    ListAttribute attributes;

    bool operator==(const ConfigRecord&) const = default;
};

// The kinds of free items of a view, in the order in which they are listed.
enum class EItem : std::uint8_t { Line, Rect, Arc, Circle, Text };
inline constexpr std::size_t ItemKinds = 5;

// The graphical view of a sheet or of a symbol.
struct ViewRecord {
    static constexpr EObjectType Kind = EObjectType::BlockView;

    Index index;  // of kind BlockView or CompView
    Slot group = 0;
    Slot comp = 0;
    std::optional<std::int32_t> modified;
    std::array<SlotSet, ItemKinds> items;  // by EItem
    SlotSet pieces;

    bool operator==(const ViewRecord&) const = default;
};

struct PieceRecord {
    static constexpr EObjectType Kind = EObjectType::NetQuill;

    Index index;
    Slot net = 0;
    Slot view = 0;
    NetDataQuill data;

    bool operator==(const PieceRecord&) const = default;
};

template <class Data>
struct ItemTraits;
template <>
struct ItemTraits<LineDataQuill> {
    static constexpr EItem Item = EItem::Line;
    static constexpr EObjectType Kind = EObjectType::Line;
};
template <>
struct ItemTraits<RectDataQuill> {
    static constexpr EItem Item = EItem::Rect;
    static constexpr EObjectType Kind = EObjectType::Rect;
};
template <>
struct ItemTraits<ArcDataQuill> {
    static constexpr EItem Item = EItem::Arc;
    static constexpr EObjectType Kind = EObjectType::Arc;
};
template <>
struct ItemTraits<CircleDataQuill> {
    static constexpr EItem Item = EItem::Circle;
    static constexpr EObjectType Kind = EObjectType::Circle;
};
template <>
struct ItemTraits<TextDataQuill> {
    static constexpr EItem Item = EItem::Text;
    static constexpr EObjectType Kind = EObjectType::Text;
};

template <class Data>
struct ItemRecord {
    static constexpr EObjectType Kind = ItemTraits<Data>::Kind;

    Index index;
    Slot view = 0;
    Data data;

    bool operator==(const ItemRecord&) const = default;
};

using LineRecord = ItemRecord<LineDataQuill>;
using RectRecord = ItemRecord<RectDataQuill>;
using ArcRecord = ItemRecord<ArcDataQuill>;
using CircleRecord = ItemRecord<CircleDataQuill>;
using TextRecord = ItemRecord<TextDataQuill>;

}  // namespace Orin::DesignDb
