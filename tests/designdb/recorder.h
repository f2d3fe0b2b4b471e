// An observer that writes down what it hears.
#pragma once

#include <functional>

#include "tests/designdb/engine_design.h"

namespace Tests {

// Writes edits as "-add 7:0:1 53", '-' before and '+' after, '~' where it undoes, then calls `then`.
class Recorder final : public Orin::EventObserver {
    using Index = Orin::Index;
    using String = const Orin::String&;
    using Family = Orin::EAttributeType;
    using Link = Orin::EEventsConnectivityChange;
    using Drawing = Orin::EEventsQuillDataChange;

public:
    std::vector<std::string> heard;
    std::function<void(const std::string&)> then;
    bool withParents = false;  // as "-add 5:0:1 7:0:1 53"
    std::string vetoes;

    void OnBeforeAdd(const Index& p, const Index& o, Orin::EEventsAdd k, bool u) override { Note("-add", p, o, k, u); }
    void OnAfterAdd(const Index& p, const Index& o, Orin::EEventsAdd k, bool u) override { Note("+add", p, o, k, u); }
    void OnBeforeDelete(const Index& p, const Index& o, Orin::EEventsDelete k, bool u) override {
        Note("-del", p, o, k, u);
    }
    void OnAfterDelete(const Index& p, const Index& o, Orin::EEventsDelete k, bool u) override {
        Note("+del", p, o, k, u);
    }
    void OnBeforeChange(const Index& o, Orin::EEventsChange k, bool u) override { Note("-chg", {}, o, k, u); }
    void OnAfterChange(const Index& o, Orin::EEventsChange k, bool u) override { Note("+chg", {}, o, k, u); }
    void OnBeforeConnectivityChange(const Index& p, const Index& o, Link k, bool u) override {
        Note("-con", p, o, k, u);
    }
    void OnAfterConnectivityChange(const Index& p, const Index& o, Link k, bool u) override {
        Note("+con", p, o, k, u);
    }
    void OnBeforeQuillDataChange(const Index& p, const Index& o, Drawing k, bool u) override {
        Note("-drw", p, o, k, u);
    }
    void OnAfterQuillDataChange(const Index& p, const Index& o, Drawing k, bool u) override {
        Note("+drw", p, o, k, u);
    }
    void OnBeforeSetAttribute(const Index& o, String n, String v, Family, int, bool u) override {
        Note("-set " + std::string(n) + "=" + std::string(v), {}, o, 0, u);
    }
    void OnAfterSetAttribute(const Index& o, String n, String v, Family, int, bool u) override {
        Note("+set " + std::string(n) + "=" + std::string(v), {}, o, 0, u);
    }
    void OnBeforeRemoveAttribute(const Index& o, String n, Family, int, bool u) override {
        Note("-rem " + std::string(n), {}, o, 0, u);
    }
    void OnAfterRemoveAttribute(const Index& o, String n, Family, int, bool u) override {
        Note("+rem " + std::string(n), {}, o, 0, u);
    }
    void OnLock(const Index& o, String, String c) override { Who("lock", {o}, c); }
    void OnUnLock(const Index& o, String, String c) override { Who("unlock", {o}, c); }
    void OnMultiLock(const Orin::ListT<Index>& o, String, String c) override { Who("locks", o, c); }
    void OnMultiUnLock(const Orin::ListT<Index>& o, String, String c) override { Who("unlocks", o, c); }
    void OnBeforeTransaction(unsigned, const Orin::ETransactionType&, bool& veto) override { Ask("begin long", veto); }
    void OnBeforeTransaction(unsigned, bool& veto) override { Ask("begin short", veto); }
    void OnBeforeRollbackTransaction() override { Say("rollback"); }
    void OnAfterTransaction() override { Say("end"); }

private:
    template <class Kind>
    void Note(const std::string& what, const Index& parent, const Index& object, Kind kind, bool undo) {
        Say((undo ? "~" : "") + what + " " + (withParents && !parent.IsEmpty() ? Text(parent) + " " : "") +
            Text(object) + " " + std::to_string(static_cast<int>(kind)));
    }
    void Who(std::string what, const Orin::ListT<Index>& objects, String client) {
        for (const Index& object : objects)
            what += " " + Text(object);
        Say(what + " " + std::string(client.View()));
    }
    void Ask(const char* form, bool& veto) {
        if (vetoes == form) veto = true;
        Say(form);
    }
    void Say(std::string what) {
        heard.push_back(what);
        if (then) then(what);
    }
};

}  // namespace Tests
