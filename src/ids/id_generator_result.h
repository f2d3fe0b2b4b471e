// What became of an operation of an id generator.
#pragma once

namespace Quill::Utils {

// A value: success, or why there is none.
struct IdGeneratorResult {
    enum class ECode : int {
        Ok = 0,
        NotSupported = 1,      // this kind of generator has no such Init
        NotInitialized = 2,    // no Init succeeded
        IdSpaceExhausted = 3,  // no id is left, or the id to cover is the reserved one
        NoSheetId = 4,         // the sheet has no id that can be read
        DatabaseError = 5,     // a database operation failed inside Init
    };

    constexpr IdGeneratorResult() noexcept = default;
    constexpr IdGeneratorResult(ECode outcome) noexcept : code(outcome) {}

    constexpr explicit operator bool() const noexcept { return code == ECode::Ok; }

    ECode code = ECode::Ok;
};

}  // namespace Quill::Utils
