#include "cli/interruption.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>
#include <utility>

#include <unistd.h>

namespace Quill::Cli {

namespace {

constexpr int Signals[] = {SIGHUP, SIGINT, SIGTERM};

// A signal handler may use neither locks nor memory management, so what it does stands ready in a table.
struct Slot {
    std::atomic<const char*> text = nullptr;  // null: free
    AtInterruption::Clean clean = nullptr;
};
Slot slots[8];
static_assert(std::atomic<const char*>::is_always_lock_free);

std::mutex mutex;  // of the use of slots, and of what follows
std::size_t used = 0;
struct sigaction before[std::size(Signals)];

extern "C" void OnSignal(int signal) {
    for (const Slot& slot : slots)
        if (const char* const text = slot.text.load(); text != nullptr) slot.clean(text);
    // It is held back until this returns, and then ends the process as if nobody had listened.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void Listen() {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    sigfillset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(Signals); ++i) {
        sigaction(Signals[i], nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN) sigaction(Signals[i], &action, nullptr);
    }
}

void StopListening() {
    for (std::size_t i = 0; i < std::size(Signals); ++i)
        sigaction(Signals[i], &before[i], nullptr);
}

// The slot that it took; one behind the last when there was none.
std::size_t Enter(AtInterruption::Clean clean, const char* text) {
    const std::lock_guard lock(mutex);
    std::size_t at = 0;
    while (at < std::size(slots) && slots[at].text.load() != nullptr)
        ++at;
    if (at == std::size(slots)) return at;
    slots[at].clean = clean;
    slots[at].text.store(text);
    if (used++ == 0) Listen();
    return at;
}

}  // namespace

void AtInterruption::RemoveFile(const char* path) noexcept {
    unlink(path);
}

void AtInterruption::WriteError(const char* text) noexcept {
    if (write(STDERR_FILENO, text, std::strlen(text)) < 0) {
        // There is nobody left to tell.
    }
}

AtInterruption::AtInterruption(Clean clean, std::string text)
    : m_text(std::move(text)), m_slot(Enter(clean, m_text.c_str())) {}

AtInterruption::~AtInterruption() {
    if (m_slot == std::size(slots)) return;
    const std::lock_guard lock(mutex);
    slots[m_slot].text.store(nullptr);
    if (--used == 0) StopListening();
}

}  // namespace Quill::Cli
