// Linked with the library's code as members of a static library: nothing here names the factories of its services, and
// they must be there all the same.
#include <algorithm>
#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "config/detail/dir_watch_state.h"
#include "config/flow_type_info.h"
#include "events/orin_event_dispatcher.h"
#include "platform/interface_manager.h"
#include "tests/events/fake_snapshot.h"
#include "tests/support/temporary.h"

namespace {

using namespace Quill::ConfigDetail;

constexpr const char* Services[] = {"IFlowTypeInfoProvider", "IORINEventDispatcher"};

Quill::InterfaceFactory* FactoryOf(const char* service) {
    return Quill::InterfaceManager::instance().getFactory(service);
}
auto MissingServices() {
    return std::count_if(std::begin(Services), std::end(Services), [](auto service) { return !FactoryOf(service); });
}

// A static object of a user of the services, which wants them at both ends of its own life.
struct StaticUser {
    const bool foundAllAtStart = MissingServices() == 0;
    ~StaticUser() {
        if (MissingServices() != 0) std::_Exit(3);
    }
} const staticUser;

// Made before every other static object of the program and destroyed after them.
struct AtTheEnd {
    ~AtTheEnd() {
        if (MissingServices() != std::ssize(Services)) std::_Exit(4);
    }
};
__attribute__((init_priority(101))) const AtTheEnd atTheEnd;

}  // namespace

TEST(StaticServices, TheirFactoriesAreThereForStaticObjectsAndGoneAfterThem) {
    // What comes after main is checked above, by the exit code.
    EXPECT_TRUE(staticUser.foundAllAtStart);
    ASSERT_EQ(MissingServices(), 0);
    const auto* provider =
        static_cast<Quill::IFlowTypeInfoProvider*>(FactoryOf("IFlowTypeInfoProvider")->internalCreate());
    EXPECT_EQ(provider->getFlowTypeInfo("netlist")->getMapCfgFile(), "mapnl.cfg");

    auto* const factory = FactoryOf("IORINEventDispatcher");
    auto* const dispatcher = static_cast<NQuillUtils::NEvents::IORINEventDispatcher*>(factory->internalCreate());
    EXPECT_STREQ(dispatcher->interfaceName(), "IORINEventDispatcher");
    Tests::FakeSnapshot fake;
    Orin::ContainerT<const Orin::ISnapshot> snapshot(fake);
    struct : Orin::EventObserver {
    } observer;
    dispatcher->AddEventObserver(&snapshot, &observer, "", 0);
    EXPECT_NE(fake.observer, nullptr) << "the service reaches the dispatcher";
    dispatcher->RemoveEventObserver(&snapshot, &observer);
    factory->internalRelease(dispatcher);
}

// What a polling thread comes to that has read the mode just before another thread stopped the watch.
TEST(DirWatchState, APollThatMeetsItsOwnStopNeitherWaitsNorRevivesTheWatch) {
    const Tests::TemporaryFolder folder;
    DirWatchState watch;
    watch.setWatchTime(60 * 1000 * 1000, false, 0);
    watch.setDirToWatch(folder.Path(), "");
    ASSERT_EQ(watch.mode, WatchMode::Native);
    watch.stopWatching();
    EXPECT_FALSE(watch.changedNative());
    EXPECT_EQ(watch.mode, WatchMode::None);
}

// No set-up chooses the stat mode; it is entered here as one would.
TEST(DirWatchState, TheStatModeComparesSizeAndTime) {
    const Tests::TemporaryFolder folder;
    folder.Write("file", "1");
    DirWatchState watch;
    watch.setWatchTime(1000, false, 0);
    watch.mode = WatchMode::Stat;
    watch.fd = std::make_shared<WatchedFile>(::open((folder / "file").c_str(), O_RDONLY));
    EXPECT_TRUE(watch.changed()) << "the first status is news";
    EXPECT_FALSE(watch.changed());
    folder.Write("file", "12");
    EXPECT_TRUE(watch.changed());
    Tests::SetBack(folder / "file");
    EXPECT_TRUE(watch.changed());
    DirWatchState copy(watch);
    watch.stopWatching();
    EXPECT_FALSE(watch.changed());
    EXPECT_TRUE(copy.changed());
    EXPECT_EQ(copy.mode, WatchMode::Blind) << "without the file, which the other has closed";
}
