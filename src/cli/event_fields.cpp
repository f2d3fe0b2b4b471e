#include "cli/event_fields.h"

#include <limits>
#include <optional>

#include "cli/command.h"
#include "interchange/index_text.h"
#include "interchange/words.h"

namespace Quill::Cli {

namespace {

[[noreturn]] void Refuse(const EventJson& value, const char* wanted) {
    throw CommandError(value.dump(-1, ' ', false, EventJson::error_handler_t::replace) + " is not " + wanted);
}

template <class T>
void ReadNumber(const EventJson& value, T& number) {
    if (!value.is_number_integer()) Refuse(value, "a whole number");
    // Numbers without a sign may be larger than the others.
    const bool fits = value.is_number_unsigned()
                          ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<T>::max())
                          : value.get<std::int64_t>() >= static_cast<std::int64_t>(std::numeric_limits<T>::min());
    if (!fits) Refuse(value, "a number that fits");
    number = value.get<T>();
}

const EventJson& List(const EventJson& value) {
    if (!value.is_array()) Refuse(value, "a list");
    return value;
}

template <class E>
E WordIn(const EventJson& value) {
    std::string word;
    ReadField(value, word);
    const std::optional<E> known = Interchange::ValueOf<E>(word);
    if (!known) Refuse(value, "one of the known words");
    return *known;
}

}  // namespace

const EventJson& Member(const EventJson& object, const char* name) {
    if (!object.is_object()) Refuse(object, "an object");
    const auto found = object.find(name);
    if (found == object.end()) throw CommandError(std::string(name) + " is missing");
    return *found;
}

EventJson FieldOf(const Orin::Index& index) {
    return index.IsEmpty() ? std::string() : Interchange::IndexText(index);
}

void ReadField(const EventJson& value, Orin::Index& index) {
    std::string text;
    ReadField(value, text);
    const std::optional<Orin::Index> read = text.empty() ? Orin::Index() : Interchange::ParseIndex(text);
    if (!read) Refuse(value, "an index");
    index = *read;
}

EventJson FieldOf(const Orin::ListT<Orin::Index>& indexes) {
    EventJson list = EventJson::array();
    for (const Orin::Index& index : indexes)
        list.push_back(FieldOf(index));
    return list;
}

void ReadField(const EventJson& value, Orin::ListT<Orin::Index>& indexes) {
    Orin::ListT<Orin::Index> read;
    for (const EventJson& item : List(value)) {
        Orin::Index index;
        ReadField(item, index);
        read.Append(index);
    }
    indexes = read;
}

EventJson FieldOf(const Orin::String& text) {
    return std::string(text.View());
}

void ReadField(const EventJson& value, Orin::String& text) {
    std::string read;
    ReadField(value, read);
    text = Orin::String(std::string_view(read));
}

void ReadField(const EventJson& value, std::string& text) {
    if (!value.is_string()) Refuse(value, "a text");
    text = value.get<std::string>();
}

void ReadField(const EventJson& value, std::uint32_t& number) {
    ReadNumber(value, number);
}

void ReadField(const EventJson& value, std::int64_t& number) {
    ReadNumber(value, number);
}

void ReadField(const EventJson& value, int& number) {
    ReadNumber(value, number);
}

void ReadField(const EventJson& value, bool& flag) {
    if (!value.is_boolean()) Refuse(value, "true or false");
    flag = value.get<bool>();
}

// ---- How a piece of a net is drawn ----

EventJson FieldOf(const Orin::NetDataQuill& data) {
    EventJson joints = EventJson::array();
    for (const Orin::ListSegmentsQuillJoint& joint : data.segments.joints)
        joints.push_back({joint.id, joint.position.x, joint.position.y, FieldOf(joint.attached)});
    EventJson segments = EventJson::array();
    for (const Orin::ListSegmentsQuillSegment& segment : data.segments.segments)
        segments.push_back({segment.id, segment.from, segment.to});
    return {{"id", data.objectId},
            {"joints", joints},
            {"segments", segments},
            {"width", data.style.width},
            {"pattern", Interchange::WordOf(data.style.pattern)},
            {"fill", Interchange::WordOf(data.style.fill)}};
}

void ReadField(const EventJson& value, Orin::NetDataQuill& data) {
    Orin::NetDataQuill read;
    ReadField(Member(value, "id"), read.objectId);
    for (const EventJson& item : List(Member(value, "joints"))) {
        Orin::ListSegmentsQuillJoint joint;
        if (List(item).size() != 4) Refuse(item, "a joint");
        ReadField(item[0], joint.id);
        ReadField(item[1], joint.position.x);
        ReadField(item[2], joint.position.y);
        ReadField(item[3], joint.attached);
        read.segments.joints.Append(joint);
    }
    for (const EventJson& item : List(Member(value, "segments"))) {
        Orin::ListSegmentsQuillSegment segment;
        if (List(item).size() != 3) Refuse(item, "a segment");
        ReadField(item[0], segment.id);
        ReadField(item[1], segment.from);
        ReadField(item[2], segment.to);
        read.segments.segments.Append(segment);
    }
    ReadField(Member(value, "width"), read.style.width);
    read.style.pattern = WordIn<Orin::ELinePattern>(Member(value, "pattern"));
    read.style.fill = WordIn<Orin::EFill>(Member(value, "fill"));
    data = read;
}

}  // namespace Quill::Cli
