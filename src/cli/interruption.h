// What is put right when the user, or the system, ends the program with a signal.
#pragma once

#include <cstddef>
#include <string>

namespace Quill::Cli {

// While one lives, SIGHUP, SIGINT and SIGTERM end the program as they would, but `clean` is called with `text` first. A
// signal that was ignored when the program began stays ignored. May be made and destroyed on any thread.
class AtInterruption {
public:
    // It is called in a signal handler, which may use little: see signal-safety(7).
    using Clean = void (*)(const char* text);

    // Ways to clean.
    static void RemoveFile(const char* path) noexcept;
    static void WriteError(const char* text) noexcept;  // to standard error

    // Does nothing when too many live already.
    AtInterruption(Clean clean, std::string text);
    AtInterruption(const AtInterruption&) = delete;
    AtInterruption& operator=(const AtInterruption&) = delete;
    ~AtInterruption();

private:
    const std::string m_text;
    const std::size_t m_slot;
};

}  // namespace Quill::Cli
