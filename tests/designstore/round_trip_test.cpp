// What a design file holds is what memory holds.
#include <sqlite3.h>

#include "tests/designstore/random_edits.h"

namespace {

using namespace Orin;
using namespace Orin::DesignDb;
using Tests::Design;
using Tests::FileText;

class DesignFile : public testing::Test {
protected:
    std::string Reopened() const { return Design(path, EFileAccess::Read).Json(); }

    const Tests::Folder folder;
    const std::string path = folder / "design.qdb";
};

TEST_F(DesignFile, HoldsWhatTheJsonFormHolds) {
    for (const char* json : {QUILL_TEST_DATA "/everything.json", QUILL_EXAMPLES "/vibration-recorder.json"}) {
        SCOPED_TRACE(json);
        const std::string text = FileText(json);
        std::filesystem::remove(path);
        {
            Design design;
            design.Read(text);
            ASSERT_TRUE(design.Create(path));
        }
        EXPECT_EQ(Reopened(), text);
        EXPECT_EQ(Design(path).Json(), text);
    }
    for (const char* beside : {"-wal", "-shm", "-lock", "-new"})
        EXPECT_FALSE(std::filesystem::exists(path + beside)) << beside;
}

// Commits write what they touched and nothing else, so any that forgets something shows here.
TEST_F(DesignFile, FollowsEveryEdit) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        std::filesystem::remove(path);
        std::mt19937 random(seed);
        std::string left;
        {
            Design design;
            Tests::RandomEdits edits(design, seed);
            edits.Edit(seed % 3 == 0 ? 0 : 400);
            ASSERT_TRUE(design.Create(path));
            for (int step = 0; step < 25; ++step) {
                const bool transaction = random() % 3 != 0;
                ASSERT_TRUE(!transaction || design.snapshot->BeginTransaction(ETransactionType::Edit));
                edits.Edit(1 << random() % 8);
                if (transaction && random() % 4 == 0) {
                    ASSERT_TRUE(design.snapshot->RollbackTransaction());
                } else if (transaction) {
                    ASSERT_TRUE(design.snapshot->CommitTransaction());
                }
                if (step % 5 != 4) continue;
                ASSERT_EQ(Reopened(), design.Json());
            }
            left = design.Json();
        }
        Design copy;
        copy.Read(left);
        EXPECT_EQ(copy.Json(), left);
        // Numbers go on where they were: an object that is added now is none that was deleted.
        Design again(path);
        EXPECT_EQ(again.Json(), left);
        Tests::RandomEdits(again, seed + 1).Edit(100);
        ASSERT_EQ(Reopened(), again.Json());
    }
}

// The design and its save points, with what these bear themselves.
std::vector<std::string> AllStates(const Design& design) {
    std::vector<std::string> states;
    ListT<String> names;
    EXPECT_TRUE(design.opened && design.database.ListSnapshots(names)) << design.Refusal();
    for (const String& name : names) {
        ContainerT<const ISnapshot> snapshot;
        std::string text;
        EXPECT_TRUE(design.client->GetSnapshotByName(snapshot, name));
        EXPECT_TRUE(Quill::Interchange::WriteDesignJson(snapshot, name, text));
        states.push_back(text);
    }
    return states;
}

TEST_F(DesignFile, HoldsTheSavePoints) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        std::filesystem::remove(path);
        std::mt19937 random(seed);
        auto design = std::make_unique<Design>();
        auto edits = std::make_unique<Tests::RandomEdits>(*design, seed);
        edits->Edit(200);
        ASSERT_TRUE(seed % 2 == 0 || design->editor.MakeSavePoint("before the file"));
        edits->Edit(20);
        ASSERT_TRUE(design->Create(path));
        for (int step = 0; step < 40; ++step) {
            const String name = std::to_string(random() % 6).c_str();
            // Handles keep the file open, and go before it is opened again.
            auto snapshot = std::make_unique<ContainerT<const ISnapshot>>();
            Editor editor;
            const bool isThere = design->client->GetSnapshotByName(*snapshot, name) && Editor::Open(editor, *snapshot);
            const std::function<void()> steps[] = {
                [&] { return design->editor.MakeSavePoint(name); },
                [&] { return design->editor.MakeSavePoint(name); },
                [&] { return design->editor.RestoreSavePoint(name); },
                [&] { return design->database.RemoveSnapshot(name); },
                [&] { return isThere ? editor.SetAttribute({}, "SVPT_COMMENT", name) : Result(); },
                [&] { return isThere ? editor.MakeSavePoint("copy") : Result(); },
                [&] { edits->Edit(30); },
                [&] { edits->Edit(30); },
            };
            steps[random() % std::size(steps)]();
            if (step % 8 != 7) continue;
            ASSERT_EQ(AllStates(Design(path, EFileAccess::Read)), AllStates(*design));
            // Half of the time what goes on is what was read, not what was written.
            if (random() % 2 == 0) continue;
            edits.reset();
            snapshot.reset();
            editor = Editor();
            design.reset();
            design = std::make_unique<Design>(path);
            ASSERT_TRUE(design->opened) << design->Refusal();
            edits = std::make_unique<Tests::RandomEdits>(*design, seed + 100);
            edits->Edit(30);
        }
    }
}

TEST_F(DesignFile, KeepsNoOtherSnapshots) {
    Design design;
    ASSERT_TRUE(design.Create(path));
    EXPECT_EQ(design.database.AddSnapshot("other").GetErrorCode(), static_cast<int>(EErrorCode::StoreFailed));
    EXPECT_EQ(AllStates(design).size(), 1U);
    Design another;
    ASSERT_TRUE(another.database.AddSnapshot("other"));
    EXPECT_EQ(another.Create(folder / "another.qdb").GetErrorCode(), static_cast<int>(EErrorCode::InvalidArgument));
}

TEST_F(DesignFile, GivesNoIndexASecondTime) {
    Index last, block;
    {
        Design design;
        ASSERT_TRUE(design.Create(path));
        ASSERT_TRUE(design.editor.AddBlock({"a"}, block) && design.editor.AddComp(block, {"U1"}, last));
        ASSERT_TRUE(design.editor.DeleteComp(last));
    }
    Index next;
    EXPECT_TRUE(Design(path).editor.AddComp(block, {"U2"}, next));
    EXPECT_GT(next, last);
}

// Members that come between others again and again use up the gaps between their ranks.
TEST_F(DesignFile, KeepsTheOrderOfMembers) {
    Design design;
    ASSERT_TRUE(design.Create(path));
    Index block, sheet, comp;
    ASSERT_TRUE(design.editor.AddBlock({"a"}, block) && design.editor.AddGroup(block, {"1"}, sheet));
    ASSERT_TRUE(design.snapshot->BeginTransaction(ETransactionType::Edit));
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(design.editor.AddComp(block, {"U"}, comp) && design.editor.AddMember(sheet, comp));
    ASSERT_TRUE(design.snapshot->CommitTransaction());
    for (unsigned i = 0; i < 60; ++i)
        ASSERT_TRUE(design.editor.MoveMember(sheet, comp, i % 2 == 0 ? 1 : 2) &&
                    design.editor.AddComp(block, {"U"}, comp) && design.editor.AddMember(sheet, comp, 1));
    EXPECT_EQ(Reopened(), design.Json());
}

TEST_F(DesignFile, HasTheTablesOfItsDescription) {
    ASSERT_TRUE(Design().Create(path));
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    const std::string description = FileText(QUILL_DOCS "/design-file.md");
    sqlite3_stmt* tables = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(file, "SELECT sql, name LIKE '%_before' FROM sqlite_schema", -1, &tables, nullptr),
              SQLITE_OK);
    int described = 0, count = 0;
    for (; sqlite3_step(tables) == SQLITE_ROW; ++count)
        described +=
            description.find(reinterpret_cast<const char*>(sqlite3_column_text(tables, 0))) != description.npos;
    EXPECT_EQ(count, 31);
    EXPECT_EQ(described, 19);  // all, and one example of the twelve others
    sqlite3_finalize(tables);
    sqlite3_close(file);
}

}  // namespace
