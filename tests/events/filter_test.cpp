// The rules of each callback, called by hand on what the dispatcher registers with a snapshot or a connection.
#include <algorithm>
#include <map>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "events/orin_event_dispatcher.h"
#include "tests/events/fake_snapshot.h"
#include "tests/events/recording.h"

namespace {

using namespace Orin;
using NQuillUtils::NEvents::CORINEventDispatcher;
using Tests::FakeSnapshot;
using Tests::Line;
using Tests::Log;
using Tests::OnAnotherThread;

Index Of(unsigned type) {
    return type == 0 ? Index() : Index(std::uint64_t{type} << 56 | 1);
}

// How a callback is made on the objects and the kind of a case. Those about one or two objects of any type are `typed`,
// by how many; and some of them are told of minor objects as well.
struct Callback {
    void (*call)(EventObserver&, const Index& parent, const Index& object, int kind);
    int typed = 0;
    bool minor = false;
};
#define CALL(expression) \
    [](EventObserver& o, [[maybe_unused]] auto& p, [[maybe_unused]] auto& x, [[maybe_unused]] int k) { o.expression; }

// The callback before a change and the one after it.
#define MOMENT(moment, name, arguments, ...) \
    std::pair<const std::string, Callback>(#moment #name, {CALL(On##moment##name arguments), __VA_ARGS__})
#define BOTH(...) MOMENT(Before, __VA_ARGS__), MOMENT(After, __VA_ARGS__)

const String kMark = "$$Internal___ReadOnlySheet";

const std::map<std::string, Callback> kCallbacks = {
    BOTH(Add, (p, x, EEventsAdd{k}, true), 2, false),
    BOTH(Delete, (p, x, EEventsDelete{k}, true), 2, true),
    BOTH(QuillDataChange, (p, x, EEventsQuillDataChange{k}, true), 2, false),
    BOTH(ConnectivityChange, (p, x, EEventsConnectivityChange{k}, true), 2, false),
    BOTH(DeleteAll, (x, EEventsDeleteAll{k}, true), 1, false),
    BOTH(Change, (x, EEventsChange{k}, true), 1, true),
    BOTH(Import, (x, EEventsImport{k}, true), 1, false),
    {"Lock", {CALL(OnLock(x, "p", "c"))}},
    {"UnLock", {CALL(OnUnLock(x, "p", "c"))}},
    {"MultiLock", {CALL(OnMultiLock({x}, "p", "c"))}},
    {"MultiUnLock", {CALL(OnMultiUnLock({x}, "p", "c"))}},
    {"BeforeRollbackTransaction", {CALL(OnBeforeRollbackTransaction())}},
    {"AfterTransaction", {CALL(OnAfterTransaction())}},
    {"BeforeTransaction", {[](EventObserver& o, auto&, auto&, int k) {
         bool veto = false;
         o.OnBeforeTransaction(static_cast<unsigned>(k), ETransactionType::Edit, veto);
         o.OnBeforeTransaction(static_cast<unsigned>(k), veto);
     }}},
    {"BeforeSwap", {CALL(OnBeforeSwap(p, x, x, EEventsSwap{k}, true))}},
    {"AfterSetAttribute", {CALL(OnAfterSetAttribute(x, kMark, "b", {}, 0, true))}},
    {"SetBareName", {CALL(OnAfterSetAttribute(x, "__ReadOnlySheet", "b", {}, 0, true))}},
    {"AfterRemoveAttribute", {CALL(OnAfterRemoveAttribute(x, kMark, {}, 0, true))}},
};

// One callback with the types of its two objects and its kind, and what the observer is told: nothing when it is "",
// the same callback when it is "=". "throws" is for a wrapper that throws a failed result.
struct Case {
    const char* callback;
    unsigned parent, object;
    int kind;
    const char* want = "=";
};

const Case kPlain[] = {
    {"Lock", 0, 21, 0, "Lock 21:1 'p' 'c'"},
    {"UnLock", 0, 8, 0, "UnLock 8:1 'p' 'c'"},
    {"MultiLock", 0, 21, 0, "MultiLock [21:1]1 'p' 'c'"},
    {"MultiUnLock", 0, 21, 0, "MultiUnLock [21:1]1 'p' 'c'"},
    {"BeforeTransaction", 0, 0, 7, "BeforeTransaction 7 0"},
    {"BeforeRollbackTransaction", 0, 0, 0, "BeforeRollbackTransaction"},
    {"AfterTransaction", 0, 0, 0, "AfterTransaction"},
    // Dropped.
    {"UnLock", 0, 21, 0, ""},
    {"BeforeSwap", 5, 14, 1, ""},
    {"AfterSetAttribute", 0, 5, 0, ""},
    {"AfterRemoveAttribute", 0, 5, 0, ""},
};

// Where no object can be read: what would be read is empty. Whether an event is translated is decided before the
// filter, by the kind and the type of the object. The other translations are those of a design that is edited.
const Case kEx[] = {
    {"AfterAdd", 5, 21, 57, "AddNet 21:1 - ''"},
    {"BeforeDelete", 5, 7, 41, "DeleteBlockComp 7:1 - - 0"},
    {"BeforeDelete", 5, 69, 45, "DeleteGroup 69:1 - '' ''"},
    {"BeforeDelete", 5, 16, 4, "DeleteBus 16:1 - ''"},
    {"BeforeDelete", 14, 55, 44, "DeleteNetQuill 55:1 - ''"},
    {"BeforeChange", 0, 16, 23, "BeforeLabelChange 16:1 - ''"},
    {"AfterChange", 0, 7, 23, "AfterLabelChange 7:1 - ''"},
    {"BeforeChange", 0, 55, 13, "BeforeNetQuillSetData 55:1 - - 0"},
    {"AfterSetAttribute", 0, 5, 0, "ReadOnlyFlagChange 5:1"},
    {"AfterRemoveAttribute", 0, 5, 0, "ReadOnlyFlagChange 5:1"},
    {"AfterSetAttribute", 0, 69, 0, "ReadOnlyFlagChange -"},
    {"AfterRemoveAttribute", 0, 14, 0, ""},
    {"SetBareName", 0, 5, 0, ""},
    {"BeforeDelete", 5, 22, 45, ""},
    {"BeforeDelete", 0, 5, 3, "throws"},
    {"BeforeChange", 0, 5, 27, "throws"},
    {"AfterChange", 0, 5, 27, "throws"},
};
const Case kExHandedOn[] = {
    {"AfterAdd", 5, 7, 53},      {"BeforeAdd", 5, 14, 57},   {"BeforeDelete", 5, 7, 3},   {"BeforeDelete", 5, 14, 41},
    {"BeforeDelete", 5, 16, 47}, {"BeforeDelete", 5, 14, 4}, {"BeforeDelete", 5, 14, 44}, {"AfterDelete", 5, 14, 47},
    {"AfterChange", 0, 8, 23},   {"AfterChange", 0, 14, 13}, {"AfterChange", 0, 69, 27},  {"AfterChange", 0, 5, 6},
};

const Case kNavigator[] = {
    {"BeforeChange", 0, 21, 3, "BeforeRipBus 21:1 - []0"},
    {"AfterChange", 0, 16, 3, "AfterRipBus 16:1 - []0"},
    {"BeforeDelete", 5, 16, 1, "DeleteBus 16:1 - []0"},
    {"BeforeDelete", 0, 5, 1, "DeleteBlock 5:1"},
    {"BeforeDelete", 5, 69, 1, "DeleteBlock 69:1"},
    {"AfterSetAttribute", 0, 5, 0, ""},
    {"BeforeChange", 0, 5, 6, "throws"},
    {"AfterChange", 0, 5, 7, "throws"},
};
const Case kNavigatorHandedOn[] = {
    {"BeforeChange", 0, 5, 23},  {"AfterChange", 0, 14, 6}, {"AfterChange", 0, 14, 23},
    {"BeforeDelete", 5, 14, 47}, {"AfterDelete", 5, 16, 4}, {"AfterAdd", 5, 14, 57},
};

// An observer that is registered with a snapshot; `Call` makes a callback of its wrapper.
template <class Observer>
struct Registered {
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    FakeSnapshot fake;
    ContainerT<const ISnapshot> snapshot{fake};
    Observer observer;

    template <class Add>
    explicit Registered(const Add& add) {
        (dispatcher.*add)(&snapshot, &observer, "", 0);
    }
    ~Registered() {
        dispatcher.RemoveEventObserver(&snapshot, &observer);
        dispatcher.DispatchEvents();
    }
    // Makes the calls on the owner thread and off it.
    template <class Calls>
    void Check(const Calls& calls, const Log& told) {
        observer.log.clear();
        calls();
        EXPECT_EQ(observer.log, told);
        dispatcher.DispatchEvents();
        OnAnotherThread(calls);
        EXPECT_EQ(observer.log, told) << "once, and not yet again";
        observer.log.clear();
        dispatcher.DispatchEvents();
        EXPECT_EQ(observer.log, told);
    }
};
using RegisteredPlain = Registered<Tests::Recording<EventObserver>>;

std::string Same(const std::string& callback, const Index& parent, const Index& object, int kind) {
    return kCallbacks.at(callback).typed == 2 ? Line(callback, parent, object, kind, 1)
                                              : Line(callback, object, kind, 1);
}

template <class Observer>
void CheckCases(Registered<Observer> registered, std::initializer_list<std::span<const Case>> tables) {
    const auto check = [&](const Case& one) {
        const Index parent = Of(one.parent), object = Of(one.object);
        const std::string same = Same(one.callback, parent, object, one.kind), want = one.want;
        SCOPED_TRACE(same);
        const auto make = [&] {
            kCallbacks.at(one.callback).call(*registered.fake.observer, parent, object, one.kind);
        };
        if (want == "throws")
            registered.Check([&] { EXPECT_THROW(make(), Result); }, {});
        else
            registered.Check(make, want.empty() ? Log{} : Log{want == "=" ? same : want});
    };
    for (const auto& table : tables)
        std::for_each(table.begin(), table.end(), check);
}

TEST(EventFilter, EachCallbackIsHandedOnTranslatedOrDroppedOnTheOwnerThreadAndOffIt) {
    using Dispatcher = CORINEventDispatcher;
    CheckCases(RegisteredPlain(&Dispatcher::AddEventObserver), {kPlain});
    CheckCases(Registered<Tests::RecordingEx>(&Dispatcher::AddEventObserverEx), {kEx, kExHandedOn});
    CheckCases(Registered<Tests::RecordingNavigator>(&Dispatcher::AddEventObserverNavigator),
               {kNavigator, kNavigatorHandedOn});
}

TEST(EventFilter, EachCallbackDropsTheTypesThatItsRuleNames) {
    RegisteredPlain registered(&CORINEventDispatcher::AddEventObserver);
    for (const auto& [name, callback] : kCallbacks) {
        if (callback.typed == 0) continue;
        SCOPED_TRACE(name);
        const auto isTold = [minor = callback.minor](unsigned type) {
            if ((type >= 21 && type <= 54) || type == 62 || type == 63 || type == 71) return false;
            return minor || (type != 8 && type != 11 && type != 12 && type != 13);
        };
        std::vector<std::pair<unsigned, unsigned>> objects;
        for (unsigned type = 1; type < 256; ++type)
            objects.insert(objects.end(), {{5, type}, {type, 14}, {type, 0x31}});
        Log told;
        for (const auto& [parent, object] : objects)
            if ((isTold(object) && (callback.typed == 1 || isTold(parent))) ||
                (name == "BeforeDelete" && object == 0x31))
                told.push_back(Same(name, Of(parent), Of(object), 1));
        registered.Check(
            [&, call = callback.call] {
                for (const auto& [parent, object] : objects)
                    call(*registered.fake.observer, Of(parent), Of(object), 1);
            },
            told);
    }
}

#ifndef QUILL_SANITIZED  // the item whose call throws is abandoned, which is a leak to those who look for them

TEST(EventFilter, AThrowingCallLeavesTheRestOfTheQueueToBeDelivered) {
    struct Thrower : Tests::Recording<EventObserver> {
        void OnAfterTransaction() override {
            Recording::OnAfterTransaction();
            throw std::runtime_error("no");
        }
    };
    Registered<Thrower> thrower(&CORINEventDispatcher::AddEventObserver);
    OnAnotherThread([&] {
        thrower.fake.observer->OnAfterTransaction();
        thrower.fake.observer->OnBeforeRollbackTransaction();
    });
    thrower.dispatcher.DispatchEvents();
    EXPECT_EQ(thrower.observer.log, (Log{"AfterTransaction", "BeforeRollbackTransaction"}));
    EXPECT_THROW(thrower.fake.observer->OnAfterTransaction(), std::runtime_error) << "that is the database's affair";
}

#endif

}  // namespace
