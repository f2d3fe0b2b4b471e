// How the failures of database reads are judged when a design is walked.
#pragma once

#include <algorithm>

#include "orin/result.h"

namespace Quill::Utils {

// The codes that say that there is no such object or value: a reader goes on as if nothing had been there.
inline constexpr Orin::EErrorCode AbsentCodes[] = {
    Orin::EErrorCode::ObjectNotFound, Orin::EErrorCode::AttributeNotFound, Orin::EErrorCode::ViewDataNotFound,
    Orin::EErrorCode::NoValue,        Orin::EErrorCode::NotInHierarchy,
};

// Throws every failure.
inline void Require(const Orin::Result& result) {
    if (!result) throw result;
}

// Whether the read gave something: false for absence. Throws every other failure.
inline bool Present(const Orin::Result& result) {
    if (result) return true;
    const bool absent = std::any_of(std::begin(AbsentCodes), std::end(AbsentCodes), [&](Orin::EErrorCode code) {
        return static_cast<int>(code) == result.GetErrorCode();
    });
    if (!absent) throw result;
    return false;
}

}  // namespace Quill::Utils
