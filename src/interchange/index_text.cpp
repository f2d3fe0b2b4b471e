#include "interchange/index_text.h"

#include <algorithm>

#include "interchange/words.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange {

namespace {

// A number of digits alone, up to `largest`.
std::optional<std::uint32_t> ParsePart(std::string_view text, std::uint32_t largest) noexcept {
    if (text.empty() || !std::all_of(text.begin(), text.end(), Text::IsDigit)) return std::nullopt;
    const Text::ParsedNumber<std::uint32_t> number = Text::ParseUInt32(text);
    if (!number.Ok() || number.value > largest) return std::nullopt;
    return number.value;
}

}  // namespace

std::string IndexText(const Orin::Index& index) {
    std::string text(WordOf(index.GetType()));
    if (text.empty()) Text::AppendNumber(text, index.Top());
    if (index.Middle() != 0) {
        text += ':';
        Text::AppendNumber(text, index.Middle());
    }
    text += ':';
    Text::AppendNumber(text, index.Low());
    return text;
}

std::optional<Orin::Index> ParseIndex(std::string_view text) noexcept {
    const std::size_t first = text.find(':');
    if (first == text.npos) return std::nullopt;
    const std::size_t last = text.rfind(':');
    const std::string_view kind = text.substr(0, first);
    std::optional<Orin::EObjectType> type = ValueOf<Orin::EObjectType>(kind);
    if (const std::optional<std::uint32_t> number = ParsePart(kind, 0xFF))
        type = static_cast<Orin::EObjectType>(*number);
    const std::optional<std::uint32_t> middle =
        last == first ? std::uint32_t{0} : ParsePart(text.substr(first + 1, last - first - 1), 0xFFFFFF);
    const std::optional<std::uint32_t> low = ParsePart(text.substr(last + 1), 0xFFFFFFFF);
    if (!type || !middle || !low) return std::nullopt;
    return Orin::Index(*type, *middle, *low);
}

}  // namespace Quill::Interchange
