// Bracket styles of bus indexes ("net limiters"), and the style that labels are read in just now.
#pragma once

#include <string_view>

#include "quillutils_export.h"

namespace Quill::BusContents {

// A net limiter is an int, as projects and callers hand it on.
inline constexpr int UnknownLimiter = -1;
inline constexpr int NoLimiter = 0;      // stored as "": bus indexes stand without brackets
inline constexpr int SquareLimiter = 1;  // stored as "[]"
inline constexpr int RoundLimiter = 2;   // stored as "()"

// The limiter that a project stores as `text`; UnknownLimiter for any text but the three above.
QUILLUTILS_EXPORT int NetLimiterFromText(std::string_view text) noexcept;

// The limiter in force for the whole process, from which a label expander takes its own when it is given none.
// NoLimiter until a NetLimiterScope changes it. Any thread.
QUILLUTILS_EXPORT int CurrentNetLimiter() noexcept;

// Puts another limiter in force from its construction to its destruction.
//
// Every scope restores what it found, so scopes must end in the reverse order of their beginning, in the process as a
// whole: threads take turns with them. Work that several threads do at once hands its limiter to the expander instead.
class QUILLUTILS_EXPORT NetLimiterScope {
public:
    // Puts in force what `text` stands for; a text that stands for none leaves the current limiter as it is.
    explicit NetLimiterScope(std::string_view text) noexcept;
    ~NetLimiterScope();

    // What this scope put or left in force, whatever other threads have made of it since.
    int Limiter() const noexcept { return m_limiter; }

    NetLimiterScope(const NetLimiterScope&) = delete;
    NetLimiterScope& operator=(const NetLimiterScope&) = delete;

private:
    int m_saved;
    int m_limiter;
};

}  // namespace Quill::BusContents
