#include "cli/progress.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "cli/console.h"
#include "cli/interruption.h"

namespace Quill::Cli {

namespace {

constexpr const char* WipeOut = "\r\x1B[K";

bool CanShow() {
    const char* const terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

// As much of the beginning of a printable text as fits in a line of the terminal.
std::string Fitting(const std::string& text) {
    winsize size = {};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) size.ws_col = 80;
    std::size_t room = size.ws_col - 1U;
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
        if (begins && room-- == 0) break;
    }
    return text.substr(0, end);
}

class Counter final : public Orin::EventObserver {
public:
    void OnAfterAdd(const Orin::Index&, const Orin::Index&, Orin::EEventsAdd, bool) override {
        m_count.fetch_add(1, std::memory_order_relaxed);
    }
    std::size_t Count() const { return m_count.load(std::memory_order_relaxed); }

private:
    std::atomic<std::size_t> m_count = 0;
};

}  // namespace

class Progress::Impl {
public:
    Impl(std::string what, Orin::ContainerT<const Orin::ISnapshot> snapshot)
        : m_what(std::move(what)), m_snapshot(std::move(snapshot)) {
        // Signals are for the threads that do the work, so that nothing goes on while their handler clears up.
        sigset_t all, before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        try {
            m_thread = std::thread([this] { Run(); });
        } catch (const std::system_error&) {
            // The work is done all the same.
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    ~Impl() {
        {
            const std::lock_guard lock(m_mutex);
            m_done = true;
        }
        m_changed.notify_one();
        if (m_thread.joinable()) m_thread.join();
    }

private:
    void Run() {
        using namespace std::chrono;
        const auto begin = steady_clock::now();
        const auto isDone = [this] { return m_done; };
        std::unique_lock lock(m_mutex);
        if (m_changed.wait_for(lock, seconds(1), isDone)) return;

        // Counting costs something, so it begins only now.
        Counter counter;
        const bool counts = m_snapshot && m_snapshot->AddEventObserver(&counter);
        {
            const AtInterruption wipeOut(AtInterruption::WriteError, WipeOut);
            do {
                const auto taken = duration_cast<seconds>(steady_clock::now() - begin).count();
                std::string line = "quill: " + m_what;
                if (counter.Count() != 0) line += fmt::format(", {} more objects", counter.Count());
                line += fmt::format(", {} s", taken);
                std::cerr << WipeOut << Fitting(Printable(line)) << std::flush;
            } while (!m_changed.wait_for(lock, milliseconds(500), isDone));
            std::cerr << WipeOut << std::flush;
        }
        if (counts) m_snapshot->RemoveEventObserver(&counter);
    }

    const std::string m_what;
    const Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_done = false;
    std::thread m_thread;
};

Progress::Progress(std::string what, Orin::ContainerT<const Orin::ISnapshot> snapshot) {
    if (CanShow()) m_impl = std::make_unique<Impl>(std::move(what), std::move(snapshot));
}

Progress::~Progress() = default;

}  // namespace Quill::Cli
