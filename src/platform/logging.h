// The one log call of the library.
#pragma once

#include <functional>
#include <string>

#include "platform/export.h"

namespace zolt {

class PLATFORMUTILS_EXPORT Logging {
public:
    using Sink = std::function<void(const std::string&)>;

    // Reports a failure that the caller survives but the user should learn of: one message, without a line end. It goes
    // to the installed sink, else to standard error as one line. Throws nothing; a sink that throws is ignored.
    static void FatalError(const std::string& message) noexcept;

    // Installs the receiver of messages; an empty function restores standard error. From any thread.
    static void SetSink(Sink sink);

    Logging() = delete;
};

}  // namespace zolt
