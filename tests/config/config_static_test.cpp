// Linked with the library's code as members of a static library: nothing here names the factory of flow type
// descriptions, and it must be there all the same.
#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "config/detail/dir_watch_state.h"
#include "config/flow_type_info.h"
#include "platform/interface_manager.h"
#include "tests/support/temporary.h"

namespace {

Quill::InterfaceFactory* Registered() {
    return Quill::InterfaceManager::instance().getFactory("IFlowTypeInfoProvider");
}

// A static object of a user of the service, which wants it at both ends of its own life.
struct StaticUser {
    bool foundAtStart = Registered() != nullptr;
    ~StaticUser() {
        if (!Registered()) std::_Exit(3);
    }
} const staticUser;

// Made before every other static object of the program and destroyed after them.
struct AtTheEnd {
    ~AtTheEnd() {
        if (Registered()) std::_Exit(4);
    }
};
__attribute__((init_priority(101))) const AtTheEnd atTheEnd;

}  // namespace

TEST(StaticFlowTypeInfo, TheFactoryIsThereForStaticObjectsAndGoneAfterThem) {
    // What comes after main is checked above, by the exit code.
    EXPECT_TRUE(staticUser.foundAtStart);
    ASSERT_NE(Registered(), nullptr);
    const auto* provider = static_cast<Quill::IFlowTypeInfoProvider*>(Registered()->internalCreate());
    EXPECT_EQ(provider->getFlowTypeInfo("netlist")->getMapCfgFile(), "mapnl.cfg");
}

// What a polling thread comes to that has read the mode just before another thread stopped the watch.
TEST(DirWatchState, APollThatMeetsItsOwnStopNeitherWaitsNorRevivesTheWatch) {
    using namespace Quill::ConfigDetail;
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
    using namespace Quill::ConfigDetail;
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
