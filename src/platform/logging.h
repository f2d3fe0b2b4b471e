// The one log call of the library.
#pragma once

#include <functional>
#include <string>

#include "platform/export.h"

namespace zolt {

// Static operations only; any thread may call.
class PLATFORMUTILS_EXPORT Logging {
public:
    using Sink = std::function<void(const std::string&)>;

    // Reports a failure that the caller survives but the user should learn of: one message, without a line end. It goes
    // to the installed sink, else to standard error as one line; also there when the sink throws, so that no message is
    // lost. Throws nothing. A sink is called on the reporting thread, by several at once, and with no lock held.
    static void FatalError(const std::string& message) noexcept;

    // Installs the receiver of messages; an empty function restores standard error. From any thread; a report that is
    // under way finishes with the earlier one.
    static void SetSink(Sink sink);

    Logging() = delete;
};

}  // namespace zolt
