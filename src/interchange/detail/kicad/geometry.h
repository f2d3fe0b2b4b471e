// Turns and mirrorings of symbols.
#pragma once

#include <cstdint>

#include "interchange/detail/kicad/schematic.h"
#include "orin/records.h"

namespace Quill::Interchange::Kicad {

constexpr Orin::EOrientation QuarterTurns(int degrees) noexcept {
    return static_cast<Orin::EOrientation>(((degrees / 90) % 4 + 4) % 4);
}

// From the coordinates of a symbol (y upwards) to a sheet (y downwards).
constexpr Orin::Point Flipped(const Orin::Point& point) noexcept {
    return {point.x, -point.y};
}

// Where a point of a symbol, given with y downwards, stands on the sheet: turned counter-clockwise first, then
// mirrored.
constexpr Orin::Point OnSheet(const Orin::Point& point, const Orin::Point& at, int angle, Mirror mirror) noexcept {
    Orin::Point turned = point;
    for (int turn = 0; turn < static_cast<int>(QuarterTurns(angle)); ++turn)
        turned = {turned.y, -turned.x};
    if (mirror == Mirror::AboutX) turned.y = -turned.y;
    if (mirror == Mirror::AboutY) turned.x = -turned.x;
    return {at.x + turned.x, at.y + turned.y};
}

// The same as designs have it, who mirror about the vertical axis before they turn.
constexpr Orin::CompDataQuill Placed(const Orin::Point& at, int angle, Mirror mirror) noexcept {
    Orin::CompDataQuill data;
    data.position = at;
    data.mirrored = mirror != Mirror::None;
    const int turned = mirror == Mirror::None ? angle : mirror == Mirror::AboutY ? -angle : 180 - angle;
    data.orientation = QuarterTurns(turned);
    return data;
}

}  // namespace Quill::Interchange::Kicad
