// Sets of enumeration values.
#pragma once

#include <cstdint>

namespace Orin {

// A set of enumerators by position: enumerator value e is bit 1 << e of the words. Values that do not fit into the
// words are never members; adding one changes nothing.
template <class E, unsigned Words>
class BitContainerT {
    static_assert(Words == 1, "one 32-bit word serves every enumeration of this interface");

public:
    constexpr BitContainerT() noexcept = default;
    constexpr BitContainerT(E value) noexcept { *this |= value; }

    static constexpr BitContainerT FromBits(std::uint32_t bits) noexcept {
        BitContainerT set;
        set.m_bits = bits;
        return set;
    }
    constexpr std::uint32_t Bits() const noexcept { return m_bits; }

    constexpr BitContainerT& operator|=(E value) noexcept {
        m_bits |= Bit(value);
        return *this;
    }
    constexpr BitContainerT& operator|=(const BitContainerT& other) noexcept {
        m_bits |= other.m_bits;
        return *this;
    }
    friend constexpr BitContainerT operator|(BitContainerT a, const BitContainerT& b) noexcept { return a |= b; }

    constexpr bool Contains(E value) const noexcept { return (m_bits & Bit(value)) != 0; }
    constexpr bool Intersects(const BitContainerT& other) const noexcept { return (m_bits & other.m_bits) != 0; }
    constexpr bool IsEmpty() const noexcept { return m_bits == 0; }

    friend constexpr bool operator==(const BitContainerT&, const BitContainerT&) noexcept = default;

private:
    static constexpr std::uint32_t Bit(E value) noexcept {
        const auto position = static_cast<std::uint32_t>(value);
        return position < 32 ? std::uint32_t{1} << position : 0;
    }

    std::uint32_t m_bits = 0;
};

}  // namespace Orin
