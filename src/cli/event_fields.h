// Arguments of observers as JSON and back.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "cli/json.h"
#include "orin/orin.h"

namespace Quill::Cli {

Json FieldOf(const Orin::Index& index);
Json FieldOf(const Orin::ListT<Orin::Index>& indexes);
Json FieldOf(const Orin::String& text);
Json FieldOf(const Orin::NetDataQuill& data);
inline Json FieldOf(const std::string& text) {
    return text;
}
inline Json FieldOf(std::uint32_t number) {
    return number;
}
inline Json FieldOf(bool flag) {
    return flag;
}
template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
Json FieldOf(E kind) {
    return static_cast<int>(kind);
}

// The other way. Each throws a CommandError when the value is of another kind or does not fit.
void ReadField(const Json& value, Orin::Index& index);
void ReadField(const Json& value, Orin::ListT<Orin::Index>& indexes);
void ReadField(const Json& value, Orin::String& text);
void ReadField(const Json& value, Orin::NetDataQuill& data);
void ReadField(const Json& value, std::string& text);
void ReadField(const Json& value, std::uint32_t& number);
void ReadField(const Json& value, std::int64_t& number);
void ReadField(const Json& value, int& number);
void ReadField(const Json& value, bool& flag);
template <class E, class = std::enable_if_t<std::is_enum_v<E>>, class = void>
void ReadField(const Json& value, E& kind) {
    int number = 0;
    ReadField(value, number);
    kind = static_cast<E>(number);
}

// The member of an object. Throws a CommandError when it is missing.
const Json& Member(const Json& object, const char* name);

}  // namespace Quill::Cli
