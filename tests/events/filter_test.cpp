// The rules of each callback, called by hand on what the dispatcher registers with a snapshot.
#include <functional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "events/orin_event_dispatcher.h"
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
    const char* want;  // "" when it is dropped
};

const Index kBlock = Of(5);
const Index kNet = Of(14);

const Case kCases[] = {
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
    {"changes", [](auto& o) { o.OnAfterChange(Of(22), EEventsChange{1}, false); }, ""},
    {"data", [](auto& o) { o.OnBeforeQuillDataChange(kBlock, kNet, EEventsQuillDataChange{1}, false); },
     "BeforeData 5:1 14:1 1"},
    {"data of a pin", [](auto& o) { o.OnAfterQuillDataChange(kBlock, Of(8), EEventsQuillDataChange{1}, false); }, ""},
    {"connects", [](auto& o) { o.OnAfterConnectivityChange(kNet, kBlock, EEventsConnectivityChange{1}, false); },
     "AfterConnectivity 14:1 5:1 1"},
    {"connects a pin", [](auto& o) { o.OnBeforeConnectivityChange(kNet, Of(8), EEventsConnectivityChange{1}, false); },
     ""},
    {"import", [](auto& o) { o.OnBeforeImport(kBlock, EEventsImport{1}, false); }, "BeforeImport 5:1 1"},
    {"imported minor", [](auto& o) { o.OnAfterImport(Of(11), EEventsImport{1}, false); }, ""},
    {"swap", [](auto& o) { o.OnBeforeSwap(kBlock, kNet, kNet, EEventsSwap{1}, false); }, ""},
    {"attribute", [](auto& o) { o.OnAfterSetAttribute(kBlock, "a", "b", EAttributeType{0}, 0, false); }, ""},
    {"lock of any", [](auto& o) { o.OnLock(Of(21), "p", "c"); }, "Lock 21:1 p c"},
    {"unlock of relevant", [](auto& o) { o.OnUnLock(Of(8), "p", "c"); }, "UnLock 8:1 p c"},
    {"unlock of irrelevant", [](auto& o) { o.OnUnLock(Of(21), "p", "c"); }, ""},
    {"locks", [](auto& o) { o.OnMultiLock({Of(21)}, "p", "c"); }, "MultiLock 1 p c"},
    {"unlocks", [](auto& o) { o.OnMultiUnLock({Of(21)}, "p", "c"); }, "MultiUnLock 1 p c"},
    {"rollback", [](auto& o) { o.OnBeforeRollbackTransaction(); }, "Rollback"},
    {"end", [](auto& o) { o.OnAfterTransaction(); }, "AfterTransaction"},
};

TEST(EventFilter, EachCallbackHasItsRuleOnTheOwnerThreadAndOffIt) {
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    FakeSnapshot fake;
    ContainerT<const ISnapshot> snapshot(fake);
    Tests::Recording<EventObserver> observer;
    dispatcher.AddEventObserver(&snapshot, &observer, "", 0);
    ASSERT_NE(fake.observer, nullptr);
    for (const Case& one : kCases) {
        SCOPED_TRACE(one.why);
        const Log want = *one.want ? Log{one.want} : Log{};
        observer.log.clear();
        one.call(*fake.observer);
        EXPECT_EQ(observer.log, want);
        dispatcher.DispatchEvents();
        EXPECT_EQ(observer.log, want);
        observer.log.clear();
        OnAnotherThread([&] { one.call(*fake.observer); });
        EXPECT_EQ(observer.log, Log{});
        dispatcher.DispatchEvents();
        EXPECT_EQ(observer.log, want);
    }
    dispatcher.RemoveEventObserver(&snapshot, &observer);
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
