// Observers that write down what they are told, as words: "AfterAdd 5:1 14:2 57 undo".
#pragma once

#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include "events/event_observers.h"

namespace Tests {

using Log = std::vector<std::string>;
using I = Orin::Index;
using S = Orin::String;
using IndexList = Orin::ListT<I>;

template <class Value>
std::string Word(const Value& value) {
    if constexpr (std::is_same_v<Value, I>)
        return value.IsEmpty() ? "-" : std::to_string(value.Top()) + ":" + std::to_string(value.Low());
    else if constexpr (std::is_same_v<Value, IndexList>)
        return "[" + (value.IsEmpty() ? "" : Word(value[0])) + "]" + std::to_string(value.Count());
    else if constexpr (std::is_same_v<Value, Orin::NetDataQuill>)
        return std::to_string(value.objectId);
    else if constexpr (std::is_same_v<Value, S>)
        return "'" + std::string(value.View()) + "'";
    else if constexpr (std::is_convertible_v<Value, std::string_view>)
        return "'" + std::string(value) + "'";
    else
        return std::to_string(static_cast<long>(value));
}

template <class... Values>
std::string Line(std::string name, const Values&... values) {
    ((name += " " + Word(values)), ...);
    return name;
}

// One callback, with its parameters and what of them is written down. The semicolon behind it belongs to the assertion.
#define TESTS_TELL(name, parameters, ...)              \
    void On##name parameters override {                \
        this->log.push_back(Line(#name, __VA_ARGS__)); \
    }                                                  \
    static_assert(true)

#define TESTS_TELL_BOTH(name, parameters, ...)         \
    TESTS_TELL(Before##name, parameters, __VA_ARGS__); \
    TESTS_TELL(After##name, parameters, __VA_ARGS__)

// The database callbacks, on top of any observer base.
template <class Base>
class Recording : public Base {
public:
    Log log;

    TESTS_TELL_BOTH(Add, (const I& p, const I& o, Orin::EEventsAdd k, bool u), p, o, k, u);
    TESTS_TELL_BOTH(Delete, (const I& p, const I& o, Orin::EEventsDelete k, bool u), p, o, k, u);
    TESTS_TELL_BOTH(DeleteAll, (const I& o, Orin::EEventsDeleteAll k, bool u), o, k, u);
    TESTS_TELL_BOTH(Change, (const I& o, Orin::EEventsChange k, bool u), o, k, u);
    TESTS_TELL_BOTH(QuillDataChange, (const I& p, const I& o, Orin::EEventsQuillDataChange k, bool u), p, o, k, u);
    TESTS_TELL_BOTH(ConnectivityChange, (const I& p, const I& o, Orin::EEventsConnectivityChange k, bool u), p, o, k,
                    u);
    TESTS_TELL_BOTH(Import, (const I& o, Orin::EEventsImport k, bool u), o, k, u);
    TESTS_TELL(Lock, (const I& o, const S& a, const S& b), o, a, b);
    TESTS_TELL(UnLock, (const I& o, const S& a, const S& b), o, a, b);
    TESTS_TELL(MultiLock, (const IndexList& o, const S& a, const S& b), o, a, b);
    TESTS_TELL(MultiUnLock, (const IndexList& o, const S& a, const S& b), o, a, b);
    void OnBeforeTransaction(unsigned number, bool& veto) override {
        log.push_back(Line("BeforeTransaction", number, veto));
        veto = true;
    }
    void OnBeforeRollbackTransaction() override { log.push_back("BeforeRollbackTransaction"); }
    void OnAfterTransaction() override { log.push_back("AfterTransaction"); }

    // Some of those that no wrapper hands on.
    TESTS_TELL(BeforeTransaction, (unsigned number, const Orin::ETransactionType&, bool&), number);
    TESTS_TELL(BeforeSwap, (const I& o, const I&, const I&, Orin::EEventsSwap, bool), o);
    TESTS_TELL(AfterSetAttribute, (const I& o, const S&, const S&, Orin::EAttributeType, int, bool), o);
    TESTS_TELL(AfterRemoveAttribute, (const I& o, const S&, Orin::EAttributeType, int, bool), o);
};

class RecordingEx : public Recording<NQuillUtils::NEvents::EventObserverEx> {
public:
    using L = const std::string&;
    using D = const Orin::NetDataQuill&;
    TESTS_TELL(AddNetQuill, (I o, I b, L l), o, b, l);
    TESTS_TELL(AddNet, (I o, I b, L l), o, b, l);
    TESTS_TELL(AddBus, (I o, I b, L l), o, b, l);
    TESTS_TELL(DeleteGroup, (I o, I b, L n, L t), o, b, n, t);
    TESTS_TELL(DeleteNetQuill, (I o, I b, L l), o, b, l);
    TESTS_TELL(DeleteNet, (I o, I b, L l), o, b, l);
    TESTS_TELL(DeleteBus, (I o, I b, L l), o, b, l);
    TESTS_TELL(DeleteBlock, (I o, L n), o, n);
    TESTS_TELL(DeleteBlockComp, (I o, I p, I c, std::uint32_t i), o, p, c, i);
    TESTS_TELL(BeforeNetQuillSetData, (I o, I n, I b, D d), o, n, b, d);
    TESTS_TELL(AfterNetQuillSetData, (I o, I n, I b, D d), o, n, b, d);
    TESTS_TELL(BeforeLabelChange, (I o, I b, L l), o, b, l);
    TESTS_TELL(AfterLabelChange, (I o, I b, L l), o, b, l);
    TESTS_TELL(BlockNameChange, (I o, L a, L b), o, a, b);
    TESTS_TELL(ReadOnlyFlagChange, (I o), o);
};

class RecordingNavigator : public Recording<NQuillUtils::NEvents::EventObserverNavigator> {
public:
    TESTS_TELL(BeforeRipBus, (I o, I b, const IndexList& g), o, b, g);
    TESTS_TELL(AfterRipBus, (I o, I b, const IndexList& g), o, b, g);
    TESTS_TELL(DeleteBus, (I o, I b, const IndexList& g), o, b, g);
    TESTS_TELL(DeleteBlock, (I o), o);
    TESTS_TELL(DesignRootChange, (I o, const std::string& a, const std::string& b), o, a, b);
};

class RecordingClient : public Orin::ClientObserver {
public:
    Log log;

    using T = const S&;
    using P = const I&;
    TESTS_TELL(ErrorAdd, (T a, T b, P p, P o, Orin::EEventsAdd k), a, b, p, o, k);
    TESTS_TELL(ErrorDelete, (T a, T b, P p, P o, Orin::EEventsDelete k), a, b, p, o, k);
    TESTS_TELL(ErrorDeleteAll, (T a, T b, P o, Orin::EEventsDeleteAll k), a, b, o, k);
    TESTS_TELL(ErrorChange, (T a, T b, P o, Orin::EEventsChange k), a, b, o, k);
    TESTS_TELL(ErrorQuillDataChange, (T a, T b, P p, P o, Orin::EEventsQuillDataChange k), a, b, p, o, k);
    TESTS_TELL(ErrorConnectivityChange, (T a, T b, P p, P o, Orin::EEventsConnectivityChange k), a, b, p, o, k);
    TESTS_TELL(ErrorSwap, (T a, T b, P p, P f, P s, Orin::EEventsSwap k), a, b, p, f, s, k);
    TESTS_TELL(ErrorImport, (T a, T b, P o, Orin::EEventsImport k), a, b, o, k);
    TESTS_TELL(ErrorTransaction, (T a, T b), a, b);
    TESTS_TELL(ErrorUnexpected, (T a, T b), a, b);
    TESTS_TELL(WorkingModeChange, (Orin::EClientWorkingMode mode), mode);
    // No wrapper hands these on.
    TESTS_TELL(ErrorSetAttribute, (T a, T b, P, T, T, Orin::EAttributeType, int), a, b);
    TESTS_TELL(Restore, (T a, T b), a, b);
    TESTS_TELL(ErrorSnapshotAdd, (T a, T b), a, b);
    TESTS_TELL(ErrorDefConstraintDelete, (T a, T b), a, b);
};

template <class Function>
void OnAnotherThread(const Function& function) {
    std::thread(function).join();
}

}  // namespace Tests
