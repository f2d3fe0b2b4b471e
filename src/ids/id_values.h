// The four kinds of ids that the graphics of a sheet or symbol carry, each a type of its own so that none is taken for
// another.
#pragma once

#include <compare>
#include <cstdint>

#include "quillutils_export.h"

namespace Quill::Utils {

inline constexpr std::uint32_t NoId = 0xFFFFFFFF;        // of every kind
inline constexpr std::uint32_t ReservedId = 0xFFFFFFFE;  // of every kind: no id that a record carries counts as used

// A 32-bit id as records carry it. Every number can be held; what it means is the kind's affair.
template <class Kind>
class IdValue {
public:
    constexpr IdValue() noexcept = default;  // NoId
    constexpr explicit IdValue(std::uint32_t value) noexcept : m_value(value) {}

    constexpr std::uint32_t Value() const noexcept { return m_value; }

    friend constexpr bool operator==(const IdValue&, const IdValue&) noexcept = default;
    friend constexpr auto operator<=>(const IdValue&, const IdValue&) noexcept = default;

private:
    std::uint32_t m_value = NoId;
};

// Of an item: a component, net, bus, label, drawn attribute, text, shape or pin. 0, too, means that it has none.
class QUILLUTILS_EXPORT ObjectId : public IdValue<ObjectId> {
public:
    using IdValue::IdValue;
};

// Of a drawn attribute, beside its object id. On a sheet bits 31 to 22 are the sheet's id and bits 21 to 0 a sequence
// number; on a symbol it is a plain number. 0 is an id like any other.
class QUILLUTILS_EXPORT AttributeId : public IdValue<AttributeId> {
public:
    using IdValue::IdValue;
};

// Of a joint of a net or bus. 0, too, means that it has none.
class QUILLUTILS_EXPORT JointId : public IdValue<JointId> {
public:
    using IdValue::IdValue;
};

// Of a segment of a net or bus. 0, too, means that it has none.
class QUILLUTILS_EXPORT SegmentId : public IdValue<SegmentId> {
public:
    using IdValue::IdValue;
};

}  // namespace Quill::Utils
