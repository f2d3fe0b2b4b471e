#include "platform/interface_manager.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/project_data.h"

namespace Quill {
namespace {

struct Factory : InterfaceFactory {
    Interface* internalCreate() override { return nullptr; }
    void internalRelease(Interface*) override {}
};

struct Registered : Factory {
    explicit Registered(const char* registeredName) : name(registeredName) {
        InterfaceManager::instance().registerInterface(name, this);
    }
    ~Registered() override { allWereFound &= InterfaceManager::instance().unRegisterInterface(name, this); }
    const char* name;
    static inline bool allWereFound = true;
};

// Complete before the manager's first use, so its destructor runs after any that the manager could have had for itself.
struct LastWord {
    ~LastWord() {
        if (!tellsVerdict) return;
        Factory late;
        InterfaceManager& manager = InterfaceManager::instance();
        const bool works = manager.registerInterface("late", &late) && manager.getFactory("late") == &late &&
                           manager.unRegisterInterface("late", &late);
        std::_Exit(works && Registered::allWereFound ? 42 : 43);
    }
    static inline bool tellsVerdict = false;
};

__attribute__((init_priority(101))) LastWord lastWord;
__attribute__((init_priority(102))) Registered first("first");
Registered usual("usual");

TEST(InterfaceManager, KnowsWhatStaticInitialisersRegisteredInAnyOrder) {
    EXPECT_EQ(InterfaceManager::instance().getFactory("first"), &first);
    EXPECT_EQ(InterfaceManager::instance().getFactory("usual"), &usual);
}

TEST(InterfaceManagerDeathTest, IsThereForTheLastStaticDestructor) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto end = [] {
        LastWord::tellsVerdict = true;
        std::exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(42), "");
}

TEST(InterfaceManager, MapsNamesExactlyAndTheLatestRegistrationCounts) {
    InterfaceManager& manager = InterfaceManager::instance();
    Factory a, b;
    EXPECT_FALSE(manager.registerInterface("", &a));
    EXPECT_FALSE(manager.registerInterface("IService", nullptr));
    EXPECT_FALSE(manager.unRegisterInterface("IService"));

    EXPECT_TRUE(manager.registerInterface("IService", &a));
    EXPECT_FALSE(manager.registerInterface("IService", nullptr));
    EXPECT_EQ(manager.getFactory("IService"), &a) << "a refused registration changes nothing";
    EXPECT_EQ(manager.getFactory("iservice"), nullptr);

    EXPECT_TRUE(manager.registerInterface("IService", &b));
    EXPECT_FALSE(manager.unRegisterInterface("IService", &a)) << "a replaced factory leaves its successor alone";
    EXPECT_EQ(manager.getFactory("IService"), &b);
    EXPECT_TRUE(manager.unRegisterInterface("IService", &b));
    EXPECT_FALSE(manager.unRegisterInterface("IService", &b));

    EXPECT_TRUE(manager.registerInterface("IService", &a));
    EXPECT_TRUE(manager.unRegisterInterface("IService"));
    EXPECT_EQ(manager.getFactory("IService"), nullptr);
}

TEST(InterfaceManager, ServesSeveralThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([name = "thread " + std::to_string(i)] {
            Factory own;
            for (int round = 0; round < 2000; ++round) {
                InterfaceManager& manager = InterfaceManager::instance();
                ASSERT_TRUE(manager.registerInterface(name, &own));
                ASSERT_EQ(manager.getFactory(name), &own);
                ASSERT_TRUE(manager.unRegisterInterface(name, &own));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
}  // namespace Quill
