#include <array>
#include <atomic>
#include <functional>
#include <tuple>
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
    for (const bool onOwner : {true, false}) {
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
    }
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

TEST_F(EventDispatcher, RemovedObserversMissWhatWasQueuedAndHearAgainOnceRegisteredAnew) {
    std::vector<Plain> observers(40);
    Plain stranger;
    Orin::ContainerT<const Orin::ISnapshot> empty;
    for (int round = 0; round < 3; ++round) {
        for (Plain& observer : observers) {
            Dispatcher().RemoveEventObserver(&snapshot, &observer);
            Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
            Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);  // ignored
            Dispatcher().RemoveEventObserver(&empty, &observer);         // so are the others
            Dispatcher().RemoveEventObserver(&snapshot, &stranger);
            Dispatcher().AddEventObserver(&empty, &stranger, "", 0);
            Dispatcher().AddEventObserver(nullptr, &stranger, "", 0);
        }
        OnAnotherThread([&] { AddNets(); });
    }
    Dispatcher().DispatchEvents();
    for (Plain& observer : observers) {
        EXPECT_EQ(observer.log.size(), 2U) << "of the last net alone";
        Dispatcher().RemoveEventObserver(&snapshot, &observer);
    }
    EXPECT_EQ(stranger.log, Log{});
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
    Plain quiet;  // registered behind it
    const auto removeItself = [&] { Dispatcher().RemoveEventObserver(&snapshot, &unruly); };
    const auto removeQuiet = [&] { Dispatcher().RemoveEventObserver(&snapshot, &quiet); };
    const auto removeItselfAndDispatch = [&] {
        removeItself();
        Dispatcher().DispatchEvents();
    };
    const auto rename = [&] { EXPECT_TRUE(editor.SetName(blockIndex, "renamed")); };
    const auto add = [&] { AddNets(2); };
    const auto addElsewhere = [&] { OnAnotherThread([&] { AddNets(2); }); };
    // With how often each is told at once and by a dispatch.
    const std::tuple<const char*, std::function<void()>, std::function<void()>, std::array<std::size_t, 4>> cases[] = {
        {"removed inside a direct callback", removeItself, add, {2, 4, 2, 4}},
        {"nothing is queued for it after its removal", removeItself, rename, {1, 2, 1, 3}},
        {"an inner dispatch does not revive it", removeItselfAndDispatch, addElsewhere, {0, 0, 2, 4}},
        {"other threads may queue meanwhile, for the next time", addElsewhere, addElsewhere, {0, 0, 4, 4}},
        {"removed by the one before it", removeQuiet, add, {4, 1, 4, 1}},
        {"removed by an item in front of its own", removeQuiet, addElsewhere, {0, 0, 4, 1}},
    };
    for (const auto& [why, act, edit, want] : cases) {
        unruly.log.clear();
        quiet.log.clear();
        unruly.act = act;
        Dispatcher().AddEventObserver(&snapshot, &unruly, "", 0);
        Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);
        edit();
        const std::size_t direct[] = {unruly.log.size(), quiet.log.size()};
        Dispatcher().DispatchEvents();
        EXPECT_EQ((std::array{direct[0], direct[1], unruly.log.size(), quiet.log.size()}), want) << why;
        removeItself();
        removeQuiet();
        Dispatcher().DispatchEvents();
    }
}

TEST_F(EventDispatcher, EachClientCallbackHasItsRuleOnTheOwnerThreadAndOffIt) {
    Tests::RecordingClient observer;
    const Index parent(Orin::EObjectType::Block, 0, 1), net(Orin::EObjectType::Net, 0, 1);
    const Index sub(static_cast<Orin::EObjectType>(22), 0, 1);
    const auto calls = [&] {
        EXPECT_TRUE(database.Notify([&](Orin::ClientObserver& o) {
            o.OnErrorAdd("p", "e", parent, net, Orin::EEventsAdd{57});
            o.OnErrorDelete("p", "e", parent, sub, Orin::EEventsDelete{47});
            o.OnErrorDeleteAll("p", "e", net, Orin::EEventsDeleteAll{1});
            o.OnErrorChange("p", "e", net, Orin::EEventsChange{27});
            o.OnErrorQuillDataChange("p", "e", parent, net, Orin::EEventsQuillDataChange{2});
            o.OnErrorConnectivityChange("p", "e", parent, net, Orin::EEventsConnectivityChange{3});
            o.OnErrorSwap("p", "e", parent, net, sub, Orin::EEventsSwap{1});
            o.OnErrorImport("p", "e", parent, Orin::EEventsImport{1});
            o.OnErrorTransaction("p", "e");
            o.OnErrorUnexpected("p", "");
            o.OnWorkingModeChange(Orin::EClientWorkingMode{2});
            o.OnErrorSetAttribute("p", "e", net, "a", "", Orin::EAttributeType::User, 0);
            o.OnRestore("p", "s");
            o.OnErrorSnapshotAdd("e", "s");
            o.OnErrorDefConstraintDelete("e", "s");
        }));
    };
    const Log once = {"ErrorAdd 'p' 'e' 5:1 14:1 57",
                      "ErrorDelete 'p' 'e' 5:1 22:1 47",
                      "ErrorDeleteAll 'p' 'e' 14:1 1",
                      "ErrorChange 'p' 'e' 14:1 27",
                      "ErrorQuillDataChange 'p' 'e' 5:1 14:1 2",
                      "ErrorConnectivityChange 'p' 'e' 5:1 14:1 3",
                      "ErrorSwap 'p' 'e' 5:1 14:1 22:1 1",
                      "ErrorImport 'p' 'e' 5:1 1",
                      "ErrorTransaction 'p' 'e'",
                      "ErrorUnexpected 'p' ''",
                      "WorkingModeChange 2"};
    Log twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_TRUE(client->AddClientObserver(Dispatcher().GetClientObserver()));  // which hears all and does nothing
    Dispatcher().AddClientObserver(client.get(), &observer);
    Dispatcher().AddClientObserver(nullptr, &observer);
    Dispatcher().AddClientObserver(client.get(), nullptr);
    calls();
    EXPECT_EQ(observer.log, once);
    OnAnotherThread(calls);
    EXPECT_EQ(observer.log, once);
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, twice);

    observer.log.clear();
    Dispatcher().AddClientObserver(client.get(), &observer);
    calls();
    EXPECT_EQ(observer.log, twice) << "the same observer may be registered twice";
    OnAnotherThread(calls);
    Dispatcher().RemoveClientObserver(client.get(), &observer);
    observer.log.clear();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, Log{}) << "what was queued is not told, whichever registration it came through";
    calls();
    EXPECT_EQ(observer.log, once) << "the other registration stands";
    Dispatcher().RemoveClientObserver(client.get(), &observer);
    Dispatcher().RemoveClientObserver(client.get(), &observer);
    calls();
    EXPECT_EQ(observer.log, once);
    EXPECT_TRUE(client->RemoveClientObserver(Dispatcher().GetClientObserver()));
}

TEST_F(EventDispatcher, NothingIsLostWhileThreadsEditAndTheOwnerDrains) {
    RecordingEx observer;
    RecordingNavigator passing;  // comes and goes while it is being called
    Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
    std::vector<Log> wanted(4);  // by thread, each of which has a block of its own
    std::atomic<std::size_t> running{wanted.size()};
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < wanted.size(); ++thread)
        threads.emplace_back([&, thread] {
            std::string name = std::to_string(thread);
            const std::unique_ptr<Orin::OrinPI> own = database.Connect(name.c_str());
            Orin::ContainerT<const Orin::ISnapshot> seen;
            Orin::DesignDb::Editor ownEditor;
            Index home, net;
            EXPECT_TRUE(own->GetSnapshotByName(seen, "QUILL") && Orin::DesignDb::Editor::Open(ownEditor, seen));
            EXPECT_TRUE(ownEditor.AddBlock({name.c_str()}, home));
            for (int edit = 0; edit < 300; ++edit) {
                const std::string text = std::to_string(thread) + " " + std::to_string(edit);
                EXPECT_TRUE(ownEditor.AddNet(home, {text.c_str()}, net));
                wanted[thread].push_back(Line("AddNet", net, home, text));
                if (edit % 8 != 0) continue;
                EXPECT_TRUE(ownEditor.SetName(home, text.c_str()));
                wanted[thread].push_back(Line("BlockNameChange", home, name, text));
                name = text;
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
    for (std::size_t thread = 0; thread < wanted.size(); ++thread) {
        Log told;
        for (const std::string& line : observer.log)
            if (line.find(" '" + std::to_string(thread)) != std::string::npos) told.push_back(line);
        EXPECT_EQ(told, wanted[thread]);
    }
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

}  // namespace
