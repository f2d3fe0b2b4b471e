// Save points beside the working design: what they keep, what a restore tells, and what is refused.
#include <functional>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// Writes down the events that come after edits as "del 7:0:1 41", and that all that came before did so first.
class Listener final : public EventObserver {
public:
    std::vector<std::string> heard;
    unsigned before = 0, undone = 0;

    void OnBeforeAdd(const Index&, const Index&, EEventsAdd, bool) override { Announced(); }
    void OnBeforeDelete(const Index&, const Index&, EEventsDelete, bool) override { Announced(); }
    void OnBeforeChange(const Index&, EEventsChange, bool) override { Announced(); }
    void OnBeforeConnectivityChange(const Index&, const Index&, EEventsConnectivityChange, bool) override {
        Announced();
    }
    void OnBeforeQuillDataChange(const Index&, const Index&, EEventsQuillDataChange, bool) override { Announced(); }
    void OnAfterAdd(const Index& p, const Index& o, EEventsAdd k, bool u) override { Note("add", p, o, k, u); }
    void OnAfterDelete(const Index& p, const Index& o, EEventsDelete k, bool u) override { Note("del", p, o, k, u); }
    void OnAfterChange(const Index& o, EEventsChange k, bool u) override { Note("chg", {}, o, k, u); }
    void OnAfterConnectivityChange(const Index& p, const Index& o, EEventsConnectivityChange k, bool u) override {
        Note("con", p, o, k, u);
    }
    void OnAfterQuillDataChange(const Index& p, const Index& o, EEventsQuillDataChange k, bool u) override {
        Note("drw", p, o, k, u);
    }

private:
    void Announced() {
        EXPECT_TRUE(heard.empty());
        ++before;
    }
    template <class Kind>
    void Note(const char* what, const Index& parent, const Index& object, Kind kind, bool undo) {
        heard.push_back(std::string(what) + (parent.IsEmpty() ? "" : " " + Text(parent)) + " " + Text(object) + " " +
                        std::to_string(static_cast<int>(kind)));
        if (undo) ++undone;
    }
};

using Strings = std::vector<std::string>;

struct SavePoints : testing::Test {
    DesignDb::Database database = NewDatabase();
    TestClient client{database, "one"}, other{database, "other"};
    DesignDb::Editor& editor = client.editor;
    Index block, comp, pin, net, net2, bus, group, ripper, config;

    SavePoints() {
        EXPECT_TRUE(editor.AddBlock({"block"}, block));
        EXPECT_TRUE(editor.AddComp(block, {"U1"}, comp));
        EXPECT_TRUE(editor.AddComp(block, {"R"}, ripper));
        EXPECT_TRUE(editor.AddPin(comp, {"1"}, pin));
        EXPECT_TRUE(editor.AddNet(block, {"N"}, net));
        EXPECT_TRUE(editor.AddNet(block, {"M"}, net2));
        EXPECT_TRUE(editor.AddBus(block, {"B"}, bus));
        EXPECT_TRUE(editor.AddGroup(block, {"1"}, group));
        EXPECT_TRUE(editor.AddConfig({"board", block}, config));
        for (const Index& member : {comp, ripper, net, net2})
            EXPECT_TRUE(editor.AddMember(group, member));
        EXPECT_TRUE(editor.ConnectPin(net, pin));
        EXPECT_TRUE(editor.ConnectNet(bus, net));
        EXPECT_TRUE(editor.MakeSavePoint("saved"));
    }
};

}  // namespace

TEST_F(SavePoints, AreRestoredByTheEventsThatLeadThere) {
    const Strings before = Facts(client);
    Index piece, line, late, config2, place, view;
    ContainerT<const IConfig> board;
    ContainerT<const IPath> root;
    ASSERT_TRUE(client.snapshot->GetDefaultConfig(board, "board") && board->GetRoot(root) && root->GetIndex(place));
    struct Case {
        const char* why;
        std::function<Result()> edit;
        Strings want;
    };
    const Case cases[] = {
        {"attributes by name, those of the design and of a place too",
         [&] {
             Result r = editor.SetAttribute(comp, "a", "1");
             if (r) r = editor.SetAttribute({}, "a", "1");
             if (r) r = editor.SetAttribute(net, "a", "1");
             if (r) r = editor.RemoveAttribute(net, "a");
             return r ? editor.SetAttributeInPath(place, comp, "p", "1") : r;
         },
         {"chg 7:0:1 7", "chg 7:0:1 7", "chg DESIGN 7"}},
        {"fields by what they are",
         [&] {
             Result r = editor.SetLabel(comp, "x");
             if (r) r = editor.SetName(comp, "x");
             if (r) r = editor.SetCompTypes(comp, ECompType::Border);
             if (r) r = editor.SetPartition(comp, "x");
             if (r) r = editor.SetDefinition(comp, ripper);
             if (r) r = editor.SetChildBlock(comp, block);
             if (r) r = editor.SetInstanceIndex(comp, pin);
             if (r) r = editor.SetLibraryName(block, "x");
             if (r) r = editor.SetBlockTypes(block, EBlockType::Board);
             if (r) r = editor.SetGroupType(group, EGroupType::Cluster);
             return r ? editor.SetRoot(config, {}) : r;
         },
         {"chg 5:0:1 20", "chg 5:0:1 29", "chg 12:0:1 28", "chg 7:0:1 27", "chg 7:0:1 23", "chg 7:0:1 20",
          "chg 7:0:1 21", "chg 7:0:1 22", "chg 7:0:1 24", "chg 7:0:1 25", "chg 69:0:1 20"}},
        {"connections from the side of what connects",
         [&] {
             Result r = editor.ConnectPin(net2, pin);
             if (r) r = editor.DisconnectNet(bus, net);
             if (r) r = editor.ConnectNet(bus, net2);
             return r ? editor.RipBus(ripper, bus) : r;
         },
         {"con 16:0:1 14:0:2 2", "con 16:0:1 14:0:1 1", "chg 16:0:1 3", "con 14:0:2 8:0:1 2", "con 14:0:1 8:0:1 1"}},
        {"members that left, joined or moved",
         [&] {
             Result r = editor.RemoveMember(group, comp);
             if (r) r = editor.AddMember(group, bus, 0);
             return r ? editor.MoveMember(group, net2, 0) : r;
         },
         {"con 69:0:1 16:0:1 4", "con 69:0:1 7:0:1 3", "con 69:0:1 7:0:2 5", "con 69:0:1 14:0:1 5",
          "con 69:0:1 14:0:2 5"}},
        {"drawings, with the view that they made",
         [&] {
             Result r = editor.SetCompData(group, comp, {7, {}, {}, {}});
             if (r) r = editor.SetLabelData(group, net, {});
             if (r) r = editor.SetAttrData(group, net, "a", "", {});
             return r ? editor.SetModificationTime(group, 5) : r;
         },
         {"drw 69:0:1 14:0:1 2", "drw 69:0:1 14:0:1 3", "drw 69:0:1 7:0:1 1", "chg 69:0:1 30"}},
        {"what was added goes, contents first",
         [&] {
             Result r = editor.AddNetQuill(group, net, {}, piece);
             if (r) r = editor.SetNetQuillData(piece, {3, {}, {}});
             if (r) r = editor.AddLine(group, {}, line);
             if (r) r = editor.AddComp(block, {"late"}, late);
             if (r) r = editor.AddMember(group, late);
             return r ? editor.AddConfig({"second", block}, config2) : r;
         },
         {"del 69:0:1 21:0:1 32", "del 14:0:1 55:0:1 44", "del 5:0:1 7:0:3 41", "del 12:0:2 31"}},
        {"what was deleted comes back, containers first",
         [&] { return editor.DeleteBlock(block); },
         {"add 5:0:1 8", "add 5:0:1 16:0:1 2", "add 5:0:1 14:0:1 57", "add 5:0:1 14:0:2 57", "add 5:0:1 7:0:1 53",
          "add 5:0:1 7:0:2 53", "add 5:0:1 69:0:1 46", "add 7:0:1 8:0:1 30"}},
        {"nothing that has not changed", [&] { return Result(); }, {}},
    };
    Index design;
    ASSERT_TRUE(client.snapshot->GetIndex(design));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        ASSERT_TRUE(c.edit());
        Listener listener;
        ASSERT_TRUE(other.snapshot->AddEventObserver(&listener));
        ASSERT_TRUE(editor.RestoreSavePoint("saved"));
        Strings want = c.want;
        for (std::string& w : want)
            if (w == "chg DESIGN 7") w = "chg " + Text(design) + " 7";
        EXPECT_EQ(listener.heard, want);
        EXPECT_EQ(listener.before, want.size());
        EXPECT_EQ(listener.undone, want.size());
        EXPECT_EQ(Facts(other), before);
        ASSERT_TRUE(other.snapshot->RemoveEventObserver(&listener));
    }
}

TEST_F(SavePoints, LeaveHandlesAndIndexesWithTheirObjects) {
    const ContainerT<const IComp> handle = client.Comp(comp);
    Index late, later;
    ASSERT_TRUE(editor.DeleteComp(comp));
    ASSERT_TRUE(editor.AddComp(block, {"late"}, late));
    const ContainerT<const IComp> dead = client.Comp(late);
    EXPECT_FALSE(handle->IsValid());
    ASSERT_TRUE(editor.RestoreSavePoint("saved"));
    EXPECT_TRUE(handle->IsValid());
    // An index that was given before the restore is given to nobody after it.
    ASSERT_TRUE(editor.AddComp(block, {"later"}, later));
    EXPECT_NE(later, late);
    EXPECT_FALSE(dead->IsValid());
    // In a transaction a restore is an edit like any other.
    const Strings before = Facts(client);
    ASSERT_TRUE(client.snapshot->BeginTransaction(ETransactionType::Edit));
    ASSERT_TRUE(editor.SetLabel(comp, "x"));
    ASSERT_TRUE(editor.RestoreSavePoint("saved"));
    EXPECT_FALSE(client.Comp(later));
    ASSERT_TRUE(client.snapshot->RollbackTransaction());
    EXPECT_EQ(Facts(client), before);
}

TEST_F(SavePoints, AreReadAndCommentedButNotEdited) {
    TestClient saved(database, "reader", "saved");
    const Strings before = Facts(saved);
    Index made;
    EXPECT_EQ(saved.editor.SetLabel(comp, "x").GetErrorCode(), 201);
    EXPECT_EQ(saved.editor.AddBlock({"x"}, made).GetErrorCode(), 201);
    EXPECT_EQ(saved.editor.DeleteBlock(block).GetErrorCode(), 201);
    EXPECT_EQ(saved.editor.RestoreSavePoint("saved").GetErrorCode(), 201);
    EXPECT_EQ(Facts(saved), before);
    EXPECT_TRUE(saved.editor.SetAttribute({}, "comment", "text"));
    // The comment is the save point's own: it is with neither the design that is restored nor a copy of the design.
    String value;
    EXPECT_TRUE(saved.snapshot->GetAttribute("comment", value));
    ASSERT_TRUE(editor.RestoreSavePoint("saved"));
    EXPECT_EQ(client.snapshot->GetAttribute("comment", value).GetErrorCode(), 202);
    ASSERT_TRUE(saved.editor.MakeSavePoint("copy"));
    ASSERT_TRUE(editor.DeleteBlock(block));
    ASSERT_TRUE(editor.RestoreSavePoint("copy"));
    EXPECT_EQ(Facts(client), before);

    ASSERT_TRUE(database.RemoveSnapshot("saved"));
    EXPECT_EQ(Facts(saved), Strings{});
    EXPECT_FALSE(saved.snapshot->IsValid());
    EXPECT_EQ(saved.editor.SetAttribute({}, "comment", "text").GetErrorCode(), 200);
    MutableContainerT<ISnapshot> writable;
    EXPECT_EQ(LockerT<ISnapshot>::Lock(saved.snapshot, writable).GetErrorCode(), 200);
    ASSERT_TRUE(editor.MakeSavePoint("saved"));
    ListT<String> names;
    ASSERT_TRUE(database.ListSnapshots(names));
    EXPECT_EQ(names, (ListT<String>{"QUILL", "copy", "saved"}));
}

TEST_F(SavePoints, AreRefusedForAReason) {
    ASSERT_TRUE(database.AddSnapshot("design"));
    TestClient design(database, "reader", "design");
    EXPECT_EQ(editor.MakeSavePoint("").GetErrorCode(), 100);
    EXPECT_EQ(editor.MakeSavePoint("saved").GetErrorCode(), 213);
    EXPECT_EQ(editor.MakeSavePoint("QUILL").GetErrorCode(), 213);
    EXPECT_EQ(editor.RestoreSavePoint("nowhere").GetErrorCode(), 200);
    for (const char* const no : {"QUILL", "design"})
        EXPECT_EQ(editor.RestoreSavePoint(no).GetErrorCode(), 100);
    EXPECT_EQ(design.editor.RestoreSavePoint("saved").GetErrorCode(), 100);
    EXPECT_EQ(database.RemoveSnapshot("QUILL").GetErrorCode(), 100);
    EXPECT_EQ(database.RemoveSnapshot("nowhere").GetErrorCode(), 200);
    EXPECT_EQ(DesignDb::Editor().MakeSavePoint("x").GetErrorCode(), 110);
    EXPECT_EQ(DesignDb::Database().RemoveSnapshot("x").GetErrorCode(), 110);
    {
        MutableContainerT<ISnapshot> writable;
        TestClient saved(database, "reader", "saved");
        ASSERT_TRUE(LockerT<ISnapshot>::Lock(saved.snapshot, writable));
        EXPECT_EQ(database.RemoveSnapshot("saved").GetErrorCode(), 201);
    }
    {
        MutableContainerT<IComp> writable;
        ASSERT_TRUE(LockerT<IComp>::ShallowLock(other.Comp(comp), writable));
        EXPECT_TRUE(editor.MakeSavePoint("while locked"));
        EXPECT_EQ(editor.RestoreSavePoint("saved").GetErrorCode(), 201);
    }
    ASSERT_TRUE(client.snapshot->BeginTransaction(ETransactionType::Edit));
    EXPECT_EQ(editor.MakeSavePoint("x").GetErrorCode(), 210);
    EXPECT_EQ(other.editor.MakeSavePoint("x").GetErrorCode(), 201);
    EXPECT_EQ(other.editor.RestoreSavePoint("saved").GetErrorCode(), 201);
    ASSERT_TRUE(client.snapshot->CommitTransaction());
    EXPECT_TRUE(other.editor.RestoreSavePoint("saved"));
}

}  // namespace Tests
