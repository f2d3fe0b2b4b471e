// The rules of each callback, called by hand on what the dispatcher registers with a snapshot.
#include <functional>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "events/orin_event_dispatcher.h"
#include "orin/orin_pi.h"
#include "tests/events/fake_snapshot.h"
#include "tests/events/recording.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

using namespace Orin;
using NQuillUtils::NEvents::CORINEventDispatcher;
using Tests::FakeSnapshot;
using Tests::Log;
using Tests::OnAnotherThread;

Index Of(unsigned type) {
    return Index(std::uint64_t{type} << 56 | 1);
}

struct Case {
    const char* why;
    std::function<void(EventObserver&)> call;
    const char* want;  // "" when it is dropped, "throws" when the wrapper throws a failed result
};

const Index kBlock = Of(5);
const Index kNet = Of(14);
const Index kItem = Of(55);
const Index kGroup = Of(69);
const String kMark = "$$Internal___ReadOnlySheet";

// On the plain wrapper.
const Case kPlain[] = {
    {"relevant", [](auto& o) { o.OnBeforeAdd(kBlock, kNet, EEventsAdd{57}, true); }, "BeforeAdd 5:1 14:1 57 undo"},
    {"minor object", [](auto& o) { o.OnBeforeAdd(kBlock, Of(8), EEventsAdd{1}, false); }, ""},
    {"minor parent", [](auto& o) { o.OnAfterAdd(Of(13), kNet, EEventsAdd{1}, false); }, ""},
    {"irrelevant parent", [](auto& o) { o.OnAfterAdd(Of(21), kNet, EEventsAdd{1}, false); }, ""},
    {"before the range", [](auto& o) { o.OnAfterAdd(kBlock, Of(20), EEventsAdd{1}, false); }, "AfterAdd 5:1 20:1 1"},
    {"behind the range", [](auto& o) { o.OnAfterAdd(kBlock, Of(55), EEventsAdd{1}, false); }, "AfterAdd 5:1 55:1 1"},
    {"end of the range", [](auto& o) { o.OnAfterAdd(kBlock, Of(54), EEventsAdd{1}, false); }, ""},
    {"62", [](auto& o) { o.OnAfterAdd(kBlock, Of(62), EEventsAdd{1}, false); }, ""},
    {"64", [](auto& o) { o.OnAfterAdd(kBlock, Of(64), EEventsAdd{1}, false); }, "AfterAdd 5:1 64:1 1"},
    {"71", [](auto& o) { o.OnAfterAdd(kBlock, Of(71), EEventsAdd{1}, false); }, ""},
    {"deleted minor", [](auto& o) { o.OnBeforeDelete(kBlock, Of(8), EEventsDelete{1}, false); },
     "BeforeDelete 5:1 8:1 1"},
    {"deleted 0x31", [](auto& o) { o.OnBeforeDelete(Of(63), Of(0x31), EEventsDelete{1}, false); },
     "BeforeDelete 63:1 49:1 1"},
    {"deleted 0x32", [](auto& o) { o.OnBeforeDelete(kBlock, Of(0x32), EEventsDelete{1}, false); }, ""},
    {"0x31 is gone", [](auto& o) { o.OnAfterDelete(kBlock, Of(0x31), EEventsDelete{1}, false); }, ""},
    {"minor is gone", [](auto& o) { o.OnAfterDelete(Of(8), Of(11), EEventsDelete{1}, false); },
     "AfterDelete 8:1 11:1 1"},
    {"all", [](auto& o) { o.OnBeforeDeleteAll(kNet, EEventsDeleteAll{1}, false); }, "BeforeDeleteAll 14:1 1"},
    {"all of minor", [](auto& o) { o.OnBeforeDeleteAll(Of(12), EEventsDeleteAll{1}, false); }, ""},
    {"all gone", [](auto& o) { o.OnAfterDeleteAll(kNet, EEventsDeleteAll{1}, false); }, "AfterDeleteAll 14:1 1"},
    {"minor changes", [](auto& o) { o.OnBeforeChange(Of(12), EEventsChange{1}, false); }, "BeforeChange 12:1 1"},
    {"other renamed", [](auto& o) { o.OnBeforeChange(kNet, EEventsChange{27}, false); }, "BeforeChange 14:1 27"},
    {"changed", [](auto& o) { o.OnAfterChange(Of(8), EEventsChange{1}, false); }, "AfterChange 8:1 1"},
    {"irrelevant changed", [](auto& o) { o.OnAfterChange(Of(22), EEventsChange{1}, false); }, ""},
    {"irrelevant changes", [](auto& o) { o.OnBeforeChange(Of(22), EEventsChange{1}, false); }, ""},
    {"data", [](auto& o) { o.OnBeforeQuillDataChange(kBlock, kNet, EEventsQuillDataChange{1}, false); },
     "BeforeData 5:1 14:1 1"},
    {"data is changed", [](auto& o) { o.OnAfterQuillDataChange(kBlock, kNet, EEventsQuillDataChange{1}, true); },
     "AfterData 5:1 14:1 1 undo"},
    {"data of a pin", [](auto& o) { o.OnAfterQuillDataChange(kBlock, Of(8), EEventsQuillDataChange{1}, false); }, ""},
    {"connects", [](auto& o) { o.OnAfterConnectivityChange(kNet, kBlock, EEventsConnectivityChange{1}, false); },
     "AfterConnectivity 14:1 5:1 1"},
    {"will connect", [](auto& o) { o.OnBeforeConnectivityChange(kNet, kBlock, EEventsConnectivityChange{1}, false); },
     "BeforeConnectivity 14:1 5:1 1"},
    {"connects a pin", [](auto& o) { o.OnBeforeConnectivityChange(kNet, Of(8), EEventsConnectivityChange{1}, false); },
     ""},
    {"import", [](auto& o) { o.OnBeforeImport(kBlock, EEventsImport{1}, false); }, "BeforeImport 5:1 1"},
    {"imported", [](auto& o) { o.OnAfterImport(kBlock, EEventsImport{1}, false); }, "AfterImport 5:1 1"},
    {"imported minor", [](auto& o) { o.OnAfterImport(Of(11), EEventsImport{1}, false); }, ""},
    {"swap", [](auto& o) { o.OnBeforeSwap(kBlock, kNet, kNet, EEventsSwap{1}, false); }, ""},
    {"swapped", [](auto& o) { o.OnAfterSwap(kBlock, kNet, kNet, EEventsSwap{1}, false); }, ""},
    {"attributes",
     [](auto& o) {
         o.OnBeforeSetAttribute(kBlock, kMark, "b", EAttributeType{0}, 0, false);
         o.OnBeforeSetAttributes(kBlock, {}, 0, false);
         o.OnBeforeRemoveAttribute(kBlock, kMark, EAttributeType{0}, 0, false);
         o.OnBeforeRemoveAttributes(kBlock, EAttributeType{0}, 0, false);
         o.OnAfterSetAttribute(kBlock, kMark, "b", EAttributeType{0}, 0, false);
         o.OnAfterSetAttributes(kBlock, {}, 0, false);
         o.OnAfterRemoveAttribute(kBlock, kMark, EAttributeType{0}, 0, false);
         o.OnAfterRemoveAttributes(kBlock, EAttributeType{0}, 0, false);
     },
     ""},
    {"lock of any", [](auto& o) { o.OnLock(Of(21), "p", "c"); }, "Lock 21:1 p c"},
    {"unlock of relevant", [](auto& o) { o.OnUnLock(Of(8), "p", "c"); }, "UnLock 8:1 p c"},
    {"unlock of irrelevant", [](auto& o) { o.OnUnLock(Of(21), "p", "c"); }, ""},
    {"locks", [](auto& o) { o.OnMultiLock({Of(21)}, "p", "c"); }, "MultiLock 1 p c"},
    {"unlocks", [](auto& o) { o.OnMultiUnLock({Of(21)}, "p", "c"); }, "MultiUnLock 1 p c"},
    {"typed transaction",
     [](auto& o) {
         bool veto = false;
         o.OnBeforeTransaction(7, ETransactionType{0}, veto);
     },
     ""},
    {"transaction",
     [](auto& o) {
         bool veto = false;
         o.OnBeforeTransaction(7, veto);
     },
     "Transaction 7"},
    {"rollback", [](auto& o) { o.OnBeforeRollbackTransaction(); }, "Rollback"},
    {"end", [](auto& o) { o.OnAfterTransaction(); }, "AfterTransaction"},
};

// On the extended wrapper, where no object can be read: what would be read is empty. Whether an event is translated is
// decided before the filter.
const Case kEx[] = {
    {"any type", [](auto& o) { o.OnAfterAdd(kBlock, Of(21), EEventsAdd{57}, false); }, "AddNet 21:1 0:0 "},
    {"bus", [](auto& o) { o.OnAfterAdd(Of(8), Of(16), EEventsAdd{2}, true); }, "AddBus 16:1 0:0 "},
    {"piece of a net", [](auto& o) { o.OnAfterAdd(kNet, kItem, EEventsAdd{49}, false); }, "AddNetQuill 55:1 0:0 "},
    {"component", [](auto& o) { o.OnAfterAdd(kBlock, Of(7), EEventsAdd{53}, false); }, "AfterAdd 5:1 7:1 53"},
    {"before", [](auto& o) { o.OnBeforeAdd(kBlock, kNet, EEventsAdd{57}, false); }, "BeforeAdd 5:1 14:1 57"},
    {"block", [](auto& o) { o.OnBeforeDelete({}, kBlock, EEventsDelete{3}, false); }, "throws"},
    {"3, no block", [](auto& o) { o.OnBeforeDelete(kBlock, Of(7), EEventsDelete{3}, false); },
     "BeforeDelete 5:1 7:1 3"},
    {"component", [](auto& o) { o.OnBeforeDelete(kBlock, Of(7), EEventsDelete{41}, false); },
     "DeleteBlockComp 7:1 0:0 0:0 0"},
    {"41, no component", [](auto& o) { o.OnBeforeDelete(kBlock, kNet, EEventsDelete{41}, false); },
     "BeforeDelete 5:1 14:1 41"},
    {"group", [](auto& o) { o.OnBeforeDelete(kBlock, kGroup, EEventsDelete{45}, false); }, "DeleteGroup 69:1 0:0  "},
    {"45, no group", [](auto& o) { o.OnBeforeDelete(kBlock, Of(22), EEventsDelete{45}, false); }, ""},
    {"net", [](auto& o) { o.OnBeforeDelete(kBlock, kNet, EEventsDelete{47}, false); }, "DeleteNet 14:1 0:0 "},
    {"bus", [](auto& o) { o.OnBeforeDelete(kBlock, Of(16), EEventsDelete{4}, false); }, "DeleteBus 16:1 0:0 "},
    {"net, as a bus", [](auto& o) { o.OnBeforeDelete(kBlock, kNet, EEventsDelete{4}, false); },
     "BeforeDelete 5:1 14:1 4"},
    {"piece", [](auto& o) { o.OnBeforeDelete(kNet, kItem, EEventsDelete{44}, false); }, "DeleteNetQuill 55:1 0:0 "},
    {"net is gone", [](auto& o) { o.OnAfterDelete(kBlock, kNet, EEventsDelete{47}, false); },
     "AfterDelete 5:1 14:1 47"},
    {"label", [](auto& o) { o.OnBeforeChange(kNet, EEventsChange{23}, false); }, "BeforeLabel 14:1 0:0 "},
    {"label of a bus", [](auto& o) { o.OnAfterChange(Of(16), EEventsChange{23}, false); }, "AfterLabel 16:1 0:0 "},
    {"of a component", [](auto& o) { o.OnAfterChange(Of(7), EEventsChange{23}, false); }, "AfterLabel 7:1 0:0 "},
    {"of a pin", [](auto& o) { o.OnBeforeChange(Of(8), EEventsChange{23}, false); }, "BeforeChange 8:1 23"},
    {"data", [](auto& o) { o.OnBeforeChange(kItem, EEventsChange{13}, false); }, "BeforeSetData 55:1 0:0 0:0 0"},
    {"data", [](auto& o) { o.OnAfterChange(kItem, EEventsChange{13}, false); }, "AfterSetData 55:1 0:0 0:0 0"},
    {"13, no piece", [](auto& o) { o.OnAfterChange(kNet, EEventsChange{13}, false); }, "AfterChange 14:1 13"},
    {"name", [](auto& o) { o.OnBeforeChange(kBlock, EEventsChange{27}, false); }, "throws"},
    {"name", [](auto& o) { o.OnAfterChange(kBlock, EEventsChange{27}, false); }, "throws"},
    {"of a group", [](auto& o) { o.OnAfterChange(kGroup, EEventsChange{27}, false); }, "AfterChange 69:1 27"},
    {"set", [](auto& o) { o.OnAfterSetAttribute(kBlock, kMark, "", EAttributeType{0}, 0, false); },
     "ReadOnly 5:1 0:0 "},
    {"removed", [](auto& o) { o.OnAfterRemoveAttribute(kBlock, kMark, EAttributeType{0}, 0, false); },
     "ReadOnly 5:1 0:0 "},
    {"no owner", [](auto& o) { o.OnAfterRemoveAttribute(kGroup, kMark, EAttributeType{0}, 0, false); },
     "ReadOnly 0:0 0:0 "},
    {"of a net", [](auto& o) { o.OnAfterSetAttribute(kNet, kMark, "", EAttributeType{0}, 0, false); }, ""},
    {"bare", [](auto& o) { o.OnAfterSetAttribute(kBlock, "__ReadOnlySheet", "", EAttributeType{0}, 0, false); }, ""},
    {"too early", [](auto& o) { o.OnBeforeSetAttribute(kBlock, kMark, "", EAttributeType{0}, 0, false); }, ""},
};

const Case kNavigator[] = {
    {"rip of any", [](auto& o) { o.OnBeforeChange(Of(21), EEventsChange{3}, false); }, "BeforeRip 21:1 0:0 "},
    {"ripped", [](auto& o) { o.OnAfterChange(Of(16), EEventsChange{3}, false); }, "AfterRip 16:1 0:0 "},
    {"design name", [](auto& o) { o.OnBeforeChange(kBlock, EEventsChange{6}, false); }, "throws"},
    {"removed", [](auto& o) { o.OnAfterChange(kBlock, EEventsChange{7}, false); }, "throws"},
    {"of a net", [](auto& o) { o.OnAfterChange(kNet, EEventsChange{6}, false); }, "AfterChange 14:1 6"},
    {"label", [](auto& o) { o.OnAfterChange(kNet, EEventsChange{23}, false); }, "AfterChange 14:1 23"},
    {"bus", [](auto& o) { o.OnBeforeDelete(kBlock, Of(16), EEventsDelete{1}, false); }, "DeleteBus 16:1 0:0 "},
    {"block", [](auto& o) { o.OnBeforeDelete({}, kBlock, EEventsDelete{1}, false); }, "DeleteBlock 5:1"},
    {"group", [](auto& o) { o.OnBeforeDelete(kBlock, kGroup, EEventsDelete{1}, false); }, "DeleteBlock 69:1"},
    {"net", [](auto& o) { o.OnBeforeDelete(kBlock, kNet, EEventsDelete{47}, false); }, "BeforeDelete 5:1 14:1 47"},
    {"bus is gone", [](auto& o) { o.OnAfterDelete(kBlock, Of(16), EEventsDelete{4}, false); },
     "AfterDelete 5:1 16:1 4"},
    {"add", [](auto& o) { o.OnAfterAdd(kBlock, kNet, EEventsAdd{57}, false); }, "AfterAdd 5:1 14:1 57"},
    {"mark", [](auto& o) { o.OnAfterSetAttribute(kBlock, kMark, "", EAttributeType{0}, 0, false); }, ""},
};

template <class Observer, class Add, class Cases>
void CheckOnAndOffTheOwnerThread(const Add& add, const Cases& cases) {
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    FakeSnapshot fake;
    ContainerT<const ISnapshot> snapshot(fake);
    Observer observer;
    (dispatcher.*add)(&snapshot, &observer, "", 0);
    ASSERT_NE(fake.observer, nullptr);
    for (const Case& one : cases) {
        SCOPED_TRACE(std::string(one.why) + ": " + one.want);
        const bool throws = one.want == std::string("throws");
        const Log want = *one.want && !throws ? Log{one.want} : Log{};
        const auto call = [&] {
            if (throws)
                EXPECT_THROW(one.call(*fake.observer), Result);
            else
                one.call(*fake.observer);
        };
        observer.log.clear();
        call();
        EXPECT_EQ(observer.log, want);
        dispatcher.DispatchEvents();
        EXPECT_EQ(observer.log, want);
        observer.log.clear();
        OnAnotherThread(call);
        EXPECT_EQ(observer.log, Log{});
        dispatcher.DispatchEvents();
        EXPECT_EQ(observer.log, want);
    }
    dispatcher.RemoveEventObserver(&snapshot, &observer);
    dispatcher.DispatchEvents();
}

TEST(EventFilter, EachCallbackHasItsRuleOnTheOwnerThreadAndOffIt) {
    using Dispatcher = CORINEventDispatcher;
    CheckOnAndOffTheOwnerThread<Tests::Recording<EventObserver>>(&Dispatcher::AddEventObserver, kPlain);
    CheckOnAndOffTheOwnerThread<Tests::RecordingEx>(&Dispatcher::AddEventObserverEx, kEx);
    CheckOnAndOffTheOwnerThread<Tests::RecordingNavigator>(&Dispatcher::AddEventObserverNavigator, kNavigator);
}

// Keeps the client observers that are registered with it.
class FakeConnection : public Connection {
public:
    mutable std::vector<ClientObserver*> observers;

    Result GetSnapshotByName(ContainerT<const ISnapshot>&, const String&) const override { return {}; }
    Result AddClientObserver(ClientObserver* added) const override {
        observers.push_back(added);
        return {};
    }
    Result RemoveClientObserver(ClientObserver* removed) const override {
        std::erase(observers, removed);
        return {};
    }
    void Close() const noexcept override {}

private:
    void OnUnreferenced() const noexcept override {}
};

TEST(ClientFilter, EachCallbackHasItsRuleOnTheOwnerThreadAndOffIt) {
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    const FakeConnection fake;
    fake.AddReference();
    OrinPI connection{RefPtr<const Connection>(&fake)};
    Tests::RecordingClient observer;
    const auto calls = [&] {
        for (ClientObserver* const o : fake.observers) {
            o->OnErrorAdd("p", "e", kBlock, kNet, EEventsAdd{57});
            o->OnErrorDelete("p", "e", kBlock, Of(22), EEventsDelete{47});
            o->OnErrorDeleteAll("p", "e", kNet, EEventsDeleteAll{1});
            o->OnErrorChange("p", "e", kNet, EEventsChange{27});
            o->OnErrorQuillDataChange("p", "e", kBlock, kNet, EEventsQuillDataChange{2});
            o->OnErrorConnectivityChange("p", "e", kBlock, kNet, EEventsConnectivityChange{3});
            o->OnErrorSwap("p", "e", kBlock, kNet, kItem, EEventsSwap{1});
            o->OnErrorImport("p", "e", kBlock, EEventsImport{1});
            o->OnErrorTransaction("p", "e");
            o->OnErrorUnexpected("p", "");
            o->OnWorkingModeChange(EClientWorkingMode{2});
            o->OnErrorSetAttribute("p", "e", kNet, kMark, "", EAttributeType{0}, 0);
            o->OnRestore("p", "s");
            o->OnErrorSnapshotAdd("e", "s");
            o->OnErrorDefConstraintDelete("e", "s");
        }
    };
    const Log once = {"Add 5:1 14:1 57 p e",
                      "Delete 5:1 22:1 47 p e",
                      "DeleteAll 14:1 1 p e",
                      "Change 14:1 27 p e",
                      "Data 5:1 14:1 2 p e",
                      "Connectivity 5:1 14:1 3 p e",
                      "Swap 5:1 14:1 55:1 1 p e",
                      "Import 5:1 1 p e",
                      "Transaction p e",
                      "Unexpected p ",
                      "Mode 2"};
    Log twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    dispatcher.AddClientObserver(&connection, &observer);
    dispatcher.AddClientObserver(nullptr, &observer);
    dispatcher.AddClientObserver(&connection, nullptr);
    calls();
    EXPECT_EQ(observer.log, once);
    dispatcher.DispatchEvents();
    OnAnotherThread(calls);
    EXPECT_EQ(observer.log, once);
    dispatcher.DispatchEvents();
    EXPECT_EQ(observer.log, twice);

    observer.log.clear();
    dispatcher.AddClientObserver(&connection, &observer);
    calls();
    EXPECT_EQ(observer.log, twice) << "the same observer may be registered twice";
    OnAnotherThread(calls);
    dispatcher.RemoveClientObserver(&connection, &observer);
    observer.log.clear();
    dispatcher.DispatchEvents();
    EXPECT_EQ(observer.log, Log{}) << "what was queued is not told, whichever registration it came through";
    calls();
    EXPECT_EQ(observer.log, once) << "the other registration stands";
    dispatcher.RemoveClientObserver(&connection, &observer);
    dispatcher.RemoveClientObserver(&connection, &observer);
    EXPECT_TRUE(fake.observers.empty());
    dispatcher.DispatchEvents();
}

TEST(EventFilter, ManyRemovedObserversAreToldApartFromThoseThatCameBack) {
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    FakeSnapshot fake;
    ContainerT<const ISnapshot> snapshot(fake);
    std::vector<Tests::Recording<EventObserver>> observers(40);
    const auto registerAll = [&] {
        for (auto& observer : observers) {
            dispatcher.AddEventObserver(&snapshot, &observer, "", 0);
            OnAnotherThread([&] { fake.observer->OnAfterTransaction(); });
        }
    };
    for (int round = 0; round < 2; ++round) {
        registerAll();
        for (auto& observer : observers)
            dispatcher.RemoveEventObserver(&snapshot, &observer);
    }
    registerAll();
    dispatcher.DispatchEvents();
    for (auto& observer : observers) {
        EXPECT_EQ(observer.log, Log{"AfterTransaction"});
        dispatcher.RemoveEventObserver(&snapshot, &observer);
    }
    dispatcher.DispatchEvents();
}

TEST(EventFilter, AThrowingCallLeavesTheRestOfTheQueueToBeDelivered) {
    struct Thrower : Tests::Recording<EventObserver> {
        void OnAfterTransaction() override {
            Recording::OnAfterTransaction();
            throw std::runtime_error("no");
        }
    } thrower;
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    FakeSnapshot fake;
    ContainerT<const ISnapshot> snapshot(fake);
    dispatcher.AddEventObserver(&snapshot, &thrower, "", 0);
    OnAnotherThread([&] {
#if defined(__SANITIZE_ADDRESS__)
        const __lsan::ScopedDisabler abandoned;  // an item whose call throws is not destroyed
#endif
        fake.observer->OnAfterTransaction();
        fake.observer->OnBeforeRollbackTransaction();
    });
    dispatcher.DispatchEvents();
    EXPECT_EQ(thrower.log, (Log{"AfterTransaction", "Rollback"}));
    EXPECT_THROW(fake.observer->OnAfterTransaction(), std::runtime_error) << "a direct call is the database's affair";
    dispatcher.RemoveEventObserver(&snapshot, &thrower);
    dispatcher.DispatchEvents();
}

}  // namespace
