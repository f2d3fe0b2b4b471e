// The text type of the database interface.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "orin/export.h"

namespace Orin {

template <class Char>
class StringT;

// An immutable narrow text of any bytes but NUL, one pointer wide. Copies share the text and allocate nothing; neither
// does an empty text. One object is used by one thread at a time; copies of it may be used by others.
template <>
class ORINPI_EXPORT StringT<char> {
public:
    // A text laid down at compile time, for constants that any static initialiser may use:
    //     constinit StringT<char>::Literal<5> literal("$$_x");  constinit String constant(literal);
    template <std::size_t Size>
    class Literal;

    constexpr StringT() noexcept = default;
    StringT(const char* text);  // null counts as ""
    explicit StringT(std::string_view text);
    template <std::size_t Size>
    constexpr StringT(const Literal<Size>& literal) noexcept : m_rep(&literal.m_head) {}

    StringT(const StringT& other) noexcept : m_rep(other.m_rep) { AddReference(); }
    StringT(StringT&& other) noexcept : m_rep(std::exchange(other.m_rep, nullptr)) {}
    constexpr ~StringT() {
        if (m_rep != nullptr) DropReference();
    }

    StringT& operator=(const StringT& other) noexcept {
        StringT copy(other);
        std::swap(m_rep, copy.m_rep);
        return *this;
    }
    StringT& operator=(StringT&& other) noexcept {
        std::swap(m_rep, other.m_rep);
        return *this;
    }
    StringT& operator=(const char* text) { return *this = StringT(text); }

    // A new text, `text` appended; null counts as "".
    StringT operator+(const char* text) const;

    // NUL-terminated; valid while this object or a copy of it holds the text.
    operator const char*() const noexcept { return m_rep != nullptr ? m_rep->Text() : ""; }
    std::string_view View() const noexcept {
        return m_rep != nullptr ? std::string_view(m_rep->Text(), m_rep->length) : std::string_view();
    }

    bool IsEmpty() const noexcept { return m_rep == nullptr || m_rep->length == 0; }
    std::size_t Length() const noexcept { return m_rep != nullptr ? m_rep->length : 0; }

    // By bytes. Against a null pointer: as against "".
    friend bool operator==(const StringT& a, const StringT& b) noexcept {
        return a.m_rep == b.m_rep || a.View() == b.View();
    }
    friend bool operator==(const StringT& a, const char* b) noexcept {
        return a.View() == (b != nullptr ? std::string_view(b) : std::string_view());
    }

private:
    // Stands in front of the characters and their NUL.
    struct Head {
        mutable std::atomic<std::uint32_t> references;  // Immortal for literals, which are never freed
        std::uint32_t length;
        const char* Text() const noexcept { return reinterpret_cast<const char*>(this + 1); }
    };
    static constexpr std::uint32_t Immortal = 0xFFFFFFFF;

    static const Head* Make(std::string_view first, std::string_view second);
    static void Free(const Head* head) noexcept;

    void AddReference() const noexcept {
        if (m_rep != nullptr && m_rep->references.load(std::memory_order_relaxed) != Immortal)
            m_rep->references.fetch_add(1, std::memory_order_relaxed);
    }
    void DropReference() const noexcept {
        if (m_rep->references.load(std::memory_order_relaxed) != Immortal &&
            m_rep->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            Free(m_rep);
    }

    const Head* m_rep = nullptr;
};

template <std::size_t Size>
class StringT<char>::Literal {
public:
    constexpr explicit Literal(const char (&text)[Size]) noexcept : m_head{Immortal, Size - 1} {
        for (std::size_t i = 0; i < Size; ++i)
            m_text[i] = text[i];
    }
    Literal(const Literal&) = delete;
    Literal& operator=(const Literal&) = delete;

private:
    friend class StringT<char>;
    Head m_head;
    char m_text[Size]{};  // directly behind the head, where Head::Text looks for it
};

// The text of the interface.
using String = StringT<char>;

}  // namespace Orin
