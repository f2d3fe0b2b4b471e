// The words that stand for enumeration values in a design's text.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "orin/records.h"

namespace Quill::Interchange {

template <class E>
struct Words;

template <class E, std::size_t Count>
using WordTable = std::array<std::pair<E, std::string_view>, Count>;

template <>
struct Words<Orin::EObjectType> {
    using E = Orin::EObjectType;
    static constexpr WordTable<E, 13> Table{{{E::Block, "block"},
                                             {E::Comp, "comp"},
                                             {E::Pin, "pin"},
                                             {E::Net, "net"},
                                             {E::Bus, "bus"},
                                             {E::Group, "group"},
                                             {E::Config, "config"},
                                             {E::NetQuill, "piece"},
                                             {E::Line, "line"},
                                             {E::Rect, "rect"},
                                             {E::Arc, "arc"},
                                             {E::Circle, "circle"},
                                             {E::Text, "text"}}};
};

template <>
struct Words<Orin::EBlockType> {
    using E = Orin::EBlockType;
    static constexpr WordTable<E, 5> Table{{{E::Symbol, "symbol"},
                                            {E::Schematic, "schematic"},
                                            {E::Board, "board"},
                                            {E::Hardware, "hardware"},
                                            {E::Drawn, "drawn"}}};
};

template <>
struct Words<Orin::ECompType> {
    using E = Orin::ECompType;
    static constexpr WordTable<E, 8> Table{{{E::Part, "part"},
                                            {E::Symbol, "symbol"},
                                            {E::Hierarchical, "hierarchical"},
                                            {E::Ripper, "ripper"},
                                            {E::Border, "border"},
                                            {E::Connector, "connector"},
                                            {E::Power, "power"},
                                            {E::Titled, "titled"}}};
};

template <>
struct Words<Orin::EGroupType> {
    using E = Orin::EGroupType;
    static constexpr WordTable<E, 3> Table{
        {{E::Sheet, "sheet"}, {E::Cluster, "cluster"}, {E::GeneratedSheet, "generatedSheet"}}};
};

template <>
struct Words<Orin::EAttributeType> {
    using E = Orin::EAttributeType;
    static constexpr WordTable<E, 3> Table{{{E::User, "user"}, {E::System, "system"}, {E::Link, "link"}}};
};

template <>
struct Words<Orin::EOrientation> {
    using E = Orin::EOrientation;
    static constexpr WordTable<E, 4> Table{
        {{E::Degrees0, "0"}, {E::Degrees90, "90"}, {E::Degrees180, "180"}, {E::Degrees270, "270"}}};
};

template <>
struct Words<Orin::EHorizontalAlign> {
    using E = Orin::EHorizontalAlign;
    static constexpr WordTable<E, 3> Table{{{E::Left, "left"}, {E::Centre, "centre"}, {E::Right, "right"}}};
};

template <>
struct Words<Orin::EVerticalAlign> {
    using E = Orin::EVerticalAlign;
    static constexpr WordTable<E, 3> Table{{{E::Bottom, "bottom"}, {E::Centre, "centre"}, {E::Top, "top"}}};
};

template <>
struct Words<Orin::ELinePattern> {
    using E = Orin::ELinePattern;
    static constexpr WordTable<E, 4> Table{
        {{E::Solid, "solid"}, {E::Dash, "dash"}, {E::Dot, "dot"}, {E::DashDot, "dashDot"}}};
};

template <>
struct Words<Orin::EFill> {
    using E = Orin::EFill;
    static constexpr WordTable<E, 3> Table{{{E::None, "none"}, {E::Outline, "outline"}, {E::Background, "background"}}};
};

// The word; empty for a value that has none.
template <class E>
constexpr std::string_view WordOf(E value) noexcept {
    for (const auto& [known, word] : Words<E>::Table)
        if (known == value) return word;
    return {};
}

template <class E>
constexpr std::optional<E> ValueOf(std::string_view word) noexcept {
    for (const auto& [value, known] : Words<E>::Table)
        if (known == word) return value;
    return std::nullopt;
}

}  // namespace Quill::Interchange
