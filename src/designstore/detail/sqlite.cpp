#include "designstore/detail/sqlite.h"

#include <new>
#include <utility>

namespace Orin::DesignDb {

namespace {

[[noreturn]] void FailWith(sqlite3* handle) {
    if (sqlite3_errcode(handle) == SQLITE_NOMEM) throw std::bad_alloc();
    const int code = sqlite3_extended_errcode(handle);
    const bool isDamaged = (code & 0xFF) == SQLITE_CORRUPT || (code & 0xFF) == SQLITE_NOTADB;
    std::string reason = isDamaged ? "the file is damaged: " : "";
    reason += sqlite3_errmsg(handle);
    // The bare sentence "disk I/O error" says less than which of the many ways it was.
    if ((code & 0xFF) == SQLITE_IOERR) reason += " (" + std::to_string(code) + ")";
    throw StoreFault{std::move(reason)};
}

}  // namespace

// ---- SqliteFile ----

SqliteFile::SqliteFile(const std::string& name, int flags) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle);
    if (handle == nullptr) throw std::bad_alloc();
    if (code != SQLITE_OK) Fail();
    sqlite3_extended_result_codes(handle, 1);
}

void SqliteFile::Fail() const {
    FailWith(m_handle.get());
}

void SqliteFile::Run(const char* sql) {
    if (sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
}

std::string SqliteFile::Ask(const char* sql) {
    Statement statement(*this, sql);
    return statement.Step() ? std::string(statement.Text(0)) : std::string();
}

// ---- Statement ----

Statement::Statement(const SqliteFile& file, std::string_view sql) {
    sqlite3_stmt* handle = nullptr;
    const int code = sqlite3_prepare_v3(file.Get(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                        &handle, nullptr);
    if (code != SQLITE_OK) file.Fail();
    m_handle.reset(handle);
}

void Statement::Fail() const {
    FailWith(sqlite3_db_handle(m_handle.get()));
}

Statement& Statement::operator<<(std::int64_t value) {
    Check(sqlite3_bind_int64(m_handle.get(), ++m_bound, value));
    return *this;
}

Statement& Statement::operator<<(std::string_view text) {
    // A null pointer would be bound as NULL.
    const char* const begin = text.empty() ? "" : text.data();
    Check(sqlite3_bind_text64(m_handle.get(), ++m_bound, begin, text.size(), SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

Statement& Statement::Blob(std::string_view bytes) {
    const char* const begin = bytes.empty() ? "" : bytes.data();
    Check(sqlite3_bind_blob64(m_handle.get(), ++m_bound, begin, bytes.size(), SQLITE_STATIC));
    return *this;
}

Statement& Statement::Null() {
    Check(sqlite3_bind_null(m_handle.get(), ++m_bound));
    return *this;
}

void Statement::Run() {
    m_bound = 0;
    const int code = sqlite3_step(m_handle.get());
    if (code != SQLITE_DONE && code != SQLITE_ROW) {
        // Resetting keeps the code and the words of the failure.
        sqlite3_reset(m_handle.get());
        Fail();
    }
    sqlite3_reset(m_handle.get());
}

bool Statement::Step() {
    const int code = sqlite3_step(m_handle.get());
    if (code == SQLITE_ROW) return true;
    m_bound = 0;
    sqlite3_reset(m_handle.get());
    if (code != SQLITE_DONE) Fail();
    return false;
}

std::string_view Statement::Text(int column) const {
    const unsigned char* const text = sqlite3_column_text(m_handle.get(), column);
    if (text == nullptr) return {};
    const int length = sqlite3_column_bytes(m_handle.get(), column);
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)};
}

std::string_view Statement::Bytes(int column) const {
    const void* const bytes = sqlite3_column_blob(m_handle.get(), column);
    if (bytes == nullptr) return {};
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(m_handle.get(), column))};
}

// ---- WriteTransaction ----

WriteTransaction::~WriteTransaction() {
    // SQLite may have rolled back by itself. A rollback changes nothing in the file, so its outcome does not matter.
    if (sqlite3_get_autocommit(m_file.Get()) == 0)
        static_cast<void>(sqlite3_exec(m_file.Get(), "ROLLBACK", nullptr, nullptr, nullptr));
}

}  // namespace Orin::DesignDb
