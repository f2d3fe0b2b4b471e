// Parts that several items of a schematic file have. Each reads the list that was entered last and leaves it.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "interchange/detail/kicad/schematic.h"

namespace Quill::Interchange::Kicad {

// The value that a table of names gives for a name.
template <class Value, std::size_t Count>
constexpr std::optional<Value> Named(const std::array<std::pair<std::string_view, Value>, Count>& table,
                                     std::string_view name) noexcept {
    for (const auto& [known, value] : table)
        if (known == name) return value;
    return std::nullopt;
}

struct Placement {
    Orin::Point at;
    int angle = 0;  // 0, 90, 180 or 270
};

std::string_view ReadValue(TokenReader& reader);  // (key value)
bool ReadFlag(TokenReader& reader);               // (key yes), or (key) alone
Placement ReadPlacement(TokenReader& reader);     // (at x y [angle])
Orin::Point ReadPointList(TokenReader& reader);   // (key x y)
std::vector<Orin::Point> ReadPoints(TokenReader& reader);
TextLook ReadEffects(TokenReader& reader);
Field ReadField(TokenReader& reader);
void OrderFields(std::vector<Field>& fields);  // by their numbers, when all have one
void ReadStroke(TokenReader& reader, Orin::LineStyle& style);
void ReadFill(TokenReader& reader, Orin::LineStyle& style);
std::vector<Instance> ReadInstances(TokenReader& reader);  // of an item, by project
void ReadPaths(TokenReader& reader, std::string_view project, std::vector<Instance>& instances);

// A graphic item, when the list that was entered is one; it is then left.
std::optional<Graphic> ReadGraphic(TokenReader& reader);

}  // namespace Quill::Interchange::Kicad
