// What the program shows on a terminal, and what it leaves behind when a signal ends it.
#include <chrono>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>

#include "tests/cli/run_program.h"

namespace {

using namespace std::chrono_literals;

// The program on a terminal of its own.
class Terminal : public Tests::ProgramTest {
protected:
    ~Terminal() override {
        if (m_process > 0) kill(m_process, SIGKILL);
        if (m_process > 0) waitpid(m_process, nullptr, 0);
        if (m_terminal >= 0) close(m_terminal);
    }

    void Start(const std::string& arguments) {
        const std::string command = "cd '" + Path("") + "' && exec '" QUILL_PROGRAM "' " + arguments;
        winsize size{24, 60, 0, 0};
        m_process = forkpty(&m_terminal, nullptr, nullptr, &size);
        ASSERT_GE(m_process, 0);
        if (m_process > 0) return;
        setenv("TERM", "xterm", 1);
        execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    // Reads until the screen has the text, or the program ends.
    bool Shows(const std::string& text) {
        char buffer[4096];
        while (m_screen.find(text) == std::string::npos) {
            const ssize_t size = read(m_terminal, buffer, sizeof buffer);
            if (size <= 0) return false;
            m_screen.append(buffer, static_cast<std::size_t>(size));
        }
        return true;
    }
    // The status with which the program ends.
    int Wait() {
        Shows("\x01");  // never shown
        int status = -1;
        waitpid(std::exchange(m_process, -1), &status, 0);
        return status;
    }

    int m_terminal = -1;
    pid_t m_process = -1;
    std::string m_screen;
};

constexpr const char* WipeOut = "\r\x1B[K";
constexpr const char* Empty = "(kicad_sch (version 20231120) (generator \"eeschema\") (paper \"A4\") (lib_symbols))";

TEST_F(Terminal, SaysWhatTakesLongAndWipesItOut) {
    ASSERT_EQ(mkfifo(Path("slow.kicad_sch").c_str(), 0666), 0);
    Start("info slow.kicad_sch");
    ASSERT_TRUE(Shows("quill: Importing slow.kicad_sch, 1 s"));
    EXPECT_EQ(m_screen, std::string(WipeOut) + "quill: Importing slow.kicad_sch, 1 s");
    Write("slow.kicad_sch", Empty);
    EXPECT_EQ(Wait(), 0);
    const std::size_t answer = m_screen.find("slow: 1 page");  // how the answer begins
    ASSERT_NE(answer, std::string::npos) << m_screen;
    EXPECT_NE(m_screen.rfind(WipeOut, answer), std::string::npos);
    EXPECT_EQ(m_screen.find(WipeOut, answer), std::string::npos);
}

TEST_F(Terminal, SaysNothingWhereThereIsNone) {
    Write("late", Empty);
    EXPECT_EQ(
        Shell("mkfifo slow.kicad_sch; (sleep 1.2; cat late > slow.kicad_sch) & '" QUILL_PROGRAM "' info slow.kicad_sch")
            .error,
        "");
}

TEST_F(Terminal, WipesTheLineOutWhenItIsInterrupted) {
    ASSERT_EQ(mkfifo(Path("slow.kicad_sch").c_str(), 0666), 0);
    Start("info slow.kicad_sch");
    ASSERT_TRUE(Shows(", 1 s"));
    ASSERT_EQ(write(m_terminal, "\x03", 1), 1);  // Ctrl-C
    const int status = Wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_TRUE(m_screen.ends_with(WipeOut)) << m_screen;
}

// The signal comes as soon as the unfinished file is there, which is being written for some milliseconds then.
TEST_F(Terminal, LeavesNoUnfinishedFileWhenItIsEnded) {
    using Files = std::filesystem::directory_iterator;
    const std::filesystem::path folder = Path("");
    const auto isUnfinished = [](const std::filesystem::directory_entry& entry) {
        const std::string name = entry.path().filename().string();
        return name.ends_with(".tmp") || name.ends_with("-new");
    };
    int ended = 0;
    for (const char* target : {"target.json", "target.qdb"})
        for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
            SCOPED_TRACE(std::string(target) + " " + std::to_string(signal));
            Start("export '" QUILL_EXAMPLES "/vibration-recorder.json' -o " + std::string(target));
            while (std::none_of(Files(folder), Files(), isUnfinished) && !std::filesystem::exists(folder / target))
                std::this_thread::sleep_for(20us);
            kill(m_process, signal);
            const int status = Wait();
            if (!std::filesystem::exists(folder / target)) {
                ++ended;
                EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
                EXPECT_TRUE(std::filesystem::is_empty(folder));
            }
            std::filesystem::remove_all(folder);
            std::filesystem::create_directories(folder);
        }
    EXPECT_GT(ended, 0) << "the signal was always too late";
}

}  // namespace
