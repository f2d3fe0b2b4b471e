// The rules of each callback, called by hand on what the dispatcher registers with a snapshot or a connection.
#include <algorithm>
#include <map>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "events/orin_event_dispatcher.h"
#include "orin/orin_pi.h"
#include "tests/events/fake_snapshot.h"
#include "tests/events/recording.h"

// g++ and clang tell of their sanitizer in different ways.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILL_FINDS_LEAKS
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define QUILL_FINDS_LEAKS
#endif
#if defined(QUILL_FINDS_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

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
    {"BeforeChange", 0, 14, 27},
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
// filter, by the kind and the type of the object.
const Case kEx[] = {
    {"AfterAdd", 5, 21, 57, "AddNet 21:1 - ''"},
    {"AfterAdd", 8, 16, 2, "AddBus 16:1 - ''"},
    {"AfterAdd", 14, 55, 49, "AddNetQuill 55:1 - ''"},
    {"BeforeDelete", 5, 7, 41, "DeleteBlockComp 7:1 - - 0"},
    {"BeforeDelete", 5, 69, 45, "DeleteGroup 69:1 - '' ''"},
    {"BeforeDelete", 5, 14, 47, "DeleteNet 14:1 - ''"},
    {"BeforeDelete", 5, 16, 4, "DeleteBus 16:1 - ''"},
    {"BeforeDelete", 14, 55, 44, "DeleteNetQuill 55:1 - ''"},
    {"BeforeChange", 0, 14, 23, "BeforeLabelChange 14:1 - ''"},
    {"BeforeChange", 0, 16, 23, "BeforeLabelChange 16:1 - ''"},
    {"AfterChange", 0, 7, 23, "AfterLabelChange 7:1 - ''"},
    {"BeforeChange", 0, 55, 13, "BeforeNetQuillSetData 55:1 - - 0"},
    {"AfterChange", 0, 55, 13, "AfterNetQuillSetData 55:1 - - 0"},
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
        const Index block = Of(5), net = Of(14);
        for (ClientObserver* const o : fake.observers) {
            o->OnErrorAdd("p", "e", block, net, EEventsAdd{57});
            o->OnErrorDelete("p", "e", block, Of(22), EEventsDelete{47});
            o->OnErrorDeleteAll("p", "e", net, EEventsDeleteAll{1});
            o->OnErrorChange("p", "e", net, EEventsChange{27});
            o->OnErrorQuillDataChange("p", "e", block, net, EEventsQuillDataChange{2});
            o->OnErrorConnectivityChange("p", "e", block, net, EEventsConnectivityChange{3});
            o->OnErrorSwap("p", "e", block, net, Of(55), EEventsSwap{1});
            o->OnErrorImport("p", "e", block, EEventsImport{1});
            o->OnErrorTransaction("p", "e");
            o->OnErrorUnexpected("p", "");
            o->OnWorkingModeChange(EClientWorkingMode{2});
            o->OnErrorSetAttribute("p", "e", net, kMark, "", EAttributeType::User, 0);
            o->OnRestore("p", "s");
            o->OnErrorSnapshotAdd("e", "s");
            o->OnErrorDefConstraintDelete("e", "s");
        }
    };
    const Log once = {"ErrorAdd 'p' 'e' 5:1 14:1 57",
                      "ErrorDelete 'p' 'e' 5:1 22:1 47",
                      "ErrorDeleteAll 'p' 'e' 14:1 1",
                      "ErrorChange 'p' 'e' 14:1 27",
                      "ErrorQuillDataChange 'p' 'e' 5:1 14:1 2",
                      "ErrorConnectivityChange 'p' 'e' 5:1 14:1 3",
                      "ErrorSwap 'p' 'e' 5:1 14:1 55:1 1",
                      "ErrorImport 'p' 'e' 5:1 1",
                      "ErrorTransaction 'p' 'e'",
                      "ErrorUnexpected 'p' ''",
                      "WorkingModeChange 2"};
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
    for (int round = 0; round < 3; ++round)
        for (auto& observer : observers) {
            dispatcher.RemoveEventObserver(&snapshot, &observer);
            dispatcher.AddEventObserver(&snapshot, &observer, "", 0);
            OnAnotherThread([&] { fake.observer->OnAfterTransaction(); });
        }
    dispatcher.DispatchEvents();
    for (auto& observer : observers) {
        EXPECT_EQ(observer.log, Log{"AfterTransaction"}) << "of its last registration";
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
    };
    Registered<Thrower> thrower(&CORINEventDispatcher::AddEventObserver);
    OnAnotherThread([&] {
#if defined(QUILL_FINDS_LEAKS)
        const __lsan::ScopedDisabler abandoned;  // an item whose call throws is not destroyed
#endif
        thrower.fake.observer->OnAfterTransaction();
        thrower.fake.observer->OnBeforeRollbackTransaction();
    });
    thrower.dispatcher.DispatchEvents();
    EXPECT_EQ(thrower.observer.log, (Log{"AfterTransaction", "BeforeRollbackTransaction"}));
    EXPECT_THROW(thrower.fake.observer->OnAfterTransaction(), std::runtime_error) << "that is the database's affair";
}

}  // namespace
