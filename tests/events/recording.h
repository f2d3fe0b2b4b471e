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
    void OnBeforeSwap(const I&, const I&, const I&, Orin::EEventsSwap, bool) override { Never(); }
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
    void OnBeforeSetAttribute(const I&, const S&, const S&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnBeforeSetAttributes(const I&, const Orin::ListAttribute&, int, bool) override { Never(); }
    void OnBeforeRemoveAttribute(const I&, const S&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnBeforeRemoveAttributes(const I&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnAfterSetAttribute(const I&, const S&, const S&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnAfterSetAttributes(const I&, const Orin::ListAttribute&, int, bool) override { Never(); }
    void OnAfterRemoveAttribute(const I&, const S&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnAfterRemoveAttributes(const I&, Orin::EAttributeType, int, bool) override { Never(); }
    void OnAfterSwap(const I&, const I&, const I&, Orin::EEventsSwap, bool) override { Never(); }
    void OnLock(const I& o, const S& a, const S& b) override { Lock("Lock ", Text(o), a, b); }
    void OnUnLock(const I& o, const S& a, const S& b) override { Lock("UnLock ", Text(o), a, b); }
    void OnMultiLock(const Orin::ListT<I>& o, const S& a, const S& b) override {
        Lock("MultiLock ", std::to_string(o.Count()), a, b);
    }
    void OnMultiUnLock(const Orin::ListT<I>& o, const S& a, const S& b) override {
        Lock("MultiUnLock ", std::to_string(o.Count()), a, b);
    }
    void OnBeforeTransaction(unsigned, const Orin::ETransactionType&, bool&) override { Never(); }
    void OnBeforeTransaction(unsigned number, bool& veto) override {
        log.push_back("Transaction " + std::to_string(number) + (veto ? " vetoed" : ""));
        veto = true;
    }
    void OnBeforeRollbackTransaction() override { log.push_back("Rollback"); }
    void OnAfterTransaction() override { log.push_back("AfterTransaction"); }

private:
    void Never() { log.push_back("what no wrapper hands on"); }
    void Lock(const char* name, const std::string& what, const S& a, const S& b) {
        log.push_back(name + what + " " + std::string(a.View()) + " " + std::string(b.View()));
    }
};

class RecordingEx : public Recording<NQuillUtils::NEvents::EventObserverEx> {
public:
    using Index = Orin::Index;
    using L = const std::string&;
    void OnAddNetQuill(Index o, Index b, L l) override { Add("AddNetQuill", o, b, l); }
    void OnAddNet(Index o, Index b, L l) override { Add("AddNet", o, b, l); }
    void OnAddBus(Index o, Index b, L l) override { Add("AddBus", o, b, l); }
    void OnDeleteGroup(Index o, Index b, L n, L t) override { Add("DeleteGroup", o, b, n + " " + t); }
    void OnDeleteNetQuill(Index o, Index b, L l) override { Add("DeleteNetQuill", o, b, l); }
    void OnDeleteNet(Index o, Index b, L l) override { Add("DeleteNet", o, b, l); }
    void OnDeleteBus(Index o, Index b, L l) override { Add("DeleteBus", o, b, l); }
    void OnDeleteBlock(Index o, L n) override { Add("DeleteBlock", o, {}, n); }
    void OnDeleteBlockComp(Index o, Index p, Index c, std::uint32_t i) override {
        Add("DeleteBlockComp", o, p, Text(c) + " " + std::to_string(i));
    }
    void OnBeforeNetQuillSetData(Index o, Index n, Index b, const Orin::NetDataQuill& d) override {
        Add("BeforeSetData", o, n, Text(b) + " " + std::to_string(d.objectId));
    }
    void OnAfterNetQuillSetData(Index o, Index n, Index b, const Orin::NetDataQuill& d) override {
        Add("AfterSetData", o, n, Text(b) + " " + std::to_string(d.objectId));
    }
    void OnBeforeLabelChange(Index o, Index b, L l) override { Add("BeforeLabel", o, b, l); }
    void OnAfterLabelChange(Index o, Index b, L l) override { Add("AfterLabel", o, b, l); }
    void OnBlockNameChange(Index o, L a, L b) override { Add("BlockName", o, {}, a + " " + b); }
    void OnReadOnlyFlagChange(Index o) override { Add("ReadOnly", o, {}, ""); }

private:
    void Add(const char* what, Index o, Index b, const std::string& rest) {
        log.push_back(std::string(what) + " " + Text(o) + " " + Text(b) + " " + rest);
    }
};

class RecordingNavigator : public Recording<NQuillUtils::NEvents::EventObserverNavigator> {
public:
    using Index = Orin::Index;
    using G = const Orin::ListT<Index>&;
    void OnBeforeRipBus(Index o, Index b, G g) override { Bus("BeforeRip", o, b, g); }
    void OnAfterRipBus(Index o, Index b, G g) override { Bus("AfterRip", o, b, g); }
    void OnDeleteBus(Index o, Index b, G g) override { Bus("DeleteBus", o, b, g); }
    void OnDeleteBlock(Index o) override { log.push_back("DeleteBlock " + Text(o)); }
    void OnDesignRootChange(Index o, const std::string& a, const std::string& b) override {
        log.push_back("Root " + Text(o) + " " + a + ">" + b);
    }

private:
    void Bus(const char* what, Index o, Index b, G g) {
        log.push_back(std::string(what) + " " + Text(o) + " " + Text(b) + " " + (g.IsEmpty() ? "" : Text(g[0])));
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
    void OnErrorDelete(const S& a, const S& b, const I& p, const I& o, Orin::EEventsDelete k) override {
        Error(Line("Delete", p, o, k, false), a, b);
    }
    void OnErrorDeleteAll(const S& a, const S& b, const I& o, Orin::EEventsDeleteAll k) override {
        Error(Line("DeleteAll", {}, o, k, false), a, b);
    }
    void OnErrorChange(const S& a, const S& b, const I& o, Orin::EEventsChange k) override {
        Error(Line("Change", {}, o, k, false), a, b);
    }
    void OnErrorQuillDataChange(const S& a, const S& b, const I& p, const I& o,
                                Orin::EEventsQuillDataChange k) override {
        Error(Line("Data", p, o, k, false), a, b);
    }
    void OnErrorConnectivityChange(const S& a, const S& b, const I& p, const I& o,
                                   Orin::EEventsConnectivityChange k) override {
        Error(Line("Connectivity", p, o, k, false), a, b);
    }
    void OnErrorImport(const S& a, const S& b, const I& o, Orin::EEventsImport k) override {
        Error(Line("Import", {}, o, k, false), a, b);
    }
    void OnErrorSetAttribute(const S& a, const S& b, const I&, const S&, const S&, Orin::EAttributeType, int) override {
        Error("Attribute", a, b);
    }
    void OnRestore(const S& a, const S& b) override { Error("Restore", a, b); }
    void OnErrorSnapshotAdd(const S& a, const S& b) override { Error("Snapshot", a, b); }
    void OnErrorDefConstraintDelete(const S& a, const S& b) override { Error("Constraint", a, b); }
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
