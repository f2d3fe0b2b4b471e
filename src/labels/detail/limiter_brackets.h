// The table of net limiters.
#pragma once

#include <array>
#include <string_view>

#include "labels/net_limiter.h"

namespace Quill::BusContents::detail {

struct LimiterBrackets {
    int limiter;
    std::string_view text;  // empty, or the opening and the closing bracket

    constexpr bool None() const noexcept { return text.empty(); }
    constexpr char Open() const noexcept { return text[0]; }
    constexpr char Close() const noexcept { return text[1]; }
};

inline constexpr std::array<LimiterBrackets, 3> LimiterTable{{
    {NoLimiter, ""},
    {SquareLimiter, "[]"},
    {RoundLimiter, "()"},
}};

// The brackets of `limiter`; those of NoLimiter for a value that is no limiter.
constexpr LimiterBrackets BracketsOf(int limiter) noexcept {
    for (const LimiterBrackets& row : LimiterTable) {
        if (row.limiter == limiter) return row;
    }
    return LimiterTable[0];
}

}  // namespace Quill::BusContents::detail
