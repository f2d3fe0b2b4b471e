// Seconds since 1970 taken apart into calendar fields, and calendar fields written as text.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace Quill::Text {

// The fields of that second in UTC. Every 32-bit value has some, negative ones too.
std::tm UtcFields(std::int32_t seconds) noexcept;

// The fields of that second in the time zone of the process, negative values included; nothing when the system knows
// none. Safe on any thread.
std::optional<std::tm> LocalFields(std::int32_t seconds) noexcept;

// `fields` in a format of strftime; empty when the result is empty or longer than 127 bytes.
std::string FormatFields(const std::tm& fields, const char* format);

// The system clock. Beyond the 32-bit range it stays at the last second of the range.
std::int32_t SecondsNow() noexcept;

}  // namespace Quill::Text
