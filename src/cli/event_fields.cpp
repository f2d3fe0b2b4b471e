#include "cli/event_fields.h"

#include <optional>
#include <utility>

#include "cli/command.h"
#include "cli/json.h"
#include "interchange/index_text.h"
#include "interchange/words.h"

namespace Quill::Cli {

namespace {

[[noreturn]] void Refuse(const Json& value, const char* wanted) {
    throw CommandError(value.Text() + " is not " + wanted);
}

template <class T>
void ReadNumber(const Json& value, T& number) {
    const auto store = [&](auto read) {
        if (!std::in_range<T>(read)) Refuse(value, "a number that fits");
        number = static_cast<T>(read);
    };
    if (const auto* const withSign = value.If<std::int64_t>()) {
        store(*withSign);
    } else if (const auto* const withoutSign = value.If<std::uint64_t>()) {
        store(*withoutSign);
    } else {
        Refuse(value, "a whole number");
    }
}

const Json::List& List(const Json& value) {
    const auto* const list = value.If<Json::List>();
    if (list == nullptr) Refuse(value, "a list");
    return *list;
}

template <class E>
E WordIn(const Json& value) {
    std::string word;
    ReadField(value, word);
    const std::optional<E> known = Interchange::ValueOf<E>(word);
    if (!known) Refuse(value, "one of the known words");
    return *known;
}

}  // namespace

const Json& Member(const Json& object, const char* name) {
    if (object.If<Json::Object>() == nullptr) Refuse(object, "an object");
    const Json* const found = object.Find(name);
    if (found == nullptr) throw CommandError(std::string(name) + " is missing");
    return *found;
}

Json FieldOf(const Orin::Index& index) {
    return index.IsEmpty() ? std::string() : Interchange::IndexText(index);
}

void ReadField(const Json& value, Orin::Index& index) {
    std::string text;
    ReadField(value, text);
    const std::optional<Orin::Index> read = text.empty() ? Orin::Index() : Interchange::ParseIndex(text);
    if (!read) Refuse(value, "an index");
    index = *read;
}

Json FieldOf(const Orin::ListT<Orin::Index>& indexes) {
    Json list = Json::EmptyList();
    for (const Orin::Index& index : indexes)
        list.Add(FieldOf(index));
    return list;
}

void ReadField(const Json& value, Orin::ListT<Orin::Index>& indexes) {
    Orin::ListT<Orin::Index> read;
    for (const Json& item : List(value)) {
        Orin::Index index;
        ReadField(item, index);
        read.Append(index);
    }
    indexes = read;
}

Json FieldOf(const Orin::String& text) {
    return std::string(text.View());
}

void ReadField(const Json& value, Orin::String& text) {
    std::string read;
    ReadField(value, read);
    text = Orin::String(std::string_view(read));
}

void ReadField(const Json& value, std::string& text) {
    const auto* const read = value.If<std::string>();
    if (read == nullptr) Refuse(value, "a text");
    text = *read;
}

void ReadField(const Json& value, std::uint32_t& number) {
    ReadNumber(value, number);
}

void ReadField(const Json& value, std::int64_t& number) {
    ReadNumber(value, number);
}

void ReadField(const Json& value, int& number) {
    ReadNumber(value, number);
}

void ReadField(const Json& value, bool& flag) {
    const auto* const read = value.If<bool>();
    if (read == nullptr) Refuse(value, "true or false");
    flag = *read;
}

// ---- How a piece of a net is drawn ----

Json FieldOf(const Orin::NetDataQuill& data) {
    Json joints = Json::EmptyList();
    for (const Orin::ListSegmentsQuillJoint& joint : data.segments.joints)
        joints.Add(Json::List{joint.id, joint.position.x, joint.position.y, FieldOf(joint.attached)});
    Json segments = Json::EmptyList();
    for (const Orin::ListSegmentsQuillSegment& segment : data.segments.segments)
        segments.Add(Json::List{segment.id, segment.from, segment.to});
    return {{"id", data.objectId},
            {"joints", joints},
            {"segments", segments},
            {"width", data.style.width},
            {"pattern", Interchange::WordOf(data.style.pattern)},
            {"fill", Interchange::WordOf(data.style.fill)}};
}

void ReadField(const Json& value, Orin::NetDataQuill& data) {
    Orin::NetDataQuill read;
    ReadField(Member(value, "id"), read.objectId);
    for (const Json& item : List(Member(value, "joints"))) {
        Orin::ListSegmentsQuillJoint joint;
        const Json::List& parts = List(item);
        if (parts.size() != 4) Refuse(item, "a joint");
        ReadField(parts[0], joint.id);
        ReadField(parts[1], joint.position.x);
        ReadField(parts[2], joint.position.y);
        ReadField(parts[3], joint.attached);
        read.segments.joints.Append(joint);
    }
    for (const Json& item : List(Member(value, "segments"))) {
        Orin::ListSegmentsQuillSegment segment;
        const Json::List& parts = List(item);
        if (parts.size() != 3) Refuse(item, "a segment");
        ReadField(parts[0], segment.id);
        ReadField(parts[1], segment.from);
        ReadField(parts[2], segment.to);
        read.segments.segments.Append(segment);
    }
    ReadField(Member(value, "width"), read.style.width);
    read.style.pattern = WordIn<Orin::ELinePattern>(Member(value, "pattern"));
    read.style.fill = WordIn<Orin::EFill>(Member(value, "fill"));
    data = read;
}

}  // namespace Quill::Cli
