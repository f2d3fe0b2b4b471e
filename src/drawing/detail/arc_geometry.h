// The circle that an arc is a part of.
#pragma once

#include <optional>
#include <vector>

#include "drawing/picture.h"

namespace Quill::Drawing::detail {

struct ArcCircle {
    double x = 0;  // of the centre
    double y = 0;
    double radius = 0;
    bool large = false;      // the arc is more than half of the circle
    bool clockwise = false;  // as seen on the sheet
};

// Nothing when the three points lie on one line, or so nearly that the circle leaves the picture.
std::optional<ArcCircle> CircleOf(const Arc& arc);

// The points of the arc that reach furthest to the left, right, top and bottom, as far as they are not its ends.
std::vector<Orin::Point> FarPoints(const Arc& arc);

}  // namespace Quill::Drawing::detail
