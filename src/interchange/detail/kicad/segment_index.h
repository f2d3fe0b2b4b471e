// Which points lie on which segments of straight lines at any angle, exactly.
#pragma once

#include <cstdint>
#include <vector>

#include "interchange/detail/kicad/connectivity.h"

namespace Quill::Interchange::Kicad {

struct Segment {
    Point from;
    Point to;
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

    // The tracks that the points lie on, ends included, by point and track. The points are sorted, each of them once.
    //
    // O(p log n) for each direction that segments have, counting only points within the bounds of that direction's
    // segments: drawings have a handful of directions.
    std::vector<Hit> Find(const std::vector<Point>& points) const;

private:
    // A line through points of whole coordinates: its smallest step between two of them, which goes up along the main
    // axis, and the point of it that comes first behind 0 on that axis. Two lines are the same exactly when these are.
    struct Line {
        Point step;
        Point base;

        friend bool operator==(const Line&, const Line&) = default;
        friend auto operator<=>(const Line&, const Line&) = default;
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
        Point lowest;  // bounds
        Point highest;
    };

    static Point StepOf(const Segment& segment);
    static Point BaseOf(Point point, Point step);
    static std::int64_t Along(Point point, Point step);

    std::vector<Track> m_tracks;  // by line, then from low to high
    std::vector<Direction> m_directions;
    std::vector<std::uint32_t> m_trackOfSegment;
};

}  // namespace Quill::Interchange::Kicad
