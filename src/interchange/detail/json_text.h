// Puts JSON text together, laid out for people: what belongs to one object stands on one line, lists of objects have a
// line for each.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

#include "orin/index.h"
#include "orin/string.h"
#include "text/number.h"

namespace Quill::Interchange {

// The caller opens and closes in pairs and gives a key before each value of an object. Values that are the format's
// defaults are left out by the members that begin with Optional.
class JsonText {
public:
    explicit JsonText(std::string& out) : m_out(out) {}

    void BeginObject() { Open('{', false); }
    void EndObject() { Close('}'); }
    // `lines`: each element on a line of its own.
    void BeginArray(bool lines = false) { Open('[', lines); }
    void EndArray() { Close(']'); }

    void Key(std::string_view key);
    // A key at the beginning of a line, for what is long.
    void KeyOnNewLine(std::string_view key);

    // Bytes that are not UTF-8 give {"hex": ...}.
    void Value(std::string_view text);
    void Value(const Orin::String& text) { Value(text.View()); }
    void Value(const Orin::Index& index);
    template <std::integral T>
    void Value(T value) {
        if constexpr (std::same_as<T, bool>) {
            Raw(value ? "true" : "false");
        } else {
            Raw(Text::Render(value));
        }
    }

    template <class T>
    void Member(std::string_view key, const T& value) {
        Key(key);
        Value(value);
    }
    void OptionalMember(std::string_view key, const Orin::String& text) {
        if (!text.IsEmpty()) Member(key, text);
    }
    void OptionalMember(std::string_view key, const Orin::Index& index) {
        if (!index.IsEmpty()) Member(key, index);
    }
    template <std::integral T>
    void OptionalMember(std::string_view key, T value) {
        if (value != T{}) Member(key, value);
    }

private:
    struct Level {
        bool lines = false;
        bool empty = true;
    };

    void Open(char bracket, bool lines);
    void Close(char bracket);
    // What stands between the value before and the one to come.
    void Separate(bool newLine);
    void BeginValue();
    void NewLine();
    void Raw(std::string_view text);
    void Quote(std::string_view text);

    std::string& m_out;
    std::vector<Level> m_levels;
    bool m_afterKey = false;
};

}  // namespace Quill::Interchange
