// Numbers from any text: what is read stays inside the text, and what is written is read back.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "text/number.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

template <class T>
void Check(std::string_view text, Quill::Text::ParsedNumber<T> (*parse)(std::string_view) noexcept) {
    const Quill::Text::ParsedNumber<T> number = parse(text);
    Require(number.length <= text.size());
    Require((number.length == 0) == (number.status == Quill::Text::NumberStatus::NoNumber));

    const std::string written = Quill::Text::Render(number.value);
    const Quill::Text::ParsedNumber<T> again = parse(written);
    Require(again.Ok() && again.value == number.value && again.length == written.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Check<std::int32_t>(text, Quill::Text::ParseInt32);
    Check<std::int64_t>(text, Quill::Text::ParseInt64);
    Check<std::uint32_t>(text, Quill::Text::ParseUInt32);
    Check<std::uint64_t>(text, Quill::Text::ParseUInt64);
    Require(Quill::Text::ParseDouble(text).length <= text.size());
    return 0;
}
