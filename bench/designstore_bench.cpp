// Design files beside SQLite itself: the same rows through bare statements, in turn, in one process.

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include "bench/measure.h"
#include "designdb/database.h"
#include "designdb/editor.h"
#include "designstore/design_file.h"

namespace Orin::DesignDb {
namespace {

void Need(const Result& result) {
    if (!result) throw result;
}
void NeedOk(int code) {
    if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW)
        throw Result(EErrorCode::StoreFailed, sqlite3_errstr(code));
}

std::string FilePath(const char* name) {
    return (std::filesystem::temp_directory_path() / ("quill-bench-" + std::to_string(getpid()) + name)).string();
}
void RemoveFile(const std::string& path) {
    for (const char* suffix : {"", "-wal", "-shm", "-lock"})
        std::filesystem::remove(path + suffix);
}

// A million components with an attribute each, on sheets of a hundred.
struct Million {
    static constexpr unsigned Count = 1000000;
    Database database;
    std::unique_ptr<OrinPI> client;
    ContainerT<const ISnapshot> snapshot;
    Editor editor;
    Index block;

    explicit Million(unsigned count = Count) {
        static int s_designs = 0;
        Need(Database::Create(database, ("stored " + std::to_string(++s_designs)).c_str()));
        Attach();
        Need(snapshot->BeginTransaction(ETransactionType::Import));
        Need(editor.AddBlock({"block"}, block));
        Index sheet, comp;
        for (unsigned i = 0; i < count; ++i) {
            const std::string label = "U" + std::to_string(i);
            if (i % 100 == 0) Need(editor.AddGroup(block, {label.c_str()}, sheet));
            Need(editor.AddComp(block, {label.c_str()}, comp));
            Need(editor.SetAttribute(comp, "Ref Designator", label.c_str()));
            Need(editor.AddMember(sheet, comp));
        }
        Need(snapshot->CommitTransaction());
    }
    void Attach() {
        client = database.Connect("bench");
        Need(client->GetSnapshotByName(snapshot, WorkingSnapshot));
        Need(Editor::Open(editor, snapshot));
    }

    // The file that holds it; made once.
    static const std::string& File() {
        static const struct Made {
            std::string path = FilePath(".qdb");
            Made() {
                RemoveFile(path);
                Need(CreateDesignFile(Million().database, path, "million"));
            }
            ~Made() { RemoveFile(path); }
        } s_made;
        return s_made.path;
    }
};

constexpr const char* RowTables[] = {"block", "comp", "grp", "member", "attribute", "next_slot"};

class Bare {
public:
    explicit Bare(const std::string& path) { NeedOk(sqlite3_open(path.c_str(), &m_file)); }
    ~Bare() { sqlite3_close(m_file); }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;

    void Run(const std::string& sql) { NeedOk(sqlite3_exec(m_file, sql.c_str(), nullptr, nullptr, nullptr)); }
    sqlite3_stmt* Prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        NeedOk(sqlite3_prepare_v2(m_file, sql.c_str(), -1, &statement, nullptr));
        return statement;
    }
    // Every column of every row, each in its type.
    template <class Use>
    void Step(const std::string& table, Use&& use) {
        sqlite3_stmt* const rows = Prepare("SELECT * FROM " + table);
        while (sqlite3_step(rows) == SQLITE_ROW)
            for (int i = 0; i < sqlite3_column_count(rows); ++i)
                use(rows, i);
        sqlite3_finalize(rows);
    }

private:
    sqlite3* m_file = nullptr;
};

// Files are waited for, so these are seconds on the wall.
template <class Work>
double Seconds(Work&& work) {
    return Quill::Bench::Seconds(work, CLOCK_MONOTONIC);
}

void Report(benchmark::State& state, const char* name, double ours, double theirs, double limit) {
    Quill::Bench::Tell(state, {.work = name,
                               .against = "the same rows through bare SQLite",
                               .operations = static_cast<double>(state.iterations()),
                               .ours = ours,
                               .yardstick = theirs,
                               .limit = limit});
}

void OpenFile(benchmark::State& state) {
    const std::string& path = Million::File();
    double ours = 0, theirs = 0;
    for (auto _ : state) {
        Database database;
        String design;
        const double own = Seconds([&] { Need(OpenDesignFile(database, "opened", path, EFileAccess::Read, design)); });
        ours += own;
        theirs += Seconds([&] {
            Bare file(path);
            for (const char* table : RowTables)
                file.Step(table, [](sqlite3_stmt* row, int column) {
                    if (sqlite3_column_type(row, column) == SQLITE_INTEGER) {
                        benchmark::DoNotOptimize(sqlite3_column_int64(row, column));
                    } else {
                        benchmark::DoNotOptimize(sqlite3_column_text(row, column));
                    }
                });
        });
        state.SetIterationTime(own);
    }
    Report(state, "open a design file of 1,000,000 components", ours, theirs, 4);
}

// Binds the values in their order and inserts them.
template <class... Values>
void Insert(sqlite3_stmt* statement, const Values&... values) {
    int column = 0;
    const auto bind = [&]<class Value>(const Value& value) {
        if constexpr (std::is_integral_v<Value>) {
            sqlite3_bind_int64(statement, ++column, value);
        } else {
            sqlite3_bind_text(statement, ++column, value.c_str(), static_cast<int>(value.size()), SQLITE_STATIC);
        }
    };
    (bind(values), ...);
    NeedOk(sqlite3_step(statement));
    sqlite3_reset(statement);
}

void CreateFile(benchmark::State& state) {
    const std::string made = FilePath("-made.qdb"), bare = FilePath("-bare.db");
    std::vector<std::string> schema, labels;
    for (unsigned i = 0; i < Million::Count; ++i)
        labels.push_back("U" + std::to_string(i));
    {
        Bare file(Million::File());
        sqlite3_stmt* const sql = file.Prepare("SELECT sql FROM sqlite_schema");
        while (sqlite3_step(sql) == SQLITE_ROW)
            schema.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(sql, 0)));
        sqlite3_finalize(sql);
    }
    const Million design;
    const std::string name = "Ref Designator";
    double ours = 0, theirs = 0;
    for (auto _ : state) {
        RemoveFile(made);
        RemoveFile(bare);
        // A database is bound to a file once.
        const double own = Seconds([&] { Need(CreateDesignFile(design.database, made, "million")); });
        ours += own;
        theirs += Seconds([&] {
            Bare file(bare);
            file.Run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN");
            for (const std::string& sql : schema)
                file.Run(sql);
            sqlite3_stmt* const comps = file.Prepare("INSERT INTO comp VALUES(?, ?, 1, ?, '', 0, '', 0, 0, 0, 0, x'')");
            sqlite3_stmt* const sheets = file.Prepare("INSERT INTO grp VALUES(?, ?, 1, 0, 2, ?, x'')");
            sqlite3_stmt* const attributes = file.Prepare("INSERT INTO attribute VALUES(7, ?, 0, 0, ?, ?)");
            sqlite3_stmt* const members = file.Prepare("INSERT INTO member VALUES(?, ?, ?, 0)");
            const std::int64_t kind = std::int64_t{7} << 56;
            for (std::int64_t i = 0; i < Million::Count; ++i)
                Insert(comps, i + 1, kind + i + 1, labels[static_cast<std::size_t>(i)]);
            for (std::int64_t i = 0; i < Million::Count; i += 100)
                Insert(sheets, i / 100 + 1, kind + i / 100 + 1, labels[static_cast<std::size_t>(i)]);
            for (std::int64_t i = 0; i < Million::Count; ++i)
                Insert(attributes, i + 1, name, labels[static_cast<std::size_t>(i)]);
            for (std::int64_t i = 0; i < Million::Count; ++i)
                Insert(members, i / 100 + 1, kind + i + 1, (i % 100 + 1) << 20);
            for (sqlite3_stmt* const statement : {comps, sheets, attributes, members})
                sqlite3_finalize(statement);
            file.Run("COMMIT");
        });
        state.SetIterationTime(own);
    }
    Report(state, "write 1,000,000 components to a new design file", ours, theirs, 2);
    RemoveFile(made);
    RemoveFile(bare);
}

void SmallCommit(benchmark::State& state) {
    const std::string path = FilePath("-small.qdb"), bare = FilePath("-small.db");
    RemoveFile(path);
    RemoveFile(bare);
    std::filesystem::copy_file(Million::File(), path);
    std::filesystem::copy_file(Million::File(), bare);
    Million design(0);
    String name;
    Need(OpenDesignFile(design.database, "small", path, EFileAccess::Write, name));
    design.Attach();
    IteratorT<const IBlock> blocks;
    Need(design.snapshot->GetIterBlocks(blocks));
    Need(blocks->GetIndex(design.block));
    Bare file(bare);
    file.Run("PRAGMA synchronous = FULL");
    sqlite3_stmt* const comp = file.Prepare("INSERT INTO comp VALUES(?, ?, 1, 'U', '', 0, '', 0, 0, 0, 0, x'')");
    sqlite3_stmt* const attribute = file.Prepare("INSERT INTO attribute VALUES(7, ?, 0, 0, 'Ref Designator', 'U')");
    sqlite3_int64 id = 2 * Million::Count;
    double ours = 0, theirs = 0;
    for (auto _ : state) {
        const double own = Seconds([&] {
            Index made;
            Need(design.snapshot->BeginTransaction(ETransactionType::Edit));
            Need(design.editor.AddComp(design.block, {"U"}, made));
            Need(design.editor.SetAttribute(made, "Ref Designator", "U"));
            Need(design.snapshot->CommitTransaction());
        });
        ours += own;
        theirs += Seconds([&] {
            file.Run("BEGIN IMMEDIATE");
            Insert(comp, ++id, id);
            Insert(attribute, id);
            file.Run("COMMIT");
        });
        state.SetIterationTime(own);
    }
    Report(state, "one small commit to a design file", ours, theirs, 1.5);
    sqlite3_finalize(comp);
    sqlite3_finalize(attribute);
    RemoveFile(path);
    RemoveFile(bare);
}

BENCHMARK(OpenFile)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(CreateFile)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(SmallCommit)->UseManualTime()->Iterations(300)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Orin::DesignDb
