// An observer that writes down what it hears.
#pragma once

#include <functional>

#include "tests/designdb/engine_design.h"

namespace Tests {

// Writes edits as "-add 7:0:1 53", '-' before and '+' after, '~' where it undoes, then calls `then`.
class Recorder final : public Orin::EventObserver {
    using Index = const Orin::Index&;
    using String = const Orin::String&;
    using Indexes = Orin::ListT<Orin::Index>;
    using Family = Orin::EAttributeType;
    using Link = Orin::EEventsConnectivityChange;
    using Drawing = Orin::EEventsQuillDataChange;

public:
    std::vector<std::string> heard;
    std::function<void(const std::string&)> then;
    bool withParents = false;  // as "-add 5:0:1 7:0:1 53"
    std::string vetoes;

    void OnBeforeAdd(Index p, Index o, Orin::EEventsAdd k, bool u) override { Note("-add", p, o, k, u); }
    void OnAfterAdd(Index p, Index o, Orin::EEventsAdd k, bool u) override { Note("+add", p, o, k, u); }
    void OnBeforeDelete(Index p, Index o, Orin::EEventsDelete k, bool u) override { Note("-del", p, o, k, u); }
    void OnAfterDelete(Index p, Index o, Orin::EEventsDelete k, bool u) override { Note("+del", p, o, k, u); }
    void OnBeforeChange(Index o, Orin::EEventsChange k, bool u) override { Note("-chg", {}, o, k, u); }
    void OnAfterChange(Index o, Orin::EEventsChange k, bool u) override { Note("+chg", {}, o, k, u); }
    void OnBeforeConnectivityChange(Index p, Index o, Link k, bool u) override { Note("-con", p, o, k, u); }
    void OnAfterConnectivityChange(Index p, Index o, Link k, bool u) override { Note("+con", p, o, k, u); }
    void OnBeforeQuillDataChange(Index p, Index o, Drawing k, bool u) override { Note("-drw", p, o, k, u); }
    void OnAfterQuillDataChange(Index p, Index o, Drawing k, bool u) override { Note("+drw", p, o, k, u); }
    void OnBeforeSetAttribute(Index o, String n, String v, Family, int, bool u) override {
        Set("-set", n + "=" + v, o, u);
    }
    void OnAfterSetAttribute(Index o, String n, String v, Family, int, bool u) override {
        Set("+set", n + "=" + v, o, u);
    }
    void OnBeforeRemoveAttribute(Index o, String n, Family, int, bool u) override { Set("-rem", n, o, u); }
    void OnAfterRemoveAttribute(Index o, String n, Family, int, bool u) override { Set("+rem", n, o, u); }
    void OnLock(Index o, String, String c) override { Who("lock", {o}, c); }
    void OnUnLock(Index o, String, String c) override { Who("unlock", {o}, c); }
    void OnMultiLock(const Indexes& o, String, String c) override { Who("locks", o, c); }
    void OnMultiUnLock(const Indexes& o, String, String c) override { Who("unlocks", o, c); }
    void OnBeforeTransaction(unsigned, const Orin::ETransactionType&, bool& veto) override { Ask("begin long", veto); }
    void OnBeforeTransaction(unsigned, bool& veto) override { Ask("begin short", veto); }
    void OnBeforeRollbackTransaction() override { Say("rollback"); }
    void OnAfterTransaction() override { Say("end"); }

private:
    template <class Kind>
    void Note(const std::string& what, Index parent, Index object, Kind kind, bool undo) {
        Say((undo ? "~" : "") + what + " " + (withParents && !parent.IsEmpty() ? Text(parent) + " " : "") +
            Text(object) + " " + std::to_string(static_cast<int>(kind)));
    }
    void Set(const std::string& what, String attribute, Index object, bool undo) {
        Note(what + " " + std::string(attribute), {}, object, 0, undo);
    }
    void Who(std::string what, const Indexes& objects, String client) {
        for (Index object : objects)
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
