// What observers are told of one edit.
#pragma once

#include <iterator>

#include "orin/enums.h"
#include "orin/records.h"

namespace Orin::DesignDb {

// The kinds of objects that come and go, as adding and as deleting calls them.
struct KindPair {
    EObjectType object;
    EEventsAdd add;
    EEventsDelete remove;
};

inline constexpr KindPair KindPairs[] = {
    {EObjectType::Block, EEventsAdd::Block, EEventsDelete::Block},
    {EObjectType::Comp, EEventsAdd::Comp, EEventsDelete::Comp},
    {EObjectType::Pin, EEventsAdd::Pin, EEventsDelete::Pin},
    {EObjectType::Net, EEventsAdd::Net, EEventsDelete::Net},
    {EObjectType::Bus, EEventsAdd::Bus, EEventsDelete::Bus},
    {EObjectType::Group, EEventsAdd::Group, EEventsDelete::Group},
    {EObjectType::NetQuill, EEventsAdd::NetQuill, EEventsDelete::NetQuill},
    {EObjectType::Config, EEventsAdd::Config, EEventsDelete::Config},
    {EObjectType::None, EEventsAdd::GraphicItem, EEventsDelete::GraphicItem},  // every other kind
};

constexpr KindPair KindsOf(EObjectType object) noexcept {
    for (const KindPair& pair : KindPairs)
        if (pair.object == object) return pair;
    return KindPairs[std::size(KindPairs) - 1];
}

struct Event {
    enum class Family : std::uint8_t {
        None,
        Add,
        Delete,
        Change,
        QuillData,
        Connectivity,
        SetAttribute,
        RemoveAttribute
    };

    Family family = Family::None;
    int kind = 0;  // of the family's enumeration
    Index parent;  // empty where the callback has one index
    Index object;
    String name;   // of the attribute
    String value;  // that it is set to
    EAttributeType type = EAttributeType::User;
    bool existed = false;  // whether the attribute was there
    String before;         // and its value then

    bool IsOfAttribute() const noexcept { return family == Family::SetAttribute || family == Family::RemoveAttribute; }

    static Event Add(const Index& parent, const Index& object, EEventsAdd kind) {
        return {Family::Add, static_cast<int>(kind), parent, object, {}, {}, {}, {}, {}};
    }
    static Event Delete(const Index& parent, const Index& object, EEventsDelete kind) {
        return {Family::Delete, static_cast<int>(kind), parent, object, {}, {}, {}, {}, {}};
    }
    static Event Change(const Index& object, EEventsChange kind) {
        return {Family::Change, static_cast<int>(kind), {}, object, {}, {}, {}, {}, {}};
    }
    static Event Drawn(const Index& view, const Index& object, EEventsQuillDataChange kind) {
        return {Family::QuillData, static_cast<int>(kind), view, object, {}, {}, {}, {}, {}};
    }
    static Event Connected(const Index& parent, const Index& object, EEventsConnectivityChange kind) {
        return {Family::Connectivity, static_cast<int>(kind), parent, object, {}, {}, {}, {}, {}};
    }
    // `before` is the attribute as it was, or null when there was none.
    static Event SetAttribute(const Index& object, const String& name, const String& value, EAttributeType type,
                              const Attribute* before) {
        return {Family::SetAttribute, static_cast<int>(EEventsChange::SetAttribute), {}, object, name, value, type,
                before != nullptr,    before != nullptr ? before->value : String()};
    }
    static Event RemoveAttribute(const Index& object, const String& name, EAttributeType type, const String& before) {
        return {Family::RemoveAttribute,
                static_cast<int>(EEventsChange::RemoveAttribute),
                {},
                object,
                name,
                {},
                type,
                true,
                before};
    }
};

}  // namespace Orin::DesignDb
