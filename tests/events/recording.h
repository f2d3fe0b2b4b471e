// Observers that write down what they are told.
#pragma once

#include <string>
#include <thread>
#include <vector>

#include "events/event_observers.h"

namespace Tests {

using Log = std::vector<std::string>;

inline std::string Text(const Orin::Index& index) {
    return std::to_string(index.Top()) + ":" + std::to_string(index.Low());
}

template <class Kind>
std::string Line(const char* name, const Orin::Index& parent, const Orin::Index& object, Kind kind, bool undo) {
    return std::string(name) + " " + (parent.IsEmpty() ? "" : Text(parent) + " ") + Text(object) + " " +
           std::to_string(static_cast<int>(kind)) + (undo ? " undo" : "");
}

// The database callbacks, on top of any observer base.
template <class Base>
class Recording : public Base {
public:
    Log log;

    using I = Orin::Index;
    using S = Orin::String;
    void OnBeforeAdd(const I& p, const I& o, Orin::EEventsAdd k, bool u) override {
        log.push_back(Line("BeforeAdd", p, o, k, u));
    }
    void OnBeforeDelete(const I& p, const I& o, Orin::EEventsDelete k, bool u) override {
        log.push_back(Line("BeforeDelete", p, o, k, u));
    }
    void OnBeforeDeleteAll(const I& o, Orin::EEventsDeleteAll k, bool u) override {
        log.push_back(Line("BeforeDeleteAll", {}, o, k, u));
    }
    void OnBeforeChange(const I& o, Orin::EEventsChange k, bool u) override {
        log.push_back(Line("BeforeChange", {}, o, k, u));
    }
    void OnBeforeQuillDataChange(const I& p, const I& o, Orin::EEventsQuillDataChange k, bool u) override {
        log.push_back(Line("BeforeData", p, o, k, u));
    }
    void OnBeforeConnectivityChange(const I& p, const I& o, Orin::EEventsConnectivityChange k, bool u) override {
        log.push_back(Line("BeforeConnectivity", p, o, k, u));
    }
    void OnBeforeImport(const I& o, Orin::EEventsImport k, bool u) override {
        log.push_back(Line("BeforeImport", {}, o, k, u));
    }
    void OnBeforeSwap(const I&, const I&, const I&, Orin::EEventsSwap, bool) override { log.push_back("Swap"); }
    void OnAfterAdd(const I& p, const I& o, Orin::EEventsAdd k, bool u) override {
        log.push_back(Line("AfterAdd", p, o, k, u));
    }
    void OnAfterDelete(const I& p, const I& o, Orin::EEventsDelete k, bool u) override {
        log.push_back(Line("AfterDelete", p, o, k, u));
    }
    void OnAfterDeleteAll(const I& o, Orin::EEventsDeleteAll k, bool u) override {
        log.push_back(Line("AfterDeleteAll", {}, o, k, u));
    }
    void OnAfterChange(const I& o, Orin::EEventsChange k, bool u) override {
        log.push_back(Line("AfterChange", {}, o, k, u));
    }
    void OnAfterQuillDataChange(const I& p, const I& o, Orin::EEventsQuillDataChange k, bool u) override {
        log.push_back(Line("AfterData", p, o, k, u));
    }
    void OnAfterConnectivityChange(const I& p, const I& o, Orin::EEventsConnectivityChange k, bool u) override {
        log.push_back(Line("AfterConnectivity", p, o, k, u));
    }
    void OnAfterImport(const I& o, Orin::EEventsImport k, bool u) override {
        log.push_back(Line("AfterImport", {}, o, k, u));
    }
    void OnAfterSetAttribute(const I&, const S&, const S&, Orin::EAttributeType, int, bool) override {
        log.push_back("SetAttribute");
    }
    void OnLock(const I& o, const S& a, const S& b) override { Lock("Lock ", Text(o), a, b); }
    void OnUnLock(const I& o, const S& a, const S& b) override { Lock("UnLock ", Text(o), a, b); }
    void OnMultiLock(const Orin::ListT<I>& o, const S& a, const S& b) override {
        Lock("MultiLock ", std::to_string(o.Count()), a, b);
    }
    void OnMultiUnLock(const Orin::ListT<I>& o, const S& a, const S& b) override {
        Lock("MultiUnLock ", std::to_string(o.Count()), a, b);
    }
    void OnBeforeTransaction(unsigned, const Orin::ETransactionType&, bool&) override { log.push_back("typed"); }
    void OnBeforeTransaction(unsigned number, bool& veto) override {
        log.push_back("Transaction " + std::to_string(number) + (veto ? " vetoed" : ""));
        veto = true;
    }
    void OnBeforeRollbackTransaction() override { log.push_back("Rollback"); }
    void OnAfterTransaction() override { log.push_back("AfterTransaction"); }

private:
    void Lock(const char* name, const std::string& what, const S& a, const S& b) {
        log.push_back(name + what + " " + std::string(a.View()) + " " + std::string(b.View()));
    }
};

class RecordingClient : public Orin::ClientObserver {
public:
    Log log;

    using I = Orin::Index;
    using S = Orin::String;
    void OnErrorAdd(const S& a, const S& b, const I& p, const I& o, Orin::EEventsAdd k) override {
        Error(Line("Add", p, o, k, false), a, b);
    }
    void OnErrorChange(const S& a, const S& b, const I& o, Orin::EEventsChange k) override {
        Error(Line("Change", {}, o, k, false), a, b);
    }
    void OnErrorSwap(const S& a, const S& b, const I& p, const I& f, const I& s, Orin::EEventsSwap k) override {
        Error("Swap " + Text(p) + Line("", f, s, k, false), a, b);
    }
    void OnErrorTransaction(const S& a, const S& b) override { Error("Transaction", a, b); }
    void OnErrorUnexpected(const S& a, const S& b) override { Error("Unexpected", a, b); }
    void OnWorkingModeChange(Orin::EClientWorkingMode mode) override {
        log.push_back("Mode " + std::to_string(static_cast<int>(mode)));
    }

private:
    void Error(const std::string& what, const S& a, const S& b) {
        log.push_back(what + " " + std::string(a.View()) + " " + std::string(b.View()));
    }
};

template <class Function>
void OnAnotherThread(const Function& function) {
    std::thread(function).join();
}

}  // namespace Tests
