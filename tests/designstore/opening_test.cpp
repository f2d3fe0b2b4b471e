// Which files are opened, by whom, and what the others are told.
#include <random>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include "tests/designstore/stored_design.h"
#include "tests/support/damage.h"

namespace {

using namespace Orin;
using namespace Orin::DesignDb;
using Tests::Design;
using Tests::FileText;

class Opening : public testing::Test {
protected:
    Opening() {
        Design design;
        design.Read(json);
        EXPECT_TRUE(design.Create(path));
        good = FileText(path);
    }
    void Write(const std::string& text) const { std::ofstream(path, std::ios::binary | std::ios::trunc) << text; }
    // As another program would.
    void Run(const std::string& sql) const {
        sqlite3* file = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &file), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(file);
        sqlite3_close(file);
    }
    void ExpectNothingBeside() const {
        for (const char* beside : {"-wal", "-shm", "-lock", "-journal", "-new"})
            EXPECT_FALSE(std::filesystem::exists(path + beside)) << beside;
    }
    // Why the file is refused, for reading and for writing alike. It stays as it is, and alone.
    std::string Refusal() const {
        const std::string before = FileText(path);
        const std::string refusal = Design(path).Refusal();
        EXPECT_EQ(Design(path, EFileAccess::Read).Refusal(), refusal);
        EXPECT_TRUE(FileText(path) == before);
        ExpectNothingBeside();
        return refusal;
    }

    const Tests::Folder folder;
    const std::string path = folder / "design.qdb", json = FileText(QUILL_TEST_DATA "/everything.json");
    std::string good;
};

TEST_F(Opening, GivesTheDesignThatWasWritten) {
    for (const EFileAccess access : {EFileAccess::Read, EFileAccess::Write})
        EXPECT_EQ(Design(path, access).Json(), json);
    ExpectNothingBeside();
}

TEST_F(Opening, RefusesWhatIsNoDesignFile) {
    const auto with = [this](std::size_t at, const char* bytes) { return std::string(good).replace(at, 4, bytes, 4); };
    const std::pair<const char*, std::string> cases[] = {
        {"no design file: it is no SQLite database", ""},
        {"no design file: it is no SQLite database", json},
        {"no design file: it is an SQLite database of another application", with(68, "\0\0\0\1")},
        {"has format version 2, which is newer than this program", with(60, "\0\0\0\2")},
        {"the file is damaged", good.substr(0, good.size() - 8192)},
        {"the file is damaged", good.substr(0, 100)},
    };
    for (const auto& [why, file] : cases) {
        SCOPED_TRACE(why);
        Write(file);
        EXPECT_NE(Refusal().find(path + ": " + why), std::string::npos) << Refusal();
        EXPECT_NE(LooksLikeDesignFile(path), std::string(why).find("no SQLite") != std::string::npos);
    }
    std::filesystem::remove(path);
    EXPECT_NE(Design(path).Refusal().find(path + ": No such file"), std::string::npos);
}

TEST_F(Opening, RefusesTablesAndRowsThatNoDesignHas) {
    const std::pair<const char*, const char*> cases[] = {
        {"its tables are not those of a design", "CREATE VIEW v AS SELECT * FROM comp"},
        {"its tables are not those of a design", "CREATE TRIGGER t AFTER INSERT ON comp BEGIN DELETE FROM pin; END"},
        {"its tables are not those of a design", "CREATE INDEX i ON comp(label)"},
        {"its tables are not those of a design", "DROP TABLE member_before"},
        {"table design, row 2: a second design", "INSERT INTO design VALUES(2, '')"},
        {"the design has no name", "DELETE FROM design"},
        {"table next_slot lacks a row", "DELETE FROM next_slot WHERE kind = 7"},
        {"an id that was never given", "UPDATE next_slot SET slot = 2 WHERE kind = 8"},
        {"the index of another object",
         "UPDATE comp SET idx = (SELECT min(idx) FROM net) WHERE id = (SELECT min(id) FROM comp)"},
        {"the index of another object, or none", "UPDATE block SET idx = 0"},
        {"table comp, row 12: no block", "UPDATE comp SET block = 0"},
        {"an object that never was", "UPDATE comp SET definition = 4000000000"},
        {"a number that is out of range", "UPDATE comp SET types = -1"},
        {"a text with a NUL", "UPDATE comp SET label = 'a' || char(0)"},
        {"no component", "DELETE FROM comp"},
        {"a net that is not of its block", "UPDATE pin SET net = 77"},
        {"no owner in its block", "UPDATE grp SET owner = 4000"},
        {"a group that owns itself", "UPDATE grp SET owner = id"},
        {"the name of another one", "UPDATE config SET name = ''"},
        {"no owner, or one with another view", "UPDATE view SET grp = 1, comp = 0"},
        {"a view of two objects or of none", "UPDATE view SET grp = 0, comp = 0"},
        {"no net or no sheet", "UPDATE piece SET net = 77"},
        {"no view", "UPDATE item SET view = 77"},
        {"bytes that are no drawing", "UPDATE item SET data = x''"},
        {"bytes that are no drawing", "UPDATE item SET data = CAST(data || x'00' AS BLOB)"},
        {"bytes that are no drawing", "UPDATE comp SET drawn = x'FFFFFFFFFFFFFFFFFF01'"},
        {"a drawing of another kind of object", "UPDATE pin SET drawn = x'01010100000000000000'"},
        {"no bus and net of one block", "UPDATE bus_net SET net = 77 + net"},
        {"no group", "UPDATE member SET grp = 77 + grp"},
        {"an object that cannot be a member",
         "INSERT INTO member SELECT max(grp), (SELECT idx FROM pin), 1, 0 FROM member"},
        {"a rank given twice", "UPDATE member SET rank = 5"},
        {"no object that bears attributes", "UPDATE attribute SET object = 77 WHERE kind = 7"},
        {"an attribute without a name", "INSERT INTO attribute VALUES(1, 0, 0, 0, '', '')"},
        {"a family that only components have", "INSERT INTO attribute VALUES(1, 0, 0, 1, 'a', '')"},
        {"no such place", "INSERT INTO attribute SELECT 7, id, 99, 1, 'a', '' FROM comp"},
        {"no place above", "INSERT INTO place VALUES(99, 98, 1, 1)"},
        {"no name and number of its own", "INSERT INTO savepoint VALUES(1, 'QUILL')"},
        {"row 9: no block",
         "INSERT INTO savepoint VALUES(1, 'a'); INSERT INTO comp_before "
         "SELECT 1, 9, 1, 77, '', '', 0, '', 0, 0, 0, 0, x'', 1"},
        {"the same place as another row", "INSERT INTO place VALUES(99, 0, 0, 1), (98, 0, 0, 1)"},
    };
    for (const auto& [why, sql] : cases) {
        SCOPED_TRACE(sql);
        Write(good);
        Run(sql);
        EXPECT_NE(Refusal().find(why), std::string::npos) << Refusal();
    }
}

// A file that is opened is a design through and through; any other is refused. Nothing else may come of it.
TEST_F(Opening, SurvivesFilesOfAnyContent) {
    int opened = 0;
    for (unsigned seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const std::string text = Tests::Damaged(good, random, {""}, true);
        Write(text);
        {
            Design design(path, EFileAccess::Read);
            opened += design.opened ? 1 : 0;
            // Of some damages SQLite says that memory was wanting.
            const int code = design.opened.GetErrorCode();
            ASSERT_TRUE(design.opened || code == static_cast<int>(EErrorCode::StoreFailed) ||
                        code == static_cast<int>(EErrorCode::OutOfMemory));
            if (design.opened) Design().Read(design.Json());
        }
        ASSERT_TRUE(FileText(path) == text);
        for (const char* suffix : {"-wal", "-shm", "-journal"})
            std::filesystem::remove(path + suffix);
    }
    EXPECT_GT(opened, 10);  // what is changed is as a rule no air between the rows
}

TEST_F(Opening, GivesOneProcessAtATimeTheRightToWrite) {
    int told[2];
    ASSERT_EQ(pipe(told), 0);
    const pid_t child = fork();
    if (child == 0) {
        Design design(path);
        const bool done = design.opened && design.editor.SetAttribute({}, "by", "child") && write(told[1], "x", 1) == 1;
        if (done) pause();  // until it is killed
        _exit(1);
    }
    char byte = 0;
    close(told[1]);
    ASSERT_EQ(read(told[0], &byte, 1), 1);
    char host[256] = "";
    gethostname(host, sizeof host);
    EXPECT_NE(Design(path).Refusal().find(path + ": is being written by process " + std::to_string(child) +
                                          " on host " + host),
              std::string::npos)
        << Design(path).Refusal();
    {
        Design reader(path, EFileAccess::Read);
        String value;
        EXPECT_TRUE(reader.opened && reader.snapshot->GetAttribute("by", value)) << reader.Refusal();
        EXPECT_EQ(reader.editor.SetAttribute({}, "by", "reader").GetErrorCode(),
                  static_cast<int>(EErrorCode::StoreFailed));
        EXPECT_TRUE(reader.snapshot->GetAttribute("by", value) && value == "child");
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(Design(path).opened) << Design(path).Refusal();  // the dead hold nothing
}

TEST_F(Opening, LeavesFilesThatAreThereAlone) {
    Design first, second;
    EXPECT_EQ(first.Create(path).GetErrorCode(), static_cast<int>(EErrorCode::AlreadyExists));
    EXPECT_TRUE(FileText(path) == good);
    EXPECT_EQ(first.Create(folder / "none/design.qdb").GetErrorCode(), static_cast<int>(EErrorCode::StoreFailed));
    EXPECT_TRUE(first.Create(folder / "first.qdb"));
    EXPECT_EQ(first.Create(folder / "second.qdb").GetErrorCode(), static_cast<int>(EErrorCode::AlreadyExists));
    EXPECT_TRUE(second.snapshot->BeginTransaction(ETransactionType::Edit));
    EXPECT_EQ(second.Create(folder / "second.qdb").GetErrorCode(), static_cast<int>(EErrorCode::TransactionActive));
    EXPECT_FALSE(std::filesystem::exists(folder / "second.qdb"));
}

}  // namespace
