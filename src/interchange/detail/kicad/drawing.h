// How the items of schematic files look in the views of a design.
#pragma once

#include <string_view>
#include <vector>

#include "interchange/detail/design_model.h"
#include "interchange/detail/kicad/schematic.h"

namespace Quill::Interchange::Kicad {

inline Orin::String Stored(std::string_view text) {
    return Orin::String(text);
}

// Hands out indexes, for each kind the numbers from 1.
class IndexCounter {
public:
    Orin::Index Next(Orin::EObjectType type) { return Orin::Index(type, 0, ++m_last[static_cast<std::uint8_t>(type)]); }

private:
    std::uint32_t m_last[256] = {};
};

// Texts are never upside down: half a turn only changes the side of the place on which they stand, which their
// alignment says already.
Orin::TextStyle StyleOf(const TextLook& look, int angle);

// The same for a text that turns and mirrors with its symbol. What it is aligned to stays on the side of its place on
// which the symbol has it.
Orin::TextStyle StyleOf(const TextLook& look, int angle, int symbolAngle, Mirror mirror);

// Which way the y of the items points: symbols have it upwards.
enum class Axis : std::uint8_t { Down, Up };

void Draw(const Graphic& graphic, Axis axis, IndexCounter& indexes, ViewModel& view);

void AddText(std::string_view text, const Orin::Point& at, Orin::TextStyle style, IndexCounter& indexes,
             ViewModel& view);

}  // namespace Quill::Interchange::Kicad
