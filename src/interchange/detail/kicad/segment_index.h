// Which points lie on which segments of straight lines at any angle, exactly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <vector>

#include "interchange/detail/kicad/connectivity.h"

namespace Quill::Interchange::Kicad {

// The order of points: from left to right, then by y.
constexpr bool Before(const Orin::Point& a, const Orin::Point& b) noexcept {
    return std::tie(a.x, a.y) < std::tie(b.x, b.y);
}

struct Segment {
    Orin::Point from;
    Orin::Point to;
};

// Segments, joined to tracks: those on one line that overlap, or touch at their ends, are one track. So a point lies
// on one track of each direction at most, however many segments are drawn on top of one another.
//
// Coordinates are within +-LargestCoordinate. Holds copies; not changed after construction.
class SegmentIndex {
public:
    static constexpr std::uint32_t NoTrack = NoItem;

    // O(n log n).
    explicit SegmentIndex(const std::vector<Segment>& segments);

    // The track of each segment; NoTrack for one without length, which is no more than a point. Tracks are numbered
    // by their first segment.
    const std::vector<std::uint32_t>& TrackOfSegment() const noexcept { return m_trackOfSegment; }

    struct Hit {
        std::uint32_t point;  // place in the list of points
        std::uint32_t track;

        friend bool operator==(const Hit&, const Hit&) = default;
        friend auto operator<=>(const Hit&, const Hit&) = default;
    };

    // The tracks that the points lie on, ends included, by point and track. The points are sorted by Before, each of
    // them once.
    //
    // O(p log n) for each direction that segments have, counting only points within the bounds of that direction's
    // segments: drawings have a handful of directions.
    std::vector<Hit> Find(const std::vector<Orin::Point>& points) const;

private:
    // A line through points of whole coordinates: its smallest step between two of them, which goes up along the main
    // axis, and the point of it that comes first behind 0 on that axis. Two lines are the same exactly when these are.
    struct Line {
        Orin::Point step;
        Orin::Point base;

        friend bool operator==(const Line&, const Line&) = default;
        friend bool operator<(const Line& a, const Line& b) {
            return std::tie(a.step.x, a.step.y, a.base.x, a.base.y) < std::tie(b.step.x, b.step.y, b.base.x, b.base.y);
        }
    };

    struct Track {
        Line line;
        std::int64_t low;  // along the main axis
        std::int64_t high;
        std::uint32_t number;
    };

    // All tracks of one direction.
    struct Direction {
        std::size_t begin;
        std::size_t end;
        Orin::Point lowest;  // bounds
        Orin::Point highest;
    };

    static Orin::Point StepOf(const Segment& segment);
    static Orin::Point BaseOf(Orin::Point point, Orin::Point step);
    static std::int64_t Along(Orin::Point point, Orin::Point step);

    std::vector<Track> m_tracks;  // by line, then from low to high
    std::vector<Direction> m_directions;
    std::vector<std::uint32_t> m_trackOfSegment;
};

}  // namespace Quill::Interchange::Kicad
