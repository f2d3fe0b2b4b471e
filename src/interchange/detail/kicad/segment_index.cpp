#include "interchange/detail/kicad/segment_index.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace Quill::Interchange::Kicad {

namespace {

constexpr std::int64_t Magnitude(std::int64_t value) {
    return value < 0 ? -value : value;
}

// The main axis is the one along which a line runs faster; so what is computed from a step along it never exceeds the
// coordinates themselves.
constexpr bool MainAxisIsX(Orin::Point step) {
    return Magnitude(step.x) >= Magnitude(step.y);
}

constexpr std::int64_t FloorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

}  // namespace

Orin::Point SegmentIndex::StepOf(const Segment& segment) {
    Orin::Point step{segment.to.x - segment.from.x, segment.to.y - segment.from.y};
    const std::int64_t divisor = std::gcd(step.x, step.y);
    step = {step.x / divisor, step.y / divisor};
    return (MainAxisIsX(step) ? step.x : step.y) < 0 ? Orin::Point{-step.x, -step.y} : step;
}

Orin::Point SegmentIndex::BaseOf(Orin::Point point, Orin::Point step) {
    const std::int64_t steps = MainAxisIsX(step) ? FloorDivide(point.x, step.x) : FloorDivide(point.y, step.y);
    return {point.x - steps * step.x, point.y - steps * step.y};
}

std::int64_t SegmentIndex::Along(Orin::Point point, Orin::Point step) {
    return MainAxisIsX(step) ? point.x : point.y;
}

SegmentIndex::SegmentIndex(const std::vector<Segment>& segments) : m_trackOfSegment(segments.size(), NoTrack) {
    std::vector<Track> pieces;
    pieces.reserve(segments.size());
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment& segment = segments[i];
        if (segment.from == segment.to) continue;
        const Orin::Point step = StepOf(segment);
        const auto [low, high] = std::minmax({Along(segment.from, step), Along(segment.to, step)});
        pieces.push_back({{step, BaseOf(segment.from, step)}, low, high, static_cast<std::uint32_t>(i)});
    }
    std::sort(pieces.begin(), pieces.end(), [](const Track& a, const Track& b) {
        return std::tie(a.line, a.low, a.number) < std::tie(b.line, b.low, b.number);
    });
    // Until they are numbered, tracks bear the place of their first segment.
    std::vector<std::size_t> trackOfPiece;
    trackOfPiece.reserve(pieces.size());
    for (const Track& piece : pieces) {
        if (m_tracks.empty() || m_tracks.back().line != piece.line || m_tracks.back().high < piece.low) {
            m_tracks.push_back(piece);
        } else {
            m_tracks.back().high = std::max(m_tracks.back().high, piece.high);
            m_tracks.back().number = std::min(m_tracks.back().number, piece.number);
        }
        trackOfPiece.push_back(m_tracks.size() - 1);
    }
    std::vector<std::size_t> order(m_tracks.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [this](std::size_t a, std::size_t b) { return m_tracks[a].number < m_tracks[b].number; });
    for (std::size_t i = 0; i < order.size(); ++i)
        m_tracks[order[i]].number = static_cast<std::uint32_t>(i);
    for (std::size_t i = 0; i < pieces.size(); ++i)
        m_trackOfSegment[pieces[i].number] = m_tracks[trackOfPiece[i]].number;

    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Segment& segment = segments[pieces[i].number];
        const auto [left, right] = std::minmax({segment.from.x, segment.to.x});
        const auto [bottom, top] = std::minmax({segment.from.y, segment.to.y});
        if (i == 0 || pieces[i].line.step != pieces[i - 1].line.step) {
            m_directions.push_back({trackOfPiece[i], 0, {left, bottom}, {right, top}});
        }
        Direction& direction = m_directions.back();
        direction.end = trackOfPiece[i] + 1;
        direction.lowest = {std::min(direction.lowest.x, left), std::min(direction.lowest.y, bottom)};
        direction.highest = {std::max(direction.highest.x, right), std::max(direction.highest.y, top)};
    }
}

std::vector<SegmentIndex::Hit> SegmentIndex::Find(const std::vector<Orin::Point>& points) const {
    std::vector<Hit> hits;
    for (const Direction& direction : m_directions) {
        const Orin::Point step = m_tracks[direction.begin].line.step;
        const auto begin = m_tracks.begin() + static_cast<std::ptrdiff_t>(direction.begin);
        const auto end = m_tracks.begin() + static_cast<std::ptrdiff_t>(direction.end);
        auto point = std::lower_bound(points.begin(), points.end(), direction.lowest, Before);
        for (; point != points.end() && point->x <= direction.highest.x; ++point) {
            if (point->y < direction.lowest.y || point->y > direction.highest.y) continue;
            const Line line{step, BaseOf(*point, step)};
            const std::int64_t along = Along(*point, step);
            // The last track of the line that begins before the point, or at it.
            auto track = std::upper_bound(begin, end, along, [&line](std::int64_t at, const Track& other) {
                return std::tie(line, at) < std::tie(other.line, other.low);
            });
            if (track == begin || (--track)->line != line || track->high < along) continue;
            hits.push_back({static_cast<std::uint32_t>(point - points.begin()), track->number});
        }
    }
    std::sort(hits.begin(), hits.end());
    return hits;
}

}  // namespace Quill::Interchange::Kicad
