// What observers hear of edits, transactions and their undoing, and what they may do meanwhile.
#include <functional>
#include <stdexcept>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// Writes down what it hears as "-add 7:0:1 53", '-' before and '+' after, '~' where it undoes, then calls `then`.
class Recorder : public EventObserver {
public:
    std::vector<std::string> heard;
    std::function<void(const std::string&)> then;

    void OnBeforeAdd(const Index&, const Index& o, EEventsAdd k, bool u) override { Note('-', "add", o, k, u); }
    void OnAfterAdd(const Index&, const Index& o, EEventsAdd k, bool u) override { Note('+', "add", o, k, u); }
    void OnBeforeDelete(const Index&, const Index& o, EEventsDelete k, bool u) override { Note('-', "del", o, k, u); }
    void OnAfterDelete(const Index&, const Index& o, EEventsDelete k, bool u) override { Note('+', "del", o, k, u); }
    void OnBeforeChange(const Index& o, EEventsChange k, bool u) override { Note('-', "chg", o, k, u); }
    void OnAfterChange(const Index& o, EEventsChange k, bool u) override { Note('+', "chg", o, k, u); }
    void OnBeforeConnectivityChange(const Index&, const Index& o, EEventsConnectivityChange k, bool u) override {
        Note('-', "con", o, k, u);
    }
    void OnAfterConnectivityChange(const Index&, const Index& o, EEventsConnectivityChange k, bool u) override {
        Note('+', "con", o, k, u);
    }
    void OnBeforeSetAttribute(const Index& o, const String& n, const String& v, EAttributeType, int, bool u) override {
        Note('-', "set " + std::string(n) + "=" + std::string(v), o, 0, u);
    }
    void OnAfterSetAttribute(const Index& o, const String& n, const String& v, EAttributeType, int, bool u) override {
        Note('+', "set " + std::string(n) + "=" + std::string(v), o, 0, u);
    }
    void OnBeforeRemoveAttribute(const Index& o, const String& n, EAttributeType, int, bool u) override {
        Note('-', "rem " + std::string(n), o, 0, u);
    }
    void OnAfterRemoveAttribute(const Index& o, const String& n, EAttributeType, int, bool u) override {
        Note('+', "rem " + std::string(n), o, 0, u);
    }
    void OnBeforeTransaction(unsigned, const ETransactionType&, bool& veto) override { Ask("begin long", veto); }
    void OnBeforeTransaction(unsigned, bool& veto) override { Ask("begin short", veto); }
    void OnBeforeRollbackTransaction() override { Say("rollback"); }
    void OnAfterTransaction() override { Say("end"); }

    std::string vetoes;

private:
    template <class Kind>
    void Note(char when, const std::string& what, const Index& object, Kind kind, bool undo) {
        Say(std::string(undo ? "~" : "") + when + what + " " + Text(object) + " " +
            std::to_string(static_cast<int>(kind)));
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

class Errors : public ClientObserver {
public:
    std::vector<std::string> told;
    void OnErrorUnexpected(const String&, const String& error) override { told.emplace_back(error.View()); }
};

using Strings = std::vector<std::string>;

struct Events : testing::Test {
    DesignDb::Database database = NewDatabase();
    TestClient client{database, "one"}, other{database, "other"};
    DesignDb::Editor& editor = client.editor;
    Recorder recorder;
    Index block, comp, pin, net, net2, group;

    Events() {
        EXPECT_TRUE(editor.AddBlock({"block"}, block));
        EXPECT_TRUE(editor.AddComp(block, {"U1"}, comp));
        EXPECT_TRUE(editor.AddPin(comp, {"1"}, pin));
        EXPECT_TRUE(editor.AddNet(block, {"N"}, net));
        EXPECT_TRUE(editor.AddNet(block, {"M"}, net2));
        EXPECT_TRUE(editor.AddGroup(block, {"1"}, group));
        EXPECT_TRUE(other.snapshot->AddEventObserver(&recorder));
    }
    Strings Heard() { return std::exchange(recorder.heard, {}); }
    Result Begin() { return client.snapshot->BeginTransaction(ETransactionType::Edit); }
};

}  // namespace

TEST_F(Events, ComeInPairsAndInversely) {
    ASSERT_TRUE(Begin());
    EXPECT_EQ(Heard(), (Strings{"begin long", "begin short"}));
    ASSERT_TRUE(editor.SetAttribute(comp, "a", "1"));
    EXPECT_EQ(Heard(), (Strings{"-set a=1 7:0:1 0", "-chg 7:0:1 6", "+set a=1 7:0:1 0", "+chg 7:0:1 6"}));
    ASSERT_TRUE(editor.SetAttribute(comp, "a", "2"));
    ASSERT_TRUE(editor.RemoveAttribute(comp, "a"));
    ASSERT_TRUE(editor.SetLabel(comp, "U2"));
    ASSERT_TRUE(editor.SetName(group, "2"));
    ASSERT_TRUE(editor.ConnectPin(net, pin));
    Heard();
    ASSERT_TRUE(editor.ConnectPin(net2, pin));
    EXPECT_EQ(Heard(), (Strings{"-con 8:0:1 2", "+con 8:0:1 2", "-con 8:0:1 1", "+con 8:0:1 1"}));
    EXPECT_FALSE(editor.RemoveAttribute(comp, "a"));
    EXPECT_FALSE(editor.AddMember(group, block));
    EXPECT_EQ(Heard(), Strings{});
    ASSERT_TRUE(client.snapshot->RollbackTransaction());
    EXPECT_EQ(Heard(), (Strings{"rollback",        "~-con 8:0:1 2",     "~+con 8:0:1 2",  "~-con 8:0:1 1",
                                "~+con 8:0:1 1",   "~-con 8:0:1 2",     "~+con 8:0:1 2",  "~-chg 69:0:1 27",
                                "~+chg 69:0:1 27", "~-chg 7:0:1 23",    "~+chg 7:0:1 23", "~-set a=2 7:0:1 0",
                                "~-chg 7:0:1 6",   "~+set a=2 7:0:1 0", "~+chg 7:0:1 6",  "~-set a=1 7:0:1 0",
                                "~-chg 7:0:1 6",   "~+set a=1 7:0:1 0", "~+chg 7:0:1 6",  "~-rem a 7:0:1 0",
                                "~-chg 7:0:1 7",   "~+rem a 7:0:1 0",   "~+chg 7:0:1 7",  "end"}));
}

TEST_F(Events, OfADeletionTellOfTheContentsFirst) {
    const Strings before = Facts(client);
    ASSERT_TRUE(Begin());
    Heard();
    ASSERT_TRUE(editor.DeleteBlock(block));
    EXPECT_EQ(Heard(), (Strings{"-del 69:0:1 45", "+del 69:0:1 45", "-del 8:0:1 30", "+del 8:0:1 30", "-del 7:0:1 41",
                                "+del 7:0:1 41", "-del 14:0:1 47", "+del 14:0:1 47", "-del 14:0:2 47", "+del 14:0:2 47",
                                "-del 5:0:1 3", "+del 5:0:1 3"}));
    ASSERT_TRUE(client.snapshot->RollbackTransaction());
    EXPECT_EQ(Heard(), (Strings{"rollback", "~-add 5:0:1 8", "~+add 5:0:1 8", "~-add 14:0:2 57", "~+add 14:0:2 57",
                                "~-add 14:0:1 57", "~+add 14:0:1 57", "~-add 7:0:1 53", "~+add 7:0:1 53",
                                "~-add 8:0:1 30", "~+add 8:0:1 30", "~-add 69:0:1 46", "~+add 69:0:1 46", "end"}));
    EXPECT_EQ(Facts(client), before);
}

TEST_F(Events, FormsOfTheBeginBothCanRefuse) {
    for (const char* form : {"begin long", "begin short"}) {
        recorder.vetoes = form;
        // That it throws as well changes nothing, neither for it nor for the other form.
        recorder.then = [&](const std::string& what) {
            if (what == form) throw std::runtime_error("refused");
        };
        EXPECT_EQ(Begin().GetErrorCode(), 212);
        EXPECT_EQ(Heard(), (Strings{"begin long", "begin short"}));
        bool active = true;
        EXPECT_TRUE(client.snapshot->IsTransactionActive(active));
        EXPECT_FALSE(active);
    }
}

TEST_F(Events, ReachEverybodyWhateverOneOfThemThrows) {
    Errors errors;
    Recorder second;
    ASSERT_TRUE(other.connection->AddClientObserver(&errors));
    ASSERT_TRUE(client.snapshot->AddEventObserver(&second));
    recorder.then = [](const std::string& what) {
        if (what[0] == '-') throw std::runtime_error("sorry");
        if (what[0] == '+') throw Result(EErrorCode::NoValue);
    };
    EXPECT_TRUE(editor.SetAttribute(comp, "a", "1"));
    const Strings all{"-set a=1 7:0:1 0", "-chg 7:0:1 6", "+set a=1 7:0:1 0", "+chg 7:0:1 6"};
    EXPECT_EQ(Heard(), all);
    EXPECT_EQ(second.heard, all);
    const std::string thrown = "An observer threw: The object has no such value";
    EXPECT_EQ(errors.told, (Strings{"An observer threw: sorry", "An observer threw: sorry", thrown, thrown}));
    recorder.then = [](const std::string&) { throw 1; };
    EXPECT_TRUE(editor.SetLabel(comp, "x"));
    EXPECT_EQ(errors.told.back(), "An observer threw something that is no exception");
    ASSERT_TRUE(client.snapshot->RemoveEventObserver(&second));
}

TEST_F(Events, StopForAnObserverThatRemovesItselfOrClosesItsClient) {
    recorder.then = [&](const std::string&) {
        EXPECT_TRUE(other.snapshot->RemoveEventObserver(&recorder));
        throw std::runtime_error("reported to a client that lives");
    };
    EXPECT_TRUE(editor.SetLabel(comp, "x"));
    EXPECT_EQ(Heard(), Strings{"-chg 7:0:1 23"});
    EXPECT_EQ(other.snapshot->RemoveEventObserver(&recorder).GetErrorCode(), 200);

    auto third = std::make_unique<TestClient>(database, "third");
    ASSERT_TRUE(third->snapshot->AddEventObserver(&recorder));
    EXPECT_EQ(third->snapshot->AddEventObserver(&recorder).GetErrorCode(), 213);
    recorder.then = [&](const std::string&) {
        third.reset();
        throw std::runtime_error("reported to nobody");
    };
    EXPECT_TRUE(editor.SetLabel(comp, "y"));
    EXPECT_EQ(Heard(), Strings{"-chg 7:0:1 23"});
}

TEST_F(Events, MayEditInsideTheirCallbacks) {
    ASSERT_TRUE(client.snapshot->AddEventObserver(&recorder));
    ASSERT_TRUE(other.snapshot->RemoveEventObserver(&recorder));
    const Strings before = Facts(client);
    // The edit is checked again after its before-callbacks, and has no after-event when it fails now.
    recorder.then = [&](const std::string& what) {
        recorder.then = nullptr;
        EXPECT_EQ(what, "-chg 7:0:1 23");
        EXPECT_TRUE(editor.DeleteComp(comp));
    };
    EXPECT_EQ(editor.SetLabel(comp, "x").GetErrorCode(), 200);
    EXPECT_EQ(Heard().back(), "+del 7:0:1 41");
    // What is put into a block while that is deleted goes with it, or the block stays.
    Index added;
    recorder.then = [&](const std::string& what) {
        if (what != "-del 5:0:1 3") return;
        recorder.then = nullptr;
        EXPECT_TRUE(editor.AddComp(block, {"late"}, added));
    };
    ASSERT_TRUE(Begin());
    EXPECT_TRUE(editor.DeleteBlock(block));
    EXPECT_FALSE(client.Comp(added));
    ASSERT_TRUE(client.snapshot->RollbackTransaction());
    const Strings middle = Facts(client);
    recorder.then = [&](const std::string& what) {
        if (what == "-del 5:0:1 3") static_cast<void>(editor.AddComp(block, {"always"}, added));
    };
    EXPECT_EQ(editor.DeleteBlock(block).GetErrorCode(), 214);
    EXPECT_EQ(Facts(client), middle);
    EXPECT_NE(middle, before);
}

TEST_F(Events, CannotEndATransactionInTheMiddleOfADeletionOrARollback) {
    ASSERT_TRUE(client.snapshot->AddEventObserver(&recorder));
    ASSERT_TRUE(other.snapshot->RemoveEventObserver(&recorder));
    const Strings before = Facts(client);
    ASSERT_TRUE(Begin());
    recorder.then = [&](const std::string& what) {
        if (what[0] == 'e') return;
        EXPECT_EQ(client.snapshot->CommitTransaction().GetErrorCode(), 201);
        EXPECT_EQ(client.snapshot->RollbackTransaction().GetErrorCode(), 201);
        if (what[0] == '~') {
            EXPECT_EQ(editor.SetLabel(comp, "x").GetErrorCode(), 201);
        }
    };
    EXPECT_TRUE(editor.DeleteBlock(block));
    EXPECT_TRUE(client.snapshot->RollbackTransaction());
    EXPECT_EQ(Facts(other), before);
    // A client that goes meanwhile takes all of it back.
    recorder.then = nullptr;
    ASSERT_TRUE(Begin());
    recorder.then = [&](const std::string& what) {
        if (what == "+del 7:0:1 41") client.connection.reset();
    };
    EXPECT_EQ(editor.DeleteBlock(block).GetErrorCode(), 110);
    EXPECT_EQ(Facts(other), before);
    EXPECT_TRUE(other.snapshot->BeginTransaction(ETransactionType::Edit));
}

}  // namespace Tests
