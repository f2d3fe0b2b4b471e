// The counting behind every id generator.
#pragma once

#include <cstdint>
#include <type_traits>

#include "ids/id_generator_result.h"
#include "ids/id_values.h"

namespace Quill::Utils::detail {

// An attribute id of a sheet: the sheet's id above, a sequence number below.
inline constexpr unsigned SequenceBits = 22;
inline constexpr std::uint32_t SequenceMask = (1U << SequenceBits) - 1;

// The last id of one kind that was handed out or seen.
template <class Kind>
struct IdCounter {
    bool initialised = false;
    std::uint32_t last = 0;

    // Covers an id that is in use. An uninitialised counter takes none.
    IdGeneratorResult Cover(const Kind& id) noexcept {
        using ECode = IdGeneratorResult::ECode;
        const std::uint32_t value = id.Value();
        if (!initialised) return ECode::NotInitialized;
        if (value == NoId) return {};
        if (value == ReservedId) return ECode::IdSpaceExhausted;
        if constexpr (std::is_same_v<Kind, AttributeId>) {
            // Sequence numbers alone are compared, so that ids that came from other sheets count as well; the id is
            // taken whole, since a symbol's next one continues it.
            if ((last & SequenceMask) < (value & SequenceMask)) last = value;
        } else {
            // 0, which means that there is no id, is never larger.
            if (last < value) last = value;
        }
        return {};
    }
};

}  // namespace Quill::Utils::detail
