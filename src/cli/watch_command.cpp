// quill watch: a line for every change of a folder.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <optional>
#include <thread>

#include "cli/command.h"
#include "cli/console.h"
#include "config/dir_watch.h"

namespace Quill::Cli {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr microseconds Cycle = std::chrono::seconds(1);

struct WatchOptions {
    std::string folder;
    std::optional<std::uint32_t> count;
    std::optional<double> timeout;  // seconds
    bool json = false;
};

// While it lives, SIGINT and SIGTERM end the watching instead of the program. Borrows the watch. Signals that the
// program was started to ignore stay ignored.
class SignalStop {
public:
    explicit SignalStop(DirWatch& watch) {
        sigemptyset(&m_signals);
        for (const int signal : {SIGINT, SIGTERM}) {
            struct sigaction now = {};
            sigaction(signal, nullptr, &now);
            if (now.sa_handler != SIG_IGN) sigaddset(&m_signals, signal);
        }
        sigaddset(&m_signals, Farewell);
        pthread_sigmask(SIG_BLOCK, &m_signals, &m_before);
        m_thread = std::thread([this, &watch] {
            int signal = 0;
            sigwait(&m_signals, &signal);
            m_asked = true;
            watch.stopWatching();
        });
    }
    SignalStop(const SignalStop&) = delete;
    SignalStop& operator=(const SignalStop&) = delete;
    ~SignalStop() {
        pthread_kill(m_thread.native_handle(), Farewell);
        m_thread.join();
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

    bool Asked() const noexcept { return m_asked; }

private:
    static constexpr int Farewell = SIGUSR1;  // tells the thread that waits for a signal to end

    sigset_t m_signals;
    sigset_t m_before;
    std::atomic<bool> m_asked{false};
    std::thread m_thread;
};

void RequireFolder(const std::string& folder) {
    std::error_code fault;
    if (std::filesystem::is_directory(folder, fault)) return;
    throw CommandError(folder + ": " + (fault ? fault.message() : "Is no folder"));
}

void Report(const WatchOptions& options, std::uint32_t change) {
    if (options.json) {
        PrintJson({{"change", change}, {"folder", options.folder}}, Json::OneLine);
    } else {
        PrintText(Printable(options.folder) + " has changed\n");
    }
    if (!std::cout.flush()) throw CommandError("Standard output cannot be written");
}

ExitCode RunWatch(const WatchOptions& options) {
    RequireFolder(options.folder);
    const Clock::time_point start = Clock::now();
    DirWatch watch;
    watch.setDirToWatch(options.folder, "");
    const SignalStop stop(watch);
    for (std::uint32_t changes = 0; !options.count || changes < *options.count;) {
        microseconds wait = Cycle;
        if (options.timeout) {
            const std::chrono::duration<double> left =
                std::chrono::duration<double>(*options.timeout) - (Clock::now() - start);
            if (left.count() <= 0) return options.count ? NegativeAnswer : Done;
            wait =
                std::min(wait, std::chrono::ceil<microseconds>(std::min(left, std::chrono::duration<double>(Cycle))));
        }
        watch.setWatchTime(static_cast<int>(wait.count()), false, 0);
        const bool changed = watch.changed();
        if (stop.Asked()) break;
        if (!changed) continue;
        RequireFolder(options.folder);
        Report(options, ++changes);
    }
    return Done;
}

}  // namespace

void AddWatchCommand(CommandLine& line) {
    const auto options = std::make_shared<WatchOptions>();
    const Syntax command =
        line.Add("watch", "Print a line for every change of a folder",
                 "When files in it are modified, but not those in folders below. A folder that the system\n"
                 "cannot watch, such as one on a network, is taken for changed once a second: look again\n"
                 "then. Ends on SIGINT and SIGTERM; with --count and --timeout, exit code 1 says that the\n"
                 "time was over first.\n"
                 "\n"
                 "Examples:\n"
                 "  quill watch designs --count 1 --timeout 60",
                 [options] { return RunWatch(*options); });
    command.Option("DIR", options->folder, "the folder").Required();
    command.Option("--count", options->count, "end after so many changes").Between(1U, 1000000000U);
    command.Option("--timeout", options->timeout, "end after so many seconds").Between(0.0, 1e9);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
