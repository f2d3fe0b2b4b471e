// Observers that come and go while others call them, on one thread and on many.
#include <atomic>
#include <functional>
#include <future>
#include <random>
#include <stdexcept>
#include <thread>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// Does something when a label changes, or when its client is told of an error.
struct Caller final : EventObserver, ClientObserver {
    std::function<void()> then;
    std::atomic<unsigned> calls{0};

    void OnAfterChange(const Index&, EEventsChange, bool) override { Call(); }
    void OnErrorUnexpected(const String&, const String&) override { Call(); }
    void OnRestore(const String&, const String& snapshot) override {
        EXPECT_EQ(snapshot, "QUILL");
        Call();
    }

private:
    void Call() {
        ++calls;
        if (then) then();
    }
};

struct Observers : SharedBlock {
    // The two ways in which an observer is called and removed.
    struct Way {
        const char* what;
        std::function<Result(Caller&)> add, remove;
        std::function<void()> raise;
    };
    std::vector<Way> Ways() {
        return {{"event observers", [&](Caller& c) { return other.snapshot->AddEventObserver(&c); },
                 [&](Caller& c) { return other.snapshot->RemoveEventObserver(&c); },
                 [&] { EXPECT_TRUE(TestClient(database, "editor").editor.SetLabel(comp, "x")); }},
                {"client observers", [&](Caller& c) { return other.connection->AddClientObserver(&c); },
                 [&](Caller& c) { return other.connection->RemoveClientObserver(&c); },
                 [&] { EXPECT_TRUE(database.Notify([](ClientObserver& o) { o.OnErrorUnexpected("p", "e"); })); }}};
    }
};

}  // namespace

TEST_F(Observers, AreLetGoWhenNobodyElseIsInside) {
    for (const Way& way : Ways()) {
        SCOPED_TRACE(way.what);
        Caller caller;
        std::promise<void> inside, goOn;
        std::atomic<bool> left{false};
        caller.then = [&] {
            inside.set_value();
            goOn.get_future().wait();
            left = true;
        };
        ASSERT_TRUE(way.add(caller));
        EXPECT_EQ(way.add(caller).GetErrorCode(), 213);
        std::thread calling(way.raise);
        inside.get_future().wait();
        std::thread releasing([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            goOn.set_value();
        });
        EXPECT_TRUE(way.remove(caller));
        EXPECT_TRUE(left);
        EXPECT_EQ(way.remove(caller).GetErrorCode(), 200);
        calling.join();
        releasing.join();
        way.raise();
        EXPECT_EQ(caller.calls, 1U);
    }
}

TEST_F(Observers, ThatRemoveEachOtherFromTheirCallbacksDoNotWaitForEver) {
    for (const Way& way : Ways()) {
        SCOPED_TRACE(way.what);
        Caller callers[2];
        std::atomic<unsigned> inside{0};
        std::atomic<bool> taken[2] = {};
        for (unsigned i = 0; i < 2; ++i) {
            // Each thread's call ends up in an observer of its own: the second passes the first by.
            callers[i].then = [&, i] {
                if (taken[i].exchange(true)) return;
                ++inside;
                while (inside != 2)
                    std::this_thread::yield();
                EXPECT_TRUE(way.remove(callers[1 - i]));
            };
            ASSERT_TRUE(way.add(callers[i]));
        }
        std::thread second(way.raise);
        way.raise();
        second.join();
        EXPECT_EQ(way.remove(callers[0]).GetErrorCode(), 200);
        EXPECT_EQ(way.remove(callers[1]).GetErrorCode(), 200);
    }
}

TEST_F(Observers, OfClientsAreToldByTools) {
    Caller first, second, third;
    ASSERT_TRUE(client.connection->AddClientObserver(&first) && other.connection->AddClientObserver(&second) &&
                other.connection->AddClientObserver(&third));
    const auto raise = [](ClientObserver& observer) { observer.OnErrorUnexpected("project", "error"); };
    EXPECT_TRUE(client.editor.Notify(raise));
    EXPECT_TRUE(first.calls == 1 && second.calls == 0) << "only the observers of the editor's client";
    // One that takes itself and the next one out, and throws.
    second.then = [&] {
        EXPECT_TRUE(other.connection->RemoveClientObserver(&second) && other.connection->RemoveClientObserver(&third));
        throw std::runtime_error("sorry");
    };
    EXPECT_TRUE(database.Notify(raise));
    EXPECT_TRUE(first.calls == 2 && second.calls == 1 && third.calls == 0);
    // Whoever hears of a restore may edit what was restored.
    ASSERT_TRUE(client.editor.MakeSavePoint("saved"));
    first.then = [&] { EXPECT_TRUE(client.editor.SetLabel(comp, "after")); };
    EXPECT_TRUE(other.editor.RestoreSavePoint("saved"));
    EXPECT_EQ(first.calls, 3U);
    EXPECT_EQ(DesignDb::Editor().Notify(raise).GetErrorCode(), 110);
    EXPECT_EQ(DesignDb::Database().Notify(raise).GetErrorCode(), 110);
    client.connection.reset();
    EXPECT_TRUE(database.Notify(raise));
    EXPECT_EQ(first.calls, 3U);
}

// Each registration used to copy the list of all.
TEST_F(Observers, ComeAndGoByTheTenThousand) {
    std::vector<Caller> callers(10000);
    for (Caller& caller : callers)
        ASSERT_TRUE(other.snapshot->AddEventObserver(&caller));
    ASSERT_TRUE(client.editor.SetLabel(comp, "x"));
    for (std::size_t i = 0; i < callers.size(); i += 2)
        ASSERT_TRUE(other.snapshot->RemoveEventObserver(&callers[i]));
    ASSERT_TRUE(client.editor.SetLabel(comp, "y"));
    for (std::size_t i = 0; i < callers.size(); ++i)
        ASSERT_EQ(callers[i].calls, 1 + i % 2);
}

namespace {

// Hears the numbers that threads give to their components, each of which counts upwards.
struct Counter final : EventObserver {
    explicit Counter(const std::vector<Index>& of) : comps(of), last(of.size()) {}

    void OnAfterSetAttribute(const Index& o, const String&, const String& value, EAttributeType, int, bool) override {
        EXPECT_TRUE(registered) << "called after it was removed";
        for (std::size_t i = 0; i < comps.size(); ++i) {
            if (comps[i] != o) continue;
            const unsigned number = static_cast<unsigned>(std::stoul(std::string(value.View())));
            EXPECT_GT(number, last[i].exchange(number)) << "out of order";
        }
        ++calls;
    }

    const std::vector<Index>& comps;
    std::vector<std::atomic<unsigned>> last;
    std::atomic<bool> registered{true};
    std::atomic<unsigned> calls{0};
};

}  // namespace

TEST_F(Observers, AndThreadsThatEditReadAndSaveOneDesignLoseNothing) {
    static constexpr unsigned Threads = 4;
    std::vector<Index> comps(Threads);
    for (Index& c : comps)
        ASSERT_TRUE(editor.AddComp(block, {"c"}, c));
    Counter all(comps);
    ASSERT_TRUE(other.snapshot->AddEventObserver(&all));
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(700);
    std::vector<unsigned> edits(Threads), added(Threads);
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < Threads; ++t)
        threads.emplace_back([&, t] {
            TestClient worker(database, "worker");
            std::mt19937 random(t);
            // While another's transaction is open, edits are refused.
            const auto insist = [](auto&& edit) {
                while (!edit())
                    std::this_thread::yield();
            };
            while (std::chrono::steady_clock::now() < end) {
                Counter own(comps);
                EXPECT_TRUE(worker.snapshot->AddEventObserver(&own));
                for (unsigned i = 0; i < 20; ++i) {
                    const std::string number = std::to_string(++edits[t]);
                    insist([&] { return worker.editor.SetAttribute(comps[t], "n", number.c_str()); });
                    String value;
                    EXPECT_TRUE(worker.Comp(comps[t])->GetAttribute("n", value, EAttributeType::User));
                    EXPECT_EQ(std::string(value.View()), number);
                    EXPECT_EQ(own.last[t], edits[t]);
                }
                Index late;
                insist([&] { return worker.editor.AddComp(block, {"late"}, late); });
                ++added[t];
                switch (random() % 4) {
                    case 0:
                        if (!worker.snapshot->BeginTransaction(ETransactionType::Edit)) break;
                        EXPECT_TRUE(worker.editor.DeleteComp(late) && worker.snapshot->RollbackTransaction());
                        break;
                    case 1: {
                        const std::string name = std::to_string(t);
                        if (!worker.editor.MakeSavePoint(name.c_str())) break;
                        EXPECT_GT(Facts(TestClient(database, "reader", name.c_str())).size(), 4U);
                        EXPECT_TRUE(database.RemoveSnapshot(name.c_str()));
                        break;
                    }
                    case 2: {
                        MutableContainerT<IComp> writable;
                        EXPECT_TRUE(LockerT<IComp>::Lock(worker.Comp(late), writable));
                        insist([&] { return writable->SetAttribute("a", "0", EAttributeType::User); });
                        break;
                    }
                    default:
                        EXPECT_TRUE(database.Notify([](ClientObserver& o) { o.OnErrorTransaction("p", "e"); }));
                }
                EXPECT_TRUE(worker.snapshot->RemoveEventObserver(&own));
                own.registered = false;
                EXPECT_GE(own.calls, 20U);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    unsigned sum = Threads + 1;
    for (unsigned t = 0; t < Threads; ++t) {
        EXPECT_EQ(all.last[t], edits[t]);
        sum += added[t];
    }
    IteratorT<const IComp> iterator;
    int count = 0;
    ASSERT_TRUE(client.Block(block)->GetIterComps(iterator, CompTypes()) && iterator.GetCount(count));
    EXPECT_EQ(static_cast<unsigned>(count), sum);
    ASSERT_TRUE(other.snapshot->RemoveEventObserver(&all));
}

}  // namespace Tests
