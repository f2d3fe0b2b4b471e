#include "drawing/detail/arc_geometry.h"

#include <cmath>

namespace Quill::Drawing::detail {

namespace {

using Orin::Point;

struct Vector {
    double x = 0;
    double y = 0;
};

Vector Between(const Point& from, const Point& to) {
    return {static_cast<double>(to.x - from.x), static_cast<double>(to.y - from.y)};
}

double Cross(const Vector& a, const Vector& b) {
    return a.x * b.y - a.y * b.x;
}

double Square(const Vector& a) {
    return a.x * a.x + a.y * a.y;
}

}  // namespace

std::optional<ArcCircle> CircleOf(const Arc& arc) {
    const Vector toMiddle = Between(arc.start, arc.middle);
    const Vector toEnd = Between(arc.start, arc.end);
    const double twice = 2 * Cross(toMiddle, toEnd);
    if (twice == 0) return {};
    const Vector centre{(toEnd.y * Square(toMiddle) - toMiddle.y * Square(toEnd)) / twice,
                        (toMiddle.x * Square(toEnd) - toEnd.x * Square(toMiddle)) / twice};
    ArcCircle circle;
    circle.x = static_cast<double>(arc.start.x) + centre.x;
    circle.y = static_cast<double>(arc.start.y) + centre.y;
    circle.radius = std::sqrt(Square(centre));
    if (!(circle.radius < static_cast<double>(MostCoordinate))) return {};
    circle.clockwise = twice > 0;
    // The middle point and the centre lie on one side of the line between the ends.
    circle.large = (Cross(toEnd, toMiddle) > 0) == (Cross(toEnd, centre) > 0);
    return circle;
}

std::vector<Point> FarPoints(const Arc& arc) {
    std::vector<Point> points;
    const std::optional<ArcCircle> circle = CircleOf(arc);
    if (!circle) return points;
    const Vector chord = Between(arc.start, arc.end);
    const bool side = Cross(chord, Between(arc.start, arc.middle)) > 0;
    for (const Vector direction : {Vector{1, 0}, Vector{-1, 0}, Vector{0, 1}, Vector{0, -1}}) {
        const Point point = Bounded(Point{std::llround(circle->x + direction.x * circle->radius),
                                          std::llround(circle->y + direction.y * circle->radius)});
        if ((Cross(chord, Between(arc.start, point)) > 0) == side) points.push_back(point);
    }
    return points;
}

}  // namespace Quill::Drawing::detail
