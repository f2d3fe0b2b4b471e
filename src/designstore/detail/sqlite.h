// SQLite's connections and statements as objects. What fails throws a StoreFault with SQLite's words.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace Orin::DesignDb {

// Why a file cannot be used, in words that follow the file's name.
struct StoreFault {
    std::string reason;
};

// A connection to one database file. One thread at a time.
class SqliteFile {
public:
    // `flags` are those of sqlite3_open_v2. A name that begins with "file:" is a URI when they say so.
    SqliteFile(const std::string& name, int flags);

    void Run(const char* sql);
    // The first column of the first row.
    std::string Ask(const char* sql);

    // Fails with what went wrong last.
    [[noreturn]] void Fail() const;

    sqlite3* Get() const noexcept { return m_handle.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

// A prepared statement, which is bound, stepped and bound again. The file must outlive it.
class Statement {
public:
    Statement() = default;
    Statement(const SqliteFile& file, std::string_view sql);

    explicit operator bool() const noexcept { return m_handle != nullptr; }

    // Parameters in their order. Texts must live until Run or the last Step.
    Statement& operator<<(std::int64_t value);
    Statement& operator<<(std::string_view text);
    Statement& Blob(std::string_view bytes);
    Statement& Null();

    // Runs a statement that gives no rows, and makes it ready to be bound again.
    void Run();

    // The next row; false at the end, after which the statement can be bound again.
    bool Step();

    std::int64_t Integer(int column) const noexcept { return sqlite3_column_int64(m_handle.get(), column); }
    bool IsNull(int column) const noexcept { return sqlite3_column_type(m_handle.get(), column) == SQLITE_NULL; }
    // Valid until the next step; so below.
    std::string_view Text(int column) const;
    std::string_view Bytes(int column) const;

private:
    [[noreturn]] void Fail() const;
    void Check(int code) const {
        if (code != SQLITE_OK) Fail();
    }

    struct Finalize {
        void operator()(sqlite3_stmt* handle) const noexcept { sqlite3_finalize(handle); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
    int m_bound = 0;
};

// A write transaction: rolled back unless committed.
class WriteTransaction {
public:
    explicit WriteTransaction(SqliteFile& file) : m_file(file) { m_file.Run("BEGIN IMMEDIATE"); }
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction&) = delete;
    WriteTransaction& operator=(const WriteTransaction&) = delete;

    void Commit() { m_file.Run("COMMIT"); }

private:
    SqliteFile& m_file;
};

}  // namespace Orin::DesignDb
