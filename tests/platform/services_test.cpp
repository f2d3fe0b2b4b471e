#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/logging.h"
#include "tests/support/temporary.h"

namespace zolt {
namespace {

using Dirs = std::vector<std::string>;

#ifdef _WIN32
constexpr char Separator = ';';
#else
constexpr char Separator = ':';
#endif

class WorkingDirectories : public testing::Test {
protected:
    ~WorkingDirectories() override { env::SetWDIRsProvider({}); }

    const Tests::Variable variable{"QUILL_WDIRS"};
    Dirs dirs = {"from before"};
};

TEST_F(WorkingDirectories, ComeFromTheEnvironmentInOrder) {
    // clang-format off
    struct Case { const char* why; std::string list; Dirs want; };  // the list with "|" for the platform's separator
    const Case cases[] = {
        {"not set",                         "",             {}},
        {"order and repetitions are kept",  "/z|/a b|/z",   {"/z", "/a b", "/z"}},
        {"empty elements are left out",     "||/a||/b|",    {"/a", "/b"}},
        {"separators alone",                "||",           {}},
        {"blanks and other letters belong to the name", " \xC3\xA4 |x", {" \xC3\xA4 ", "x"}},
    };
    // clang-format on
    for (Case c : cases) {
        SCOPED_TRACE(c.why);
        std::replace(c.list.begin(), c.list.end(), '|', Separator);
        variable.Set(c.list);
        EXPECT_TRUE(env::GetWDIRs(dirs));
        EXPECT_EQ(dirs, c.want);
    }
}

TEST_F(WorkingDirectories, AreTheProvidersWhileOneIsInstalled) {
    variable.Set("/environment");
    bool fails = false, throws = false;
    env::SetWDIRsProvider([&](Dirs& list) {
        list.push_back("/provider");
        if (throws) throw std::runtime_error("provider");
        return !fails;
    });
    EXPECT_TRUE(env::GetWDIRs(dirs));
    EXPECT_EQ(dirs, Dirs{"/provider"});

    dirs = {"untouched"};
    fails = true;
    EXPECT_FALSE(env::GetWDIRs(dirs));
    throws = true;
    EXPECT_THROW(env::GetWDIRs(dirs), std::runtime_error);
    EXPECT_EQ(dirs, Dirs{"untouched"});

    env::SetWDIRsProvider({});
    EXPECT_TRUE(env::GetWDIRs(dirs));
    EXPECT_EQ(dirs, Dirs{"/environment"});
}

class FatalErrorLog : public testing::Test {
protected:
    ~FatalErrorLog() override { Logging::SetSink({}); }

    static std::string StandardErrorOf(const std::string& message) {
        testing::internal::CaptureStderr();
        Logging::FatalError(message);
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(FatalErrorLog, GoesToTheSinkOrElseToStandardError) {
    EXPECT_EQ(StandardErrorOf("100% lost"), "100% lost\n");

    Dirs received;
    Logging::SetSink([&](const std::string& message) { received.push_back(message); });
    EXPECT_EQ(StandardErrorOf("caught"), "");
    EXPECT_EQ(received, Dirs{"caught"});

    Logging::SetSink([](const std::string&) { throw std::runtime_error("sink"); });
    EXPECT_EQ(StandardErrorOf("no message is lost"), "no message is lost\n");

    Logging::SetSink({});
    EXPECT_EQ(StandardErrorOf("again"), "again\n");
}

TEST_F(FatalErrorLog, SinksMayBeExchangedWhileThreadsReport) {
    constexpr int Messages = 2000;
    std::atomic<int> received{0};
    Logging::SetSink([&](const std::string&) { ++received; });
    const auto report = [] {
        for (int i = 0; i < Messages; ++i)
            Logging::FatalError("message");
    };
    std::thread first(report), second(report);
    for (int i = 0; i < Messages; ++i)
        Logging::SetSink([&](const std::string&) { ++received; });
    first.join();
    second.join();
    EXPECT_EQ(received, 2 * Messages);
}

}  // namespace
}  // namespace zolt
