#include "orin/string.h"

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace Orin {

StringT<char>::StringT(const char* text) : StringT(text != nullptr ? std::string_view(text) : std::string_view()) {}

// What follows a NUL could not be read through the C form, so a text ends there.
StringT<char>::StringT(std::string_view text) : m_rep(Make(text.substr(0, text.find('\0')), {})) {}

StringT<char> StringT<char>::operator+(const char* text) const {
    if (text == nullptr || *text == '\0') return *this;
    StringT result;
    result.m_rep = Make(View(), text);
    return result;
}

const StringT<char>::Head* StringT<char>::Make(std::string_view first, std::string_view second) {
    const std::size_t length = first.size() + second.size();
    if (length == 0) return nullptr;
    if (length >= std::numeric_limits<std::uint32_t>::max()) throw std::length_error("Orin::String");
    void* const memory = ::operator new(sizeof(Head) + length + 1);
    Head* const head = new (memory) Head{1, static_cast<std::uint32_t>(length)};
    char* const text = reinterpret_cast<char*>(head + 1);
    if (!first.empty()) std::memcpy(text, first.data(), first.size());
    if (!second.empty()) std::memcpy(text + first.size(), second.data(), second.size());
    text[length] = '\0';
    return head;
}

void StringT<char>::Free(const Head* head) noexcept {
    head->~Head();
    ::operator delete(const_cast<Head*>(head));
}

}  // namespace Orin
