#include <atomic>
#include <functional>
#include <stdexcept>
#include <utility>

#include "events/orin_event_dispatcher.h"
#include "platform/interface_manager.h"
#include "tests/events/recording.h"
#include "tests/support/small_design.h"

namespace {

using namespace NQuillUtils::NEvents;
using Orin::Index;
using Tests::Log;
using Tests::OnAnotherThread;
using Tests::RecordingEx;
using Tests::RecordingNavigator;
using Tests::Text;
using Plain = Tests::Recording<Orin::EventObserver>;

CORINEventDispatcher& Dispatcher() {
    return *CORINEventDispatcher::Instance();
}

// The design's own connection keeps its locks; edits are made by its editor, on this thread or another one.
class EventDispatcher : public Tests::SmallDesign {
protected:
    EventDispatcher() { Dispatcher().DispatchEvents(); }  // this thread is the owner, and nothing is left over
    ~EventDispatcher() override { Dispatcher().DispatchEvents(); }

    void AddNet(const char* label = "N") {
        Index net;
        EXPECT_TRUE(editor.AddNet(blockIndex, {label}, net));
    }
};

TEST_F(EventDispatcher, PlainCallbacksComeAtOnceOnTheOwnerThreadAndFromTheQueueOtherwise) {
    Plain observer;
    Dispatcher().AddEventObserver(&snapshot, &observer, nullptr, 0);
    const Log want = {"BeforeAdd " + Text(blockIndex) + " ", "AfterAdd " + Text(blockIndex) + " "};
    const auto matches = [&](const Log& log) {
        ASSERT_EQ(log.size(), want.size());
        for (std::size_t i = 0; i < want.size(); ++i)
            EXPECT_EQ(log[i].substr(0, want[i].size()), want[i]);
    };
    Dispatcher().LockEvents();  // changes nothing
    AddNet();
    matches(observer.log);
    observer.log.clear();
    OnAnotherThread([&] { AddNet(); });
    EXPECT_EQ(observer.log, Log{});
    Dispatcher().DispatchEvents();
    matches(observer.log);
    Dispatcher().UnlockEvents();
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, RenamingABlockIsToldAgainFromTheQueue) {
    Plain observer;
    Dispatcher().AddEventObserver(&snapshot, &observer, "x", 1);
    const std::string before = "BeforeChange " + Text(blockIndex) + " 27";
    const std::string after = "AfterChange " + Text(blockIndex) + " 27";
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

TEST_F(EventDispatcher, IrrelevantObjectsAreDroppedEachCallbackByItsOwnRule) {
    Plain observer;
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    Index pin;
    EXPECT_TRUE(editor.AddPin(compIndex, {"1"}, pin));
    EXPECT_EQ(observer.log, Log{}) << "a pin is minor: its coming is not told";
    EXPECT_TRUE(editor.SetLabel(pin, "2"));
    EXPECT_EQ(observer.log.size(), 2U) << "its change is";
    EXPECT_TRUE(editor.DeletePin(pin));
    EXPECT_EQ(observer.log.size(), 4U) << "and its end";
    observer.log.clear();
    const Index known(std::uint64_t{0x31} << 56 | 9);
    EXPECT_TRUE(editor.AddComp(blockIndex, {.label = "C", .index = known}, pin));
    EXPECT_EQ(observer.log, Log{});
    EXPECT_TRUE(editor.DeleteComp(known));
    EXPECT_EQ(observer.log, Log{"BeforeDelete " + Text(blockIndex) + " 49:9 41"});
    observer.log.clear();
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "a", "b"));
    EXPECT_EQ(observer.log.size(), 2U) << "the attribute callbacks stay out, the change pair comes";
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
    EXPECT_EQ(Log(observer.log.begin() + 2, observer.log.end()), (Log{"Rollback", "AfterTransaction"}));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, SchematicEventsCarryWhatTheDesignHeldAtTheirMoment) {
    const std::string b = Text(blockIndex) + " ";
    const auto check = [&](bool owner) {
        SCOPED_TRACE(owner);
        RecordingEx observer;
        Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
        Index net, newBus, group, piece, newComp, child;
        Orin::NetDataQuill first, second;
        first.objectId = 1;
        second.objectId = 2;
        const auto edits = [&] {
            EXPECT_TRUE(editor.AddNet(blockIndex, {"N"}, net));
            EXPECT_TRUE(editor.AddBus(blockIndex, {"B"}, newBus));
            EXPECT_TRUE(editor.AddNetQuill(sheetIndex, net, first, piece));
            EXPECT_TRUE(editor.SetNetQuillData(piece, second));
            EXPECT_TRUE(editor.SetLabel(net, "M"));
            EXPECT_TRUE(editor.DeleteItem(piece));
            EXPECT_TRUE(editor.DeleteNet(net));
            EXPECT_TRUE(editor.DeleteBus(newBus));
        };
        owner ? edits() : OnAnotherThread(edits);
        if (!owner) {
            EXPECT_EQ(observer.log, Log{});
            Dispatcher().DispatchEvents();
        }
        Log translated;
        for (const std::string& line : observer.log)
            if (line.rfind("BeforeAdd", 0) != 0 && line.rfind("AfterDelete", 0) != 0) translated.push_back(line);
        const std::string n = Text(net) + " ", p = Text(piece) + " ";
        EXPECT_EQ(translated,
                  (Log{"AddNet " + n + b + "N", "AddBus " + Text(newBus) + " " + b + "B", "AddNetQuill " + p + b + "N",
                       "BeforeSetData " + p + n + b + "1", "AfterSetData " + p + n + b + "2",
                       "BeforeLabel " + n + b + "N", "AfterLabel " + n + b + "M", "DeleteNetQuill " + p + b + "M",
                       "DeleteNet " + n + b + "M", "DeleteBus " + Text(newBus) + " " + b + "B"}));
        observer.log.clear();

        EXPECT_TRUE(editor.AddBlock({"child"}, child));
        EXPECT_TRUE(editor.AddGroup(child, {"7", Orin::EGroupType::GeneratedSheet}, group));
        EXPECT_TRUE(
            editor.AddComp(blockIndex, {.label = "X", .childBlock = child, .instanceIndex = Index(77)}, newComp));
        observer.log.clear();
        EXPECT_TRUE(editor.SetAttribute(group, "$$Internal___ReadOnlySheet", "TRUE"));
        EXPECT_TRUE(editor.SetName(child, "child"));
        EXPECT_TRUE(editor.SetName(child, "kid"));
        EXPECT_TRUE(editor.DeleteComp(newComp));
        EXPECT_TRUE(editor.DeleteGroup(group));
        EXPECT_TRUE(editor.DeleteBlock(child));
        const std::string c = Text(child), g = Text(group);
        translated.clear();
        for (const std::string& line : observer.log)
            if (line.rfind("AfterDelete", 0) != 0) translated.push_back(line);
        EXPECT_EQ(translated,
                  (Log{"BeforeChange " + g + " 6", "ReadOnly " + c + " 0:0 ", "AfterChange " + g + " 6",
                       "BeforeChange " + c + " 27", "AfterChange " + c + " 27", "BeforeChange " + c + " 27",
                       "BlockName " + c + " 0:0 child kid", "DeleteBlockComp " + Text(newComp) + " " + b + c + " 77",
                       "DeleteGroup " + g + " " + c + " 7 8", "DeleteBlock " + c + " 0:0 kid"}));
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
    const std::string ripped = Text(busIndex) + " " + Text(blockIndex) + " " + Text(sheetIndex);
    const std::string top = Text(blockIndex);
    EXPECT_TRUE(editor.RipBus(compIndex, busIndex));
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_Design_Name", "D"));
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "$$Internal_Design_Name", "D"));
    EXPECT_TRUE(editor.RemoveAttribute(blockIndex, "$$Internal_Design_Name"));
    EXPECT_EQ(observer.log, (Log{"BeforeRip " + ripped, "AfterRip " + ripped, "BeforeChange " + top + " 6",
                                 "Root " + top + " >D", "BeforeChange " + top + " 6", "AfterChange " + top + " 6",
                                 "BeforeChange " + top + " 7", "Root " + top + " D>"}));
    observer.log.clear();
    OnAnotherThread([&] { EXPECT_TRUE(editor.DeleteBus(busIndex)); });
    Dispatcher().DispatchEvents();
    ASSERT_FALSE(observer.log.empty());
    EXPECT_EQ(observer.log.front(), "DeleteBus " + ripped);
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
    OnAnotherThread([&] { AddNet(); });
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
    Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    OnAnotherThread([&] { AddNet(); });
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
    const std::string name = "BlockName " + Text(blockIndex) + " 0:0 top ";
    EXPECT_EQ(observer.log, (Log{name + "inner", name + "outer"}));
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
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
    AddNet();
    AddNet();
    EXPECT_EQ(unruly.log.size(), 2U) << "removed inside a direct callback";
    begin(removeItself);
    EXPECT_TRUE(editor.SetName(blockIndex, "renamed"));
    Dispatcher().DispatchEvents();
    EXPECT_EQ(unruly.log.size(), 1U) << "nothing is queued for it after its removal";
    begin([&] {
        removeItself();
        Dispatcher().DispatchEvents();
    });
    OnAnotherThread([&] {
        AddNet();
        AddNet();
    });
    quiet.log.clear();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(unruly.log.size(), 2U) << "an inner dispatch does not revive what was queued before";
    EXPECT_EQ(quiet.log.size(), 4U);

    quiet.log.clear();
    begin([&] { OnAnotherThread([&] { AddNet(); }); });
    OnAnotherThread([&] { AddNet(); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 2U) << "other threads may queue meanwhile, for the next time";
    removeItself();
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 4U);

    Dispatcher().RemoveEventObserver(&snapshot, &quiet);
    begin([&] { Dispatcher().RemoveEventObserver(&snapshot, &quiet); });
    Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);
    quiet.log.clear();
    AddNet();
    EXPECT_EQ(quiet.log.size(), 1U) << "removed by the one before it";
    Dispatcher().AddEventObserver(&snapshot, &quiet, "", 0);
    quiet.log.clear();
    OnAnotherThread([&] { AddNet(); });
    Dispatcher().DispatchEvents();
    EXPECT_EQ(quiet.log.size(), 1U) << "removed by an item in front of its own";
    removeItself();
}

TEST_F(EventDispatcher, ClientCallbacksAreDeferredAndRemovedLikeEvents) {
    struct Thrower : Plain {
        void OnAfterAdd(const Index&, const Index&, Orin::EEventsAdd, bool) override { throw std::runtime_error("no"); }
    } thrower;
    Tests::RecordingClient observer;
    Dispatcher().AddClientObserver(client.get(), &observer);
    EXPECT_TRUE(client->AddClientObserver(Dispatcher().GetClientObserver()));
    EXPECT_TRUE(snapshot->AddEventObserver(&thrower));
    const std::string want = "Unexpected small An observer threw: no";
    AddNet();
    EXPECT_EQ(observer.log, Log{want});
    OnAnotherThread([&] { AddNet(); });
    EXPECT_EQ(observer.log.size(), 1U);
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log, (Log{want, want}));
    OnAnotherThread([&] { AddNet(); });
    Dispatcher().RemoveClientObserver(client.get(), &observer);
    Dispatcher().DispatchEvents();
    EXPECT_EQ(observer.log.size(), 2U);
    EXPECT_TRUE(snapshot->RemoveEventObserver(&thrower));
    EXPECT_TRUE(client->RemoveClientObserver(Dispatcher().GetClientObserver()));
}

TEST_F(EventDispatcher, NothingIsLostWhileThreadsEditAndTheOwnerDrains) {
    constexpr unsigned Threads = 4;
    constexpr unsigned Edits = 300;
    // Each thread adds nets to a block of its own, labelled by thread and number.
    struct Order : EventObserverEx {
        std::vector<std::string> labels[Threads];
        std::string names[Threads];  // the last one of each thread's block
        unsigned breaks = 0;         // where a renaming did not go on from the last name
        void OnBlockNameChange(Index, const std::string& before, const std::string& after) override {
            std::string& name = names[static_cast<std::size_t>(after[0] - '0')];
            if (!name.empty() && before != name) ++breaks;
            name = after;
        }
        void OnAddNet(Index, Index, const std::string& label) override {
            labels[static_cast<std::size_t>(label[0] - '0')].push_back(label.substr(2));
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
    std::vector<std::string> want;
    for (unsigned edit = 0; edit < Edits; ++edit)
        want.push_back(std::to_string(edit));
    for (const std::vector<std::string>& labels : observer.labels)
        EXPECT_EQ(labels, want);
    EXPECT_EQ(observer.breaks, 0U);
    for (const std::string& name : observer.names)
        EXPECT_EQ(name.substr(1), " 296");
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
}

TEST_F(EventDispatcher, TheServiceReachesTheDispatcher) {
    Quill::InterfaceFactory* const factory = Quill::InterfaceManager::instance().getFactory("IORINEventDispatcher");
    ASSERT_NE(factory, nullptr);
    auto* const service = static_cast<IORINEventDispatcher*>(factory->internalCreate());
    Plain observer;
    service->AddEventObserver(&snapshot, &observer, "", 0);
    AddNet();
    EXPECT_EQ(observer.log.size(), 2U);
    Dispatcher().RemoveEventObserver(&snapshot, &observer);
    AddNet();
    EXPECT_EQ(observer.log.size(), 2U);
    factory->internalRelease(service);
    factory->internalRelease(nullptr);
}

}  // namespace
