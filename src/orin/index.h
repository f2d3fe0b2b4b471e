// The persistent identity of a design object.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace Orin {

// The kind of object that an index denotes: the top byte of its value. Values outside the list are legal; they denote
// objects of tools that this interface does not know.
enum class EObjectType : std::uint8_t {
    None = 0,
    Snapshot = 1,
    Block = 5,
    Comp = 7,
    Pin = 8,
    Path = 11,
    Config = 12,
    Net = 14,
    Bus = 16,
    Line = 21,
    Rect = 22,
    Arc = 23,
    Circle = 24,
    Text = 25,
    BlockView = 26,
    CompView = 27,
    BlockComp = 41,
    NetQuill = 55,
    Group = 69,
};

// A 64-bit value of three parts: 32 bits low, 24 bits middle, 8 bits top. The top byte is the object's kind; the other
// two tell objects of one kind apart. The database chooses an index once only, also after its object was deleted; who
// asks for one by its value may be given that of a deleted object.
class Index {
public:
    constexpr Index() noexcept = default;  // the empty index, value 0
    constexpr explicit Index(std::uint64_t value) noexcept : m_value(value) {}
    constexpr Index(EObjectType type, std::uint32_t middle, std::uint32_t low) noexcept
        : m_value(static_cast<std::uint64_t>(type) << 56 | (static_cast<std::uint64_t>(middle) & 0xFFFFFF) << 32 |
                  low) {}

    constexpr explicit operator std::uint64_t() const noexcept { return m_value; }
    constexpr std::uint64_t Value() const noexcept { return m_value; }

    constexpr std::uint32_t Low() const noexcept { return static_cast<std::uint32_t>(m_value); }
    constexpr std::uint32_t Middle() const noexcept { return static_cast<std::uint32_t>(m_value >> 32) & 0xFFFFFF; }
    constexpr std::uint32_t Top() const noexcept { return static_cast<std::uint32_t>(m_value >> 56); }

    constexpr bool IsEmpty() const noexcept { return m_value == 0; }
    constexpr EObjectType GetType() const noexcept { return static_cast<EObjectType>(m_value >> 56); }

    constexpr bool operator==(std::uint64_t value) const noexcept { return m_value == value; }
    friend constexpr bool operator==(const Index&, const Index&) noexcept = default;
    friend constexpr auto operator<=>(const Index& a, const Index& b) noexcept { return a.m_value <=> b.m_value; }

private:
    std::uint64_t m_value = 0;
};

// Tells snapshots of all projects of one process apart.
class GIndex {
public:
    constexpr GIndex() noexcept = default;  // of no snapshot
    constexpr explicit GIndex(std::uint64_t value) noexcept : m_value(value) {}
    constexpr std::uint64_t Value() const noexcept { return m_value; }
    friend constexpr bool operator==(const GIndex&, const GIndex&) noexcept = default;

private:
    std::uint64_t m_value = 0;
};

}  // namespace Orin

template <>
struct std::hash<Orin::Index> {
    // Indexes of one kind are consecutive numbers, so the bits are mixed to spread them over the buckets.
    std::size_t operator()(const Orin::Index& index) const noexcept {
        const std::uint64_t mixed = index.Value() * 0x9E3779B97F4A7C15ULL;
        return static_cast<std::size_t>(mixed ^ mixed >> 32);
    }
};
