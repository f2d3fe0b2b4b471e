// Arguments of observers as JSON and back.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include <nlohmann/json.hpp>

#include "orin/orin.h"

namespace Quill::Cli {

using EventJson = nlohmann::ordered_json;

EventJson FieldOf(const Orin::Index& index);
EventJson FieldOf(const Orin::ListT<Orin::Index>& indexes);
EventJson FieldOf(const Orin::String& text);
EventJson FieldOf(const Orin::NetDataQuill& data);
inline EventJson FieldOf(const std::string& text) {
    return text;
}
inline EventJson FieldOf(std::uint32_t number) {
    return number;
}
inline EventJson FieldOf(bool flag) {
    return flag;
}
template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
EventJson FieldOf(E kind) {
    return static_cast<int>(kind);
}

// The other way. Each throws a CommandError when the value is of another kind or does not fit.
void ReadField(const EventJson& value, Orin::Index& index);
void ReadField(const EventJson& value, Orin::ListT<Orin::Index>& indexes);
void ReadField(const EventJson& value, Orin::String& text);
void ReadField(const EventJson& value, Orin::NetDataQuill& data);
void ReadField(const EventJson& value, std::string& text);
void ReadField(const EventJson& value, std::uint32_t& number);
void ReadField(const EventJson& value, std::int64_t& number);
void ReadField(const EventJson& value, int& number);
void ReadField(const EventJson& value, bool& flag);
template <class E, class = std::enable_if_t<std::is_enum_v<E>>, class = void>
void ReadField(const EventJson& value, E& kind) {
    int number = 0;
    ReadField(value, number);
    kind = static_cast<E>(number);
}

// The member of an object. Throws a CommandError when it is missing.
const EventJson& Member(const EventJson& object, const char* name);

}  // namespace Quill::Cli
