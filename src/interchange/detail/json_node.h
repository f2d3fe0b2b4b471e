// A JSON value with its place, and what is read out of it. Everything that does not fit throws a DesignJsonFault.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "interchange/detail/design_model.h"
#include "interchange/words.h"

namespace Quill::Interchange {

using Json = nlohmann::json;

struct Node {
    const Json& value;
    const Place& place;
};

std::int64_t ReadWhole(const Node& node, std::int64_t smallest, std::int64_t largest);
bool ReadTruth(const Node& node);
Orin::String ReadText(const Node& node);
// An index; the empty one only where it is `free`.
Orin::Index ReadIndex(const Node& node, bool free = false);
Orin::Point ReadPoint(const Node& node);

template <class Integer>
Integer ReadNumber(const Node& node) {
    return static_cast<Integer>(
        ReadWhole(node, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
}

// A word, or a number that the enumeration can hold.
template <class E>
E ReadWord(const Node& node) {
    if (node.value.is_string()) {
        const std::optional<E> value = ValueOf<E>(node.value.get_ref<const std::string&>());
        if (value) return *value;
        std::string known;
        for (const auto& entry : Words<E>::Table)
            known.append(known.empty() ? "" : ", ").append(entry.second);
        Fail(node.place, "is none of the words " + known);
    }
    if (!node.value.is_number_integer()) Fail(node.place, "is neither a word nor a number");
    return static_cast<E>(ReadNumber<std::underlying_type_t<E>>(node));
}

// Calls read(node) for each element of an array.
template <class Read>
void ReadEach(const Node& node, Read&& read) {
    if (!node.value.is_array()) Fail(node.place, "is not a list");
    std::size_t position = 0;
    for (const Json& element : node.value) {
        const Place place = node.place.At(position++);
        read(Node{element, place});
    }
}

// The elements of an array that has from `smallest` to `largest` of them.
void ExpectLength(const Node& node, std::size_t smallest, std::size_t largest);

// The members of an object, none but those listed.
class Members {
public:
    Members(const Node& node, std::initializer_list<std::string_view> known);

    // Calls read(node) with the member when it is there.
    template <class Read>
    void With(const char* name, Read&& read) const {
        const auto found = m_node.value.find(name);
        if (found == m_node.value.end()) return;
        const Place place = m_node.place.Member(name);
        read(Node{*found, place});
    }
    template <class Read>
    void Require(const char* name, Read&& read) const {
        if (!m_node.value.contains(name)) Fail(m_node.place, std::string("lacks \"") + name + '"');
        With(name, read);
    }

    void Into(const char* name, Orin::String& text) const {
        With(name, [&](const Node& node) { text = ReadText(node); });
    }
    void Into(const char* name, bool& truth) const {
        With(name, [&](const Node& node) { truth = ReadTruth(node); });
    }
    void Into(const char* name, Orin::Index& index) const {
        With(name, [&](const Node& node) { index = ReadIndex(node); });
    }
    void Into(const char* name, Orin::Point& point) const {
        With(name, [&](const Node& node) { point = ReadPoint(node); });
    }
    void Into(const char* name, Indexes& indexes) const;
    template <std::integral Integer>
    void Into(const char* name, Integer& number) const {
        With(name, [&](const Node& node) { number = ReadNumber<Integer>(node); });
    }
    template <class E>
    void IntoWord(const char* name, E& value) const {
        With(name, [&](const Node& node) { value = ReadWord<E>(node); });
    }

private:
    Node m_node;
};

// ---- Objects of the document, in model_reader.cpp. ----

Attributes ReadAttributes(const Node& node);
GroupModel ReadGroup(const Node& node);
CompModel ReadComp(const Node& node);
NetModel ReadNet(const Node& node);
BusModel ReadBus(const Node& node);
ConfigModel ReadConfig(const Node& node);
std::vector<Orin::DesignDb::DrawingInfo> ReadDrawn(const Node& node);
Orin::BlockTypes ReadBlockTypes(const Node& node);

}  // namespace Quill::Interchange
