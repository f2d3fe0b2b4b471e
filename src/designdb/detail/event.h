// What observers are told of one edit.
#pragma once

#include "orin/enums.h"
#include "orin/records.h"

namespace Orin::DesignDb {

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
