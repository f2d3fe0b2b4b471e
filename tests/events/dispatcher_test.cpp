#include <algorithm>
#include <atomic>
#include <functional>
#include <stdexcept>
#include <utility>

#include "events/orin_event_dispatcher.h"
#include "tests/events/recording.h"
#include "tests/support/small_design.h"

namespace {

using namespace NQuillUtils::NEvents;
using Orin::Index;
using Tests::Line;
using Tests::Log;
using Tests::OnAnotherThread;
using Tests::RecordingEx;
using Tests::RecordingNavigator;

using Plain = Tests::Recording<Orin::EventObserver>;

CORINEventDispatcher& Dispatcher() {
    return *CORINEventDispatcher::Instance();
}

// The design's own connection keeps its locks; edits are made by its editor, on this thread or another one.
class EventDispatcher : public Tests::SmallDesign {
protected:
    EventDispatcher() { Dispatcher().DispatchEvents(); }  // this thread is the owner, and nothing is left over
    ~EventDispatcher() override { Dispatcher().DispatchEvents(); }

    void AddNets(unsigned count = 1) {
        Index net;
        for (; count > 0; --count)
            EXPECT_TRUE(editor.AddNet(blockIndex, {"N"}, net));
    }
};

TEST_F(EventDispatcher, RenamingABlockIsToldAgainFromTheQueue) {
    Plain observer;
    Dispatcher().AddEventObserver(&snapshot, &observer, "x", 1);
    const std::string before = Line("BeforeChange", blockIndex, 27, 0);
    const std::string after = Line("AfterChange", blockIndex, 27, 0);
    Dispatcher().LockEvents();  // changes nothing
    EXPECT_TRUE(editor.SetName(blockIndex, "new"));
    EXPECT_EQ(observer.log, (Log{before, after}));
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, (Log{before, after, before}));
    observer.log.clear();
    OnAnotherThread([&] { EXPECT_TRUE(editor.SetName(blockIndex, "newer")); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, (Log{before, before, after}));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, ADirectObserverCanVetoATransactionAndADeferredOneCannot) {
    Plain observer;
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    EXPECT_EQ(snapshot->BeginTransaction(Orin::ETransactionType::Edit).GetErrorCode(), 212);
    OnAnotherThread([&] { EXPECT_TRUE(snapshot->BeginTransaction(Orin::ETransactionType::Edit)); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log.size(), 2U);
    EXPECT_TRUE(snapshot->RollbackTransaction());
    EXPECT_EQ(Log(observer.log.begin() + 2, observer.log.end()),
              (Log{"BeforeRollbackTransaction", "AfterTransaction"}));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, SchematicEventsCarryWhatTheDesignHeldAtTheirMoment) {
    Orin::NetDataQuill first, second;
    first.objectId = 1;
    second.objectId = 2;
    const auto check = [&](bool onOwner) {
        SCOPED_TRACE(onOwner);
        RecordingEx observer;
        Index net, other, group, piece, part, child;
        const auto edits = [&] {
            EXPECT_TRUE(editor.AddNet(blockIndex, {"N"}, net));
            EXPECT_TRUE(editor.AddBus(blockIndex, {"B"}, other));
            EXPECT_TRUE(editor.AddNetQuill(sheetIndex, net, first, piece));
            EXPECT_TRUE(editor.SetNetQuillData(piece, second));
            EXPECT_TRUE(editor.SetLabel(net, "M"));
            EXPECT_TRUE(editor.DeleteItem(piece));
            EXPECT_TRUE(editor.DeleteNet(net));
            EXPECT_TRUE(editor.DeleteBus(other));
            EXPECT_TRUE(editor.AddBlock({"child"}, child));
            EXPECT_TRUE(editor.AddGroup(child, {"7", Orin::EGroupType::GeneratedSheet}, group));
            EXPECT_TRUE(
                editor.AddComp(blockIndex, {.label = "X", .childBlock = child, .instanceIndex = Index(77)}, part));
            EXPECT_TRUE(editor.SetAttribute(group, "$$Internal___ReadOnlySheet", "TRUE"));
            EXPECT_TRUE(editor.SetName(child, "child"));
            EXPECT_TRUE(editor.SetName(child, "kid"));
            EXPECT_TRUE(editor.DeleteComp(part));
            EXPECT_TRUE(editor.DeleteGroup(group));
            EXPECT_TRUE(editor.DeleteBlock(child));
        };
        Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
        onOwner ? edits() : OnAnotherThread(edits);
        EXPECT_EQ(observer.log.empty(), !onOwner);
        Dispatcher().DispatchEvents();
        for (const char* plain : {"BeforeAdd ", "AfterAdd ", "AfterDelete ", "BeforeChange ", "AfterChange "})
            std::erase_if(observer.log, [&](const std::string& line) { return line.starts_with(plain); });
        const Log want = {Line("AddNet", net, blockIndex, "N"),
                          Line("AddBus", other, blockIndex, "B"),
                          Line("AddNetQuill", piece, blockIndex, "N"),
                          Line("BeforeNetQuillSetData", piece, net, blockIndex, 1),
                          Line("AfterNetQuillSetData", piece, net, blockIndex, 2),
                          Line("BeforeLabelChange", net, blockIndex, "N"),
                          Line("AfterLabelChange", net, blockIndex, "M"),
                          Line("DeleteNetQuill", piece, blockIndex, "M"),
                          Line("DeleteNet", net, blockIndex, "M"),
                          Line("DeleteBus", other, blockIndex, "B"),
                          Line("ReadOnlyFlagChange", child),
                          Line("BlockNameChange", child, "child", "kid"),
                          Line("DeleteBlockComp", part, blockIndex, child, 77),
                          Line("DeleteGroup", group, child, "7", "8"),
                          Line("DeleteBlock", child, "kid")};
        EXPECT_EQ(observer.log, want);
        Dispatcher().RemoveEventObserver(&snapshot, &observer);
        Dispatcher().DispatchEvents();
    };
    check(true);
    check(false);
}

TEST_F(EventDispatcher, TheNavigatorHearsOfRipsRootsAndDeletions) {
    RecordingNavigator observer;
    EXPECT_TRUE(editor.AddMember(sheetIndex, busIndex));
    Dispatcher().AddEventObserverNavigator(&snapshot, &observer, "", 0);
    EXPECT_TRUE(editor.RipBus(compIndex, busIndex));
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_Design_Name", "D"));
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_Design_Name", "D"));
    EXPECT_TRUE(editor.RemoveAttribute(blockIndex, "$$Internal_Design_Name"));
    const Orin::ListT<Index> groups = {sheetIndex};
    EXPECT_EQ(
        observer.log,
        (Log{Line("BeforeRipBus", busIndex, blockIndex, groups), Line("AfterRipBus", busIndex, blockIndex, groups),
             Line("BeforeChange", blockIndex, 6, 0), Line("DesignRootChange", blockIndex, "", "D"),
             Line("BeforeChange", blockIndex, 6, 0), Line("AfterChange", blockIndex, 6, 0),
             Line("BeforeChange", blockIndex, 7, 0), Line("DesignRootChange", blockIndex, "D", "")}));
    observer.log.clear();
    OnAnotherThread([&] { EXPECT_TRUE(editor.DeleteBus(busIndex)); });
    Dispatcher().DispatchEvents();
    ASSERT_FALSE(observer.log.empty());
    EXPECT_EQ(observer.log.front(), Line("DeleteBus", busIndex, blockIndex, groups));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, ARemovedObserverMissesWhatWasQueuedAndHearsAgainOnceRegisteredAnew) {
    Plain observer, other;
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);  // ignored
    Dispatcher().AddEventObserver(nullptr, &other, "", 0);
    Orin::ContainerT<const Orin::ISnapshot> empty;
    Dispatcher().AddEventObserver(&empty, &other, "", 0);
    Dispatcher().RemoveEventObserver(&empty, &observer);
    Dispatcher().RemoveEventObserver(&snapshot, &other);
    OnAnotherThread([&] { AddNets(); });
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    OnAnotherThread([&] { AddNets(); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log.size(), 2U) << "of the second net alone";
    EXPECT_EQ(other.log, Log{});
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, ARenamingInsideARenamingKnowsTheNameBeforeEach) {
    struct Renaming : RecordingEx {
        std::function<void()> act;
        void OnBeforeChange(const Index&, Orin::EEventsChange, bool) override {
            if (const auto once = std::exchange(act, nullptr)) once();
        }
    } observer;
    Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
    observer.act = [&] { EXPECT_TRUE(editor.SetName(blockIndex, "inner")); };
    EXPECT_TRUE(editor.SetName(blockIndex, "outer"));
    EXPECT_EQ(observer.log, (Log{Line("BlockNameChange", blockIndex, "top", "inner"),
                                 Line("BlockNameChange", blockIndex, "top", "outer")}));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

// All before-callbacks of a restore come before its first after-callback.
TEST_F(EventDispatcher, ARestoredSavePointTellsOfEachBlockWhatItWasCalledBefore) {
    Index other;
    EXPECT_TRUE(editor.AddBlock({"other"}, other));
    EXPECT_TRUE(editor.SetAttribute(other, "$$Internal_Design_Name", "same"));
    EXPECT_TRUE(editor.MakeSavePoint("saved"));
    for (const Index& each : {blockIndex, other}) {
        EXPECT_TRUE(editor.SetName(each, each == other ? "other's" : "top's"));
        EXPECT_TRUE(editor.SetAttribute(each, "colour", "red"));
    }
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_Design_Name", "once"));
    RecordingEx names;
    RecordingNavigator roots;
    Dispatcher().AddEventObserverEx(&snapshot, &names, "", 0);
    Dispatcher().AddEventObserverNavigator(&snapshot, &roots, "", 0);
    EXPECT_TRUE(editor.RestoreSavePoint("saved"));
    Dispatcher().RemoveEventObserver(&snapshot, &names);
    Dispatcher().RemoveEventObserver(&snapshot, &roots);
    const auto translated = [](Log log) {
        std::erase_if(log, [](const std::string& line) { return line.ends_with(" 1"); });  // plain ones end with "undo"
        return log;
    };
    EXPECT_EQ(translated(names.log), (Log{Line("BlockNameChange", blockIndex, "top's", "top"),
                                          Line("BlockNameChange", other, "other's", "other")}));
    EXPECT_EQ(translated(roots.log), (Log{Line("DesignRootChange", blockIndex, "once", "")}));
}

TEST_F(EventDispatcher, AnObserverMayDispatchAndRemoveItselfAndOthers) {
    struct Unruly : Plain {
        std::function<void()> act;
        void OnAfterAdd(const Index& p, const Index& o, Orin::EEventsAdd k, bool u) override {
            Plain::OnAfterAdd(p, o, k, u);
            act();
        }
        void OnBeforeChange(const Index& o, Orin::EEventsChange k, bool u) override {
            Plain::OnBeforeChange(o, k, u);
            act();
        }
    } unruly;
    Plain quiet;
    const auto removeItself = [&] { Dispatcher().RemoveEventObserver(&snapshot, &unruly); };
    const auto begin = [&](std::function<void()> act) {
        unruly.log.clear();
        unruly.act = std::move(act);
        Dispatcher().AddEventObserver(&snapshot, &unruly, "", 0);
    };
    Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);

    begin(removeItself);
    AddNets(2);
    EXPECT_EQ(unruly.log.size(), 2U) << "removed inside a direct callback";
    begin(removeItself);
    EXPECT_TRUE(editor.SetName(blockIndex, "renamed"));
    Dispatcher().DispatchEvents();
    EXPECT_EQ(unruly.log.size(), 1U) << "nothing is queued for it after its removal";
    begin([&] {
        removeItself();
        Dispatcher().DispatchEvents();
    });
    OnAnotherThread([&] { AddNets(2); });
    quiet.log.clear();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(unruly.log.size(), 2U) << "an inner dispatch does not revive what was queued before";
    EXPECT_EQ(quiet.log.size(), 4U);

    quiet.log.clear();
    begin([&] { OnAnotherThread([&] { AddNets(); }); });
    OnAnotherThread([&] { AddNets(); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 2U) << "other threads may queue meanwhile, for the next time";
    removeItself();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 4U);

    Dispatcher().RemoveEventObserver(&snapshot, &quiet);
    begin([&] { Dispatcher().RemoveEventObserver(&snapshot, &quiet); });
    Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);
    quiet.log.clear();
    AddNets();
    EXPECT_EQ(quiet.log.size(), 1U) << "removed by the one before it";
    Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);
    quiet.log.clear();
    OnAnotherThread([&] { AddNets(); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 1U) << "removed by an item in front of its own";
    removeItself();
}

TEST_F(EventDispatcher, WhatAnEventObserverThrowsIsReportedOnTheOwnerThread) {
    struct Thrower : Plain {
        void OnAfterAdd(const Index&, const Index&, Orin::EEventsAdd, bool) override { throw std::runtime_error("no"); }
    } thrower;
    Tests::RecordingClient observer;
    Dispatcher().AddClientObserver(client.get(), &observer);
    EXPECT_TRUE(client->AddClientObserver(Dispatcher().GetClientObserver()));
    EXPECT_TRUE(snapshot->AddEventObserver(&thrower));
    const std::string want = "ErrorUnexpected 'small' 'An observer threw: no'";
    OnAnotherThread([&] { AddNets(); });
    EXPECT_EQ(observer.log, Log{});
    AddNets();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, (Log{want, want}));
    Dispatcher().RemoveClientObserver(client.get(), &observer);
    EXPECT_TRUE(snapshot->RemoveEventObserver(&thrower));
    EXPECT_TRUE(client->RemoveClientObserver(Dispatcher().GetClientObserver()));
}

TEST_F(EventDispatcher, NothingIsLostWhileThreadsEditAndTheOwnerDrains) {
    constexpr unsigned Threads = 4;
    constexpr unsigned Edits = 300;
    // Each thread adds nets to a block of its own, labelled by thread and number.
    struct Order : EventObserverEx {
        unsigned nets[Threads] = {};
        std::string names[Threads];  // the last one of each thread's block
        unsigned breaks = 0;         // where a net or a renaming did not go on from the last one
        void OnBlockNameChange(Index, const std::string& before, const std::string& after) override {
            std::string& name = names[static_cast<std::size_t>(after[0] - '0')];
            if (!name.empty() && before != name) ++breaks;
            name = after;
        }
        void OnAddNet(Index, Index, const std::string& label) override {
            if (label.substr(2) != std::to_string(nets[static_cast<std::size_t>(label[0] - '0')]++)) ++breaks;
        }
    } observer;
    RecordingNavigator passing;  // comes and goes while it is being called
    Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
    std::atomic<unsigned> running{Threads};
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < Threads; ++thread)
        threads.emplace_back([&, thread] {
            const std::string name = std::to_string(thread);
            const std::unique_ptr<Orin::OrinPI> own = database.Connect(name.c_str());
            Orin::ContainerT<const Orin::ISnapshot> seen;
            Orin::DesignDb::Editor ownEditor;
            Index home, net;
            EXPECT_TRUE(own->GetSnapshotByName(seen, "QUILL") && Orin::DesignDb::Editor::Open(ownEditor, seen));
            EXPECT_TRUE(ownEditor.AddBlock({name.c_str()}, home));
            for (unsigned edit = 0; edit < Edits; ++edit) {
                const std::string label = name + " " + std::to_string(edit);
                EXPECT_TRUE(ownEditor.AddNet(home, {label.c_str()}, net));
                EXPECT_TRUE(edit % 8 != 0 || ownEditor.SetName(home, label.c_str()));
            }
            --running;
        });
    while (running != 0) {
        Dispatcher().AddEventObserverNavigator(&snapshot, &passing, "", 0);
        Dispatcher().DispatchEvents();
        Dispatcher().RemoveEventObserver(&snapshot, &passing);
    }
    for (std::thread& thread : threads)
        thread.join();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.breaks, 0U);
    for (unsigned thread = 0; thread < Threads; ++thread) {
        EXPECT_EQ(observer.nets[thread], Edits);
        EXPECT_EQ(observer.names[thread].substr(1), " 296");
    }
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

}  // namespace
