// How objects are drawn, as members of a JSON object that the caller has begun.
#pragma once

#include <variant>

#include "interchange/detail/json_text.h"
#include "interchange/words.h"
#include "orin/records.h"

namespace Quill::Interchange {

// The word, or the number of a value without one.
template <class E>
void WriteWord(JsonText& json, E value) {
    const std::string_view word = WordOf(value);
    if (word.empty()) {
        json.Value(static_cast<int>(value));
    } else {
        json.Value(word);
    }
}

// A member that is left out when it has its usual value.
template <class E>
void WriteOptionalWord(JsonText& json, std::string_view key, E value, E usual) {
    if (value == usual) return;
    json.Key(key);
    WriteWord(json, value);
}

void WriteOptionalPoint(JsonText& json, std::string_view key, const Orin::Point& point);
void WriteStyle(JsonText& json, const Orin::LineStyle& style);
void WriteStyle(JsonText& json, const Orin::TextStyle& style);

inline void WriteData(JsonText&, std::monostate) {}
void WriteData(JsonText& json, const Orin::CompDataQuill& data);
void WriteData(JsonText& json, const Orin::PinDataQuill& data);
void WriteData(JsonText& json, const Orin::BusDataQuill& data);
void WriteData(JsonText& json, const Orin::GroupDataQuill& data);
void WriteData(JsonText& json, const Orin::LabelDataQuill& data);
void WriteData(JsonText& json, const Orin::NetDataQuill& data);
void WriteData(JsonText& json, const Orin::LineDataQuill& data);
void WriteData(JsonText& json, const Orin::RectDataQuill& data);
void WriteData(JsonText& json, const Orin::ArcDataQuill& data);
void WriteData(JsonText& json, const Orin::CircleDataQuill& data);
void WriteData(JsonText& json, const Orin::TextDataQuill& data);

}  // namespace Quill::Interchange
