// Indexes as a design's text has them: "comp:12", "group:3:7", "200:1:5".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orin/index.h"

namespace Quill::Interchange {

std::string IndexText(const Orin::Index& index);

// Nothing for a text of another form, or with a part that does not fit.
std::optional<Orin::Index> ParseIndex(std::string_view text) noexcept;

}  // namespace Quill::Interchange
