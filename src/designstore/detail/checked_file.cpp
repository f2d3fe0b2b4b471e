#include "designstore/detail/checked_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <unistd.h>

#include "designstore/detail/schema.h"

namespace Orin::DesignDb {

namespace {

constexpr std::string_view Magic("SQLite format 3\0", 16);
constexpr std::size_t HeaderSize = 100;
constexpr std::size_t EncodingAt = 56;
constexpr std::size_t VersionAt = 60;
constexpr std::size_t ApplicationAt = 68;

struct Limit {
    int id;
    int value;
};
// Far beyond what a design file needs, and far below what would hurt.
constexpr Limit Limits[] = {
    {SQLITE_LIMIT_LENGTH, 1 << 28},     {SQLITE_LIMIT_SQL_LENGTH, 1 << 16}, {SQLITE_LIMIT_COLUMN, 32},
    {SQLITE_LIMIT_EXPR_DEPTH, 32},      {SQLITE_LIMIT_COMPOUND_SELECT, 4},  {SQLITE_LIMIT_VDBE_OP, 100000},
    {SQLITE_LIMIT_FUNCTION_ARG, 16},    {SQLITE_LIMIT_ATTACHED, 0},         {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 64},
    {SQLITE_LIMIT_VARIABLE_NUMBER, 32}, {SQLITE_LIMIT_TRIGGER_DEPTH, 1},    {SQLITE_LIMIT_WORKER_THREADS, 0},
};

// The first bytes; fewer when the file is shorter.
std::string ReadHeader(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string header(HeaderSize, '\0');
    if (file) file.read(header.data(), static_cast<std::streamsize>(header.size()));
    if (!file && !file.eof()) throw StoreFault{std::generic_category().message(errno != 0 ? errno : EIO)};
    header.resize(static_cast<std::size_t>(file.gcount()));
    return header;
}

std::uint32_t NumberAt(const std::string& header, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        number = number << 8 | static_cast<unsigned char>(header[i]);
    return number;
}

bool HasContent(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return !error && size != 0;
}

void CheckSchema(SqliteFile& file) {
    const std::vector<std::string> expected = SchemaStatements();
    Statement tables(file, "SELECT sql FROM sqlite_schema");
    std::size_t count = 0;
    while (tables.Step()) {
        ++count;
        if (std::find(expected.begin(), expected.end(), tables.Text(0)) == expected.end())
            throw StoreFault{"the file is damaged: its tables are not those of a design"};
    }
    if (count != expected.size()) throw StoreFault{"the file is damaged: its tables are not those of a design"};
}

std::string AsUri(const std::string& path) {
    std::string uri = "file://";
    for (const char c : path) {
        if (c == '?' || c == '#' || c == '%') {
            constexpr char digits[] = "0123456789ABCDEF";
            const unsigned value = static_cast<unsigned char>(c);
            uri.append({'%', digits[value / 16], digits[value % 16]});
        } else {
            uri.push_back(c);
        }
    }
    return uri + "?immutable=1";
}

}  // namespace

std::string AbsoluteName(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) throw StoreFault{error.message()};
    return absolute.string();
}

bool HasSqliteHeader(const std::string& path) noexcept {
    try {
        return ReadHeader(path).starts_with(Magic);
    } catch (...) {
        return false;
    }
}

void CheckHeader(const std::string& path) {
    const std::string header = ReadHeader(path);
    if (header.size() < HeaderSize || !header.starts_with(Magic))
        throw StoreFault{"no design file: it is no SQLite database"};
    if (NumberAt(header, ApplicationAt) != ApplicationId)
        throw StoreFault{"no design file: it is an SQLite database of another application"};
    const std::uint32_t version = NumberAt(header, VersionAt);
    if (version > SchemaVersion)
        throw StoreFault{"has format version " + std::to_string(version) +
                         ", which is newer than this program; it reads up to " + std::to_string(SchemaVersion)};
    if (version == 0) throw StoreFault{"the file is damaged: it has no format version"};
    if (NumberAt(header, EncodingAt) != SQLITE_UTF8) throw StoreFault{"the file is damaged: its texts are not UTF-8"};
}

void Restrain(SqliteFile& file) {
    sqlite3* const handle = file.Get();
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    for (const Limit& limit : Limits)
        sqlite3_limit(handle, limit.id, limit.value);
    sqlite3_busy_timeout(handle, 10000);
    file.Run("PRAGMA cell_size_check = ON");
    file.Run("PRAGMA mmap_size = 0");
}

std::unique_ptr<SqliteFile> OpenChecked(const std::string& path) {
    // A connection that could write removes what it made beside the file when it closes, and one that could not leaves
    // it there. But where a log or a journal waits to be brought into the file, only one that cannot write leaves the
    // file as it is.
    const bool isQuiet = !HasContent(path + "-wal") && !HasContent(path + "-journal");
    const auto open = [](const std::string& name, int flags) {
        auto file = std::make_unique<SqliteFile>(name, flags | SQLITE_OPEN_NOMUTEX);
        Restrain(*file);
        sqlite3_db_config(file->Get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, (flags & SQLITE_OPEN_READONLY) != 0 ? 1 : 0,
                          nullptr);
        file->Run("PRAGMA query_only = ON");
        file->Run("BEGIN");
        file->Ask("SELECT count(*) FROM sqlite_schema");
        return file;
    };
    std::unique_ptr<SqliteFile> file;
    if (isQuiet && access(std::filesystem::path(path).parent_path().c_str(), W_OK) != 0) {
        // Where nothing can be made beside the file there is no log either, and only a file without one can be read.
        file = open(AsUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    } else {
        file = open(path, isQuiet ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);
    }
    CheckSchema(*file);
    const std::string verdict = file->Ask("PRAGMA quick_check(1)");
    if (verdict != "ok") throw StoreFault{"the file is damaged: " + verdict};
    return file;
}

}  // namespace Orin::DesignDb
