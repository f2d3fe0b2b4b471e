// What observers hear of edits, transactions and their undoing, and what they may do meanwhile.
#include <stdexcept>

#include "tests/designdb/recorder.h"

namespace Tests {

using namespace Orin;

namespace {

struct Errors : ClientObserver {
    std::vector<std::string> told;
    void OnErrorUnexpected(const String&, const String& error) override { told.emplace_back(error.View()); }
};

struct Events : SharedBlock {
    Recorder recorder;

    Events() { EXPECT_TRUE(other.snapshot->AddEventObserver(&recorder)); }
    Strings Heard() { return std::exchange(recorder.heard, {}); }
};

}  // namespace

TEST_F(Events, ComeInPairsAndInversely) {
    ASSERT_TRUE(Begin());
    EXPECT_EQ(Heard(), (Strings{"begin long", "begin short"}));
    ASSERT_TRUE(editor.SetAttribute(comp, "a", "1"));
    EXPECT_EQ(Heard(), (Strings{"-set a=1 7:0:1 0", "-chg 7:0:1 6", "+set a=1 7:0:1 0", "+chg 7:0:1 6"}));
    ASSERT_TRUE(editor.SetAttribute(comp, "a", "2") && editor.RemoveAttribute(comp, "a"));
    ASSERT_TRUE(editor.SetLabel(comp, "U2") && editor.SetName(group, "2") && editor.ConnectPin(net, pin));
    Heard();
    ASSERT_TRUE(editor.ConnectPin(net2, pin));
    EXPECT_EQ(Heard(), (Strings{"-con 8:0:1 2", "+con 8:0:1 2", "-con 8:0:1 1", "+con 8:0:1 1"}));
    EXPECT_FALSE(editor.RemoveAttribute(comp, "a"));
    EXPECT_FALSE(editor.AddMember(group, block));
    EXPECT_EQ(Heard(), Strings{});
    ASSERT_TRUE(RollBack());
    EXPECT_EQ(Heard(), (Strings{"rollback",        "~-con 8:0:1 2",     "~+con 8:0:1 2",  "~-con 8:0:1 1",
                                "~+con 8:0:1 1",   "~-con 8:0:1 2",     "~+con 8:0:1 2",  "~-chg 69:0:1 27",
                                "~+chg 69:0:1 27", "~-chg 7:0:1 23",    "~+chg 7:0:1 23", "~-set a=2 7:0:1 0",
                                "~-chg 7:0:1 6",   "~+set a=2 7:0:1 0", "~+chg 7:0:1 6",  "~-set a=1 7:0:1 0",
                                "~-chg 7:0:1 6",   "~+set a=1 7:0:1 0", "~+chg 7:0:1 6",  "~-rem a 7:0:1 0",
                                "~-chg 7:0:1 7",   "~+rem a 7:0:1 0",   "~+chg 7:0:1 7",  "end"}));
}

TEST_F(Events, BearTheNumbersOfTheirKindsOfEdits) {
    Index bus, piece, line, made, config;
    const DesignDb::ConfigSpec board{"board", block};
    const std::pair<std::function<Result()>, const char*> cases[] = {
        {[&] { return editor.AddBus(block, {"B"}, bus); }, "+add 16:0:1 2"},
        {[&] { return editor.RipBus(comp, bus); }, "+chg 16:0:1 3"},
        {[&] { return editor.AddNetQuill(group, net, {}, piece); }, "+add 55:0:1 49"},
        {[&] { return editor.SetNetQuillData(piece, {}); }, "+chg 55:0:1 13"},
        {[&] { return editor.DeleteItem(piece); }, "+del 55:0:1 44"},
        {[&] { return editor.AddComp(block, {"U2"}, made); }, "+add 7:0:2 53"},
        {[&] { return editor.AddNet(block, {"X"}, made); }, "+add 14:0:3 57"},
        {[&] { return editor.AddGroup(block, {"2"}, made); }, "+add 69:0:2 46"},
        {[&] { return editor.AddBlock({"c"}, made); }, "+add 5:0:2 8"},
        {[&] { return editor.AddConfig(board, config); }, "+add 12:0:1 31"},
        {[&] { return editor.SetRoot(config, block); }, "+chg 12:0:1 28"},
        {[&] { return editor.DeleteConfig(config); }, "+del 12:0:1 31"},
        {[&] { return editor.AddPin(comp, {"2"}, made); }, "+add 8:0:2 30"},
        {[&] { return editor.AddLine(group, {}, line); }, "+add 21:0:1 32"},
        {[&] { return editor.SetLine(line, {}); }, "+drw 21:0:1 1"},
        {[&] { return editor.DeleteItem(line); }, "+del 21:0:1 32"},
        {[&] { return editor.ConnectNet(bus, net); }, "+con 14:0:1 1"},
        {[&] { return editor.DisconnectNet(bus, net); }, "+con 14:0:1 2"},
        {[&] { return editor.DeleteBus(bus); }, "+del 16:0:1 4"},
        {[&] { return editor.AddMember(group, net); }, "+con 14:0:1 3"},
        {[&] { return editor.MoveMember(group, net, 0); }, "+con 14:0:1 5"},
        {[&] { return editor.RemoveMember(group, net); }, "+con 14:0:1 4"},
        {[&] { return editor.SetAttribute(net, "a", "1"); }, "+chg 14:0:1 6"},
        {[&] { return editor.RemoveAttribute(net, "a"); }, "+chg 14:0:1 7"},
        {[&] { return editor.SetName(block, "x"); }, "+chg 5:0:1 27"},
        {[&] { return editor.SetLabelData(group, comp, {}); }, "+drw 7:0:1 2"},
        {[&] { return editor.SetModificationTime(group, 1); }, "+chg 69:0:1 30"},
    };
    for (const auto& [edit, want] : cases) {
        Heard();
        EXPECT_TRUE(edit()) << want;
        EXPECT_EQ(Heard().back(), want);
    }
}

TEST_F(Events, TellWhoTookAndGaveUpLocks) {
    RefPtr<LockToken> hold;
    {
        MutableContainerT<IComp> shallow, whole, refused;
        ASSERT_TRUE(LockerT<IComp>::ShallowLock(client.Comp(comp), shallow));
        EXPECT_EQ(Heard(), Strings{"lock 7:0:1 one"});
        ASSERT_TRUE(LockerT<IComp>::Lock(client.Comp(comp), whole) && shallow.Release());
        EXPECT_FALSE(LockerT<IComp>::Lock(other.Comp(comp), refused));
        EXPECT_EQ(other.editor.Lock({group, comp}, hold).GetErrorCode(), 201);
        EXPECT_EQ(Heard(), Strings{}) << "of a lock again, a conflict, and a lock of several that got only one";
        ASSERT_TRUE(editor.Lock({comp, group}, hold));
        EXPECT_EQ(Heard(), Strings{"lock 69:0:1 one"});
    }
    EXPECT_EQ(Heard(), Strings{});
    hold.Reset();
    EXPECT_EQ(Heard(), (Strings{"unlocks 7:0:1 69:0:1 one"}));
    Index design;
    ASSERT_TRUE(editor.Lock({block, {}}, hold) && client.snapshot->GetIndex(design));
    EXPECT_EQ(Heard(), Strings{"locks 5:0:1 " + Text(design) + " one"});
    client.connection.reset();
    ASSERT_EQ(recorder.heard.size(), 1U);
    EXPECT_EQ(Heard()[0].substr(0, 7), "unlocks");
    hold.Reset();
    EXPECT_EQ(Heard(), Strings{});
    for (const auto& [objects, code] :
         {std::pair(ListT<Index>{net}, 100), {ListT<Index>{Index(9)}, 200}, {ListT<Index>{}, 100}})
        EXPECT_EQ(other.editor.Lock(objects, hold).GetErrorCode(), code);
}

TEST_F(Events, OfADeletionTellOfTheContentsFirst) {
    const Strings before = Facts(client);
    ASSERT_TRUE(Begin());
    Heard();
    ASSERT_TRUE(editor.DeleteBlock(block));
    EXPECT_EQ(Heard(), (Strings{"-del 69:0:1 45", "+del 69:0:1 45", "-del 8:0:1 30", "+del 8:0:1 30", "-del 7:0:1 41",
                                "+del 7:0:1 41", "-del 14:0:1 47", "+del 14:0:1 47", "-del 14:0:2 47", "+del 14:0:2 47",
                                "-del 5:0:1 3", "+del 5:0:1 3"}));
    ASSERT_TRUE(RollBack());
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
        EXPECT_TRUE(client.snapshot->IsTransactionActive(active) && !active);
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
    ASSERT_TRUE(other.snapshot->RemoveEventObserver(&recorder) && client.snapshot->AddEventObserver(&recorder));
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
    ASSERT_TRUE(RollBack());
    const Strings middle = Facts(client);
    recorder.then = [&](const std::string& what) {
        if (what == "-del 5:0:1 3") static_cast<void>(editor.AddComp(block, {"always"}, added));
    };
    EXPECT_EQ(editor.DeleteBlock(block).GetErrorCode(), 214);
    EXPECT_EQ(Facts(client), middle);
    EXPECT_NE(middle, before);
}

TEST_F(Events, CannotEndATransactionInTheMiddleOfADeletionOrARollback) {
    ASSERT_TRUE(other.snapshot->RemoveEventObserver(&recorder) && client.snapshot->AddEventObserver(&recorder));
    const Strings before = Facts(client);
    ASSERT_TRUE(Begin());
    recorder.then = [&](const std::string& what) {
        if (what[0] == 'e') return;
        EXPECT_EQ(client.snapshot->CommitTransaction().GetErrorCode(), 201);
        EXPECT_EQ(RollBack().GetErrorCode(), 201);
        if (what[0] == '~') {
            EXPECT_EQ(editor.SetLabel(comp, "x").GetErrorCode(), 201);
        }
    };
    EXPECT_TRUE(editor.DeleteBlock(block));
    EXPECT_TRUE(RollBack());
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
