// Save points beside the working design: what they keep, what a restore tells, and what is refused.
#include <atomic>
#include <thread>

#include "designdb/detail/store.h"
#include "tests/designdb/recorder.h"

namespace Tests {

using namespace Orin;

namespace {

struct SavePoints : SharedBlock {
    Index bus, ripper, config;

    SavePoints() {
        EXPECT_TRUE(editor.AddComp(block, {"R"}, ripper) && editor.AddBus(block, {"B"}, bus));
        EXPECT_TRUE(editor.AddConfig({"board", block}, config));
        for (const Index& member : {comp, ripper, net, net2})
            EXPECT_TRUE(editor.AddMember(group, member));
        EXPECT_TRUE(editor.ConnectPin(net, pin) && editor.ConnectNet(bus, net) && editor.MakeSavePoint("saved"));
    }
};

}  // namespace

TEST_F(SavePoints, AreRestoredByTheEventsThatLeadThere) {
    const Strings before = Facts(client);
    const ContainerT<const IComp> handle = client.Comp(comp);
    Index piece, line, late, config2, place, design;
    ContainerT<const IConfig> board;
    ContainerT<const IPath> root;
    ASSERT_TRUE(client.snapshot->GetDefaultConfig(board, "board") && board->GetRoot(root) && root->GetIndex(place));
    ASSERT_TRUE(client.snapshot->GetIndex(design));
    using Edits = std::vector<Result>;
    const std::tuple<const char*, std::function<Edits()>, Strings> cases[] = {
        {"attributes by name, those of the design and of a place too",
         [&]() -> Edits {
             return {editor.SetAttribute(comp, "a", "1"), editor.SetAttribute({}, "a", "1"),
                     editor.SetAttribute(net, "a", "1"), editor.RemoveAttribute(net, "a"),
                     editor.SetAttributeInPath(place, comp, "p", "1")};
         },
         {"rem a 7:0:1 0", "chg 7:0:1 7", "rem p 7:0:1 0", "chg 7:0:1 7", "rem a " + Text(design) + " 0",
          "chg " + Text(design) + " 7"}},
        {"fields by what they are",
         [&]() -> Edits {
             return {editor.SetLabel(comp, "x"),
                     editor.SetName(comp, "x"),
                     editor.SetCompTypes(comp, ECompType::Border),
                     editor.SetPartition(comp, "x"),
                     editor.SetDefinition(comp, ripper),
                     editor.SetChildBlock(comp, block),
                     editor.SetInstanceIndex(comp, pin),
                     editor.SetLibraryName(block, "x"),
                     editor.SetBlockTypes(block, EBlockType::Board),
                     editor.SetGroupType(group, EGroupType::Cluster),
                     editor.SetRoot(config, {})};
         },
         {"chg 5:0:1 20", "chg 5:0:1 29", "chg 12:0:1 28", "chg 7:0:1 27", "chg 7:0:1 23", "chg 7:0:1 20",
          "chg 7:0:1 21", "chg 7:0:1 22", "chg 7:0:1 24", "chg 7:0:1 25", "chg 69:0:1 20"}},
        {"connections from the side of what connects",
         [&]() -> Edits {
             return {editor.ConnectPin(net2, pin), editor.DisconnectNet(bus, net), editor.ConnectNet(bus, net2),
                     editor.RipBus(ripper, bus)};
         },
         {"con 16:0:1 14:0:2 2", "con 16:0:1 14:0:1 1", "chg 16:0:1 3", "con 14:0:2 8:0:1 2", "con 14:0:1 8:0:1 1"}},
        {"members that left, joined or moved",
         [&]() -> Edits {
             return {editor.RemoveMember(group, comp), editor.AddMember(group, bus, 0),
                     editor.MoveMember(group, net2, 0)};
         },
         {"con 69:0:1 16:0:1 4", "con 69:0:1 7:0:1 3", "con 69:0:1 7:0:2 5", "con 69:0:1 14:0:1 5",
          "con 69:0:1 14:0:2 5"}},
        {"drawings, with the view that they made",
         [&]() -> Edits {
             return {editor.SetCompData(group, comp, {7, {}, {}, {}}), editor.SetLabelData(group, net, {}),
                     editor.SetAttrData(group, net, "a", "", {}), editor.SetModificationTime(group, 5)};
         },
         {"drw 69:0:1 14:0:1 2", "drw 69:0:1 14:0:1 3", "drw 69:0:1 7:0:1 1", "chg 69:0:1 30"}},
        {"what was added goes, contents first",
         [&]() -> Edits {
             return {editor.AddNetQuill(group, net, {}, piece),
                     editor.SetNetQuillData(piece, {3, {}, {}}),
                     editor.AddLine(group, {}, line),
                     editor.AddComp(block, {"late"}, late),
                     editor.AddMember(group, late),
                     editor.AddConfig({"second", block}, config2)};
         },
         {"del 69:0:1 21:0:1 32", "del 14:0:1 55:0:1 44", "del 5:0:1 7:0:3 41", "del 12:0:2 31"}},
        {"what was deleted comes back, containers first",
         [&]() -> Edits { return {editor.DeleteBlock(block)}; },
         {"add 5:0:1 8", "add 5:0:1 16:0:1 2", "add 5:0:1 14:0:1 57", "add 5:0:1 14:0:2 57", "add 5:0:1 7:0:1 53",
          "add 5:0:1 7:0:2 53", "add 5:0:1 69:0:1 46", "add 7:0:1 8:0:1 30"}},
        {"nothing that has not changed", [] { return Edits(); }, {}},
    };
    for (const auto& [why, edit, events] : cases) {
        SCOPED_TRACE(why);
        for (const Result& result : edit())
            ASSERT_TRUE(result);
        Recorder recorder;
        recorder.withParents = true;
        ASSERT_TRUE(other.snapshot->AddEventObserver(&recorder));
        ASSERT_TRUE(editor.RestoreSavePoint("saved"));
        Strings want;
        for (const char* const when : {"~-", "~+"})
            for (const std::string& event : events)
                want.push_back(when + event);
        EXPECT_EQ(recorder.heard, want) << "all is announced before any of it is done";
        EXPECT_EQ(Facts(other), before);
        EXPECT_TRUE(handle->IsValid()) << "a handle follows its object";
        ASSERT_TRUE(other.snapshot->RemoveEventObserver(&recorder));
    }
}

TEST_F(SavePoints, AreReadAndCommentedButNotEdited) {
    TestClient saved(database, "reader", "saved");
    const Strings before = Facts(saved);
    Index made;
    for (const Result& refused : {saved.editor.SetLabel(comp, "x"), saved.editor.AddBlock({"x"}, made),
                                  saved.editor.DeleteBlock(block), saved.editor.RestoreSavePoint("saved")})
        EXPECT_EQ(refused.GetErrorCode(), 201);
    EXPECT_EQ(Facts(saved), before);
    EXPECT_TRUE(saved.editor.SetAttribute({}, "comment", "text"));
    // The comment is the save point's own: it is with neither the design that is restored nor a copy of the design.
    String value;
    EXPECT_TRUE(saved.snapshot->GetAttribute("comment", value));
    ASSERT_TRUE(editor.RestoreSavePoint("saved"));
    EXPECT_EQ(client.snapshot->GetAttribute("comment", value).GetErrorCode(), 202);
    ASSERT_TRUE(saved.editor.MakeSavePoint("copy") && editor.DeleteBlock(block) && editor.RestoreSavePoint("copy"));
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
    const std::pair<Result, int> refusals[] = {
        {editor.MakeSavePoint(""), 100},
        {editor.MakeSavePoint("saved"), 213},
        {editor.MakeSavePoint("QUILL"), 213},
        {editor.RestoreSavePoint("nowhere"), 200},
        {editor.RestoreSavePoint("QUILL"), 100},
        {editor.RestoreSavePoint("design"), 100},
        {design.editor.RestoreSavePoint("saved"), 100},
        {database.RemoveSnapshot("QUILL"), 100},
        {database.RemoveSnapshot("nowhere"), 200},
        {DesignDb::Editor().MakeSavePoint("x"), 110},
        {DesignDb::Database().RemoveSnapshot("x"), 110},
    };
    for (const auto& [result, code] : refusals)
        EXPECT_EQ(result.GetErrorCode(), code) << result.GetDescription();
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
    ASSERT_TRUE(Begin());
    EXPECT_EQ(editor.MakeSavePoint("x").GetErrorCode(), 210);
    EXPECT_EQ(other.editor.MakeSavePoint("x").GetErrorCode(), 201);
    EXPECT_EQ(other.editor.RestoreSavePoint("saved").GetErrorCode(), 201);
}

TEST_F(SavePoints, AreStoredWholeOrNotAtAllWhileTheyAreRemoved) {
    // Looks at what would be stored, and leaves the project without a store.
    struct Looking final : DesignDb::StoreWriter {
        Result Write(const DesignDb::ProjectContent& content, RefPtr<DesignDb::Store>&) override {
            for (const DesignDb::SavedState& saved : content.savePoints)
                empty += saved.graph.Find<DesignDb::BlockRecord>(1) == nullptr;
            return EErrorCode::StoreFailed;
        }
        int empty = 0;
    } writer;
    for (int round = 0; round < 500; ++round) {
        std::atomic<bool> removed{false};
        std::thread remover([&] {
            EXPECT_TRUE(database.RemoveSnapshot("saved"));
            removed = true;
        });
        while (!removed)
            EXPECT_EQ(DesignDb::BindStored(database, writer).GetErrorCode(), 102);
        remover.join();
        ASSERT_TRUE(editor.MakeSavePoint("saved"));
    }
    EXPECT_EQ(writer.empty, 0);
}

}  // namespace Tests
