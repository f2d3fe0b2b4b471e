// How the records of the graph lie in rows.
#pragma once

#include "designdb/detail/records.h"
#include "designstore/detail/blob.h"
#include "designstore/detail/schema.h"

namespace Orin::DesignDb {

// The table of a kind of record, and its columns behind the key, in their order. `R` is the record or a constant one.
template <class Record>
struct RowOf;

template <>
struct RowOf<BlockRecord> {
    static constexpr ETable Table = ETable::Block;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.types, r.name, r.libraryName, r.drawings);
    }
};
template <>
struct RowOf<CompRecord> {
    static constexpr ETable Table = ETable::Comp;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.block, r.label, r.name, r.types, r.partition, r.definition, r.child, r.rippedBus, r.instance,
          r.drawings);
    }
};
template <>
struct RowOf<PinRecord> {
    static constexpr ETable Table = ETable::Pin;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.comp, r.net, r.label, r.drawings);
    }
};
template <>
struct RowOf<NetRecord> {
    static constexpr ETable Table = ETable::Net;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.block, r.label, r.drawings);
    }
};
template <>
struct RowOf<BusRecord> {
    static constexpr ETable Table = ETable::Bus;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.block, r.label, r.drawings);
    }
};
template <>
struct RowOf<GroupRecord> {
    static constexpr ETable Table = ETable::Group;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.block, r.ownerGroup, r.type, r.name, r.drawings);
    }
};
template <>
struct RowOf<ConfigRecord> {
    static constexpr ETable Table = ETable::Config;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.root, r.name);
    }
};
template <>
struct RowOf<ViewRecord> {
    static constexpr ETable Table = ETable::View;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.group, r.comp, r.modified);
    }
};
template <>
struct RowOf<PieceRecord> {
    static constexpr ETable Table = ETable::Piece;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.net, r.view, r.data);
    }
};
template <class Data>
struct RowOf<ItemRecord<Data>> {
    static constexpr ETable Table = ETable::Item;
    template <class Archive, class R>
    static void Columns(Archive& a, R& r) {
        a(r.index, r.view, r.data);
    }
};

// Calls visit.template operator()<Record>() for each kind of record, owners before what they own.
template <class Visit>
void ForEachKind(Visit&& visit) {
    visit.template operator()<BlockRecord>();
    visit.template operator()<CompRecord>();
    visit.template operator()<PinRecord>();
    visit.template operator()<ConfigRecord>();
    visit.template operator()<NetRecord>();
    visit.template operator()<BusRecord>();
    visit.template operator()<GroupRecord>();
    visit.template operator()<ViewRecord>();
    visit.template operator()<PieceRecord>();
    visit.template operator()<LineRecord>();
    visit.template operator()<RectRecord>();
    visit.template operator()<ArcRecord>();
    visit.template operator()<CircleRecord>();
    visit.template operator()<TextRecord>();
}

// The groups of which an object that can be a member is one; null of another kind.
template <class Record>
auto* MembershipsOf(Record& record) noexcept {
    if constexpr (requires { record.memberships; }) {
        return &record.memberships;
    } else if constexpr (requires { record.groups; } && !std::is_same_v<std::remove_const_t<Record>, BlockRecord>) {
        return &record.groups;
    } else {
        return static_cast<const Memberships*>(nullptr);
    }
}

}  // namespace Orin::DesignDb
