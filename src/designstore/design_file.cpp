#include "designstore/design_file.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "designdb/detail/store.h"
#include "designstore/detail/checked_file.h"
#include "designstore/detail/loader.h"
#include "designstore/detail/schema.h"
#include "designstore/detail/sqlite.h"
#include "designstore/detail/unfinished_files.h"
#include "designstore/detail/writer.h"
#include "designstore/detail/writer_lock.h"

namespace Orin::DesignDb {

namespace {

// What `use` gives; what it throws, as a failure that names the file.
template <class Use>
Result AsResult(const std::string& path, Use&& use) noexcept {
    try {
        try {
            return use();
        } catch (const StoreFault& fault) {
            return Result(EErrorCode::StoreFailed, String(std::string_view(path + ": " + fault.reason)));
        } catch (const std::system_error& error) {
            return Result(EErrorCode::StoreFailed, String(std::string_view(path + ": " + error.code().message())));
        }
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

[[noreturn]] void FailSystem() {
    throw std::system_error(errno, std::generic_category());
}

// Makes what was written to a file or folder durable.
void Sync(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) FailSystem();
    const int failed = fsync(file);
    const int code = errno;
    close(file);
    if (failed != 0) throw std::system_error(code, std::generic_category());
}

void UseLog(SqliteFile& file) {
    if (file.Ask("PRAGMA journal_mode = WAL") != "wal") throw StoreFault{"the file system bears no write-ahead log"};
}

class SqliteStore final : public Store {
public:
    SqliteStore(std::string path, EFileAccess access) : m_path(std::move(path)), m_access(access) {}

    Result Load(const ProjectContent& content) override {
        return AsResult(m_path, [&]() -> Result {
            FileState state;
            CheckHeader(m_path);
            if (m_access == EFileAccess::Write) m_lock.emplace(m_path);
            const std::unique_ptr<SqliteFile> checked = OpenChecked(m_path);
            LoadProject(*checked, content, state, m_design);
            if (m_access == EFileAccess::Write) BeginWriting(content.places, std::move(state));
            return {};
        });
    }

    // Makes the file; the store can be committed to then.
    void Create(const ProjectContent& content, const String& design);

    Result Commit(const ChangeSet& changes) override {
        return Keep([&] { m_writer->WriteChanges(changes); });
    }
    Result Add(const SavedState& savePoint, const Graph& working) override {
        return Keep([&] { m_writer->AddSavePoint(savePoint, working); });
    }
    Result Remove(const String& savePoint) override {
        return Keep([&] { m_writer->RemoveSavePoint(savePoint); });
    }

    const String& Design() const noexcept { return m_design; }

private:
    ~SqliteStore() override = default;

    // One transaction: what `write` writes.
    template <class Write>
    Result Keep(Write&& write) {
        const std::lock_guard lock(m_mutex);
        if (!m_writer) return Result(EErrorCode::StoreFailed, String((m_path + ": " + m_refusal).c_str()));
        return AsResult(m_path, [&]() -> Result {
            std::optional<StoreFault> fault;
            try {
                WriteTransaction transaction(*m_file);
                write();
                try {
                    transaction.Commit();
                } catch (const StoreFault& failed) {
                    fault = failed;
                } catch (const std::bad_alloc&) {
                    fault = StoreFault{"out of memory"};
                }
                if (!fault) {
                    m_writer->Committed();
                    return {};
                }
            } catch (...) {
                m_writer->RolledBack();
                throw;
            }
            m_writer->RolledBack();
            Settle(*fault);
            throw std::move(*fault);
        });
    }

    void BeginWriting(const PathTable& places, FileState state) {
        m_file = std::make_unique<SqliteFile>(m_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX);
        Restrain(*m_file);
        UseLog(*m_file);  // a copy that another tool made may have another journal
        m_file->Run("PRAGMA synchronous = FULL");
        m_file->Run("PRAGMA secure_delete = OFF");
        m_writer = std::make_unique<DesignWriter>(*m_file, places, std::move(state));
    }

    // After a commit that failed at its end the log may hold all of it, though nobody reads it there yet; the next
    // opening would. A transaction that changes nothing takes its place in the log.
    void Settle(StoreFault& fault) {
        try {
            WriteTransaction transaction(*m_file);
            m_file->Run("UPDATE design SET name = name");
            transaction.Commit();
        } catch (...) {
            fault.reason += "; whether the file holds this last change shows when it is opened again";
            m_refusal = "has to be opened again, since an earlier change could not be written";
            m_writer.reset();
            m_file.reset();
        }
    }

    const std::string m_path;
    const EFileAccess m_access;
    std::mutex m_mutex;  // commits of the design and of its save points come at the same time
    std::string m_refusal = "was opened for reading";  // why there is no writer
    std::optional<WriterLock> m_lock;                  // given up last
    std::unique_ptr<SqliteFile> m_file;
    std::unique_ptr<DesignWriter> m_writer;
    String m_design;
};

// What SQLite makes beside a database file, and the file itself.
constexpr const char* DatabaseSuffixes[] = {"", "-wal", "-shm", "-journal"};

void RemoveDatabase(const std::string& path) {
    for (const char* suffix : DatabaseSuffixes)
        unlink((path + suffix).c_str());
}

// The files of one that is being made, with the lock that its maker holds.
std::vector<std::string> FilesOfMaking(const std::string& path, const std::string& unfinished) {
    std::vector<std::string> files;
    for (const char* suffix : DatabaseSuffixes)
        files.push_back(unfinished + suffix);
    files.push_back(path + WriterLock::Suffix);
    return files;
}

// Calls `make`, which makes a database file; what a failure leaves of it is removed.
template <class Make>
void MakeOrRemove(const std::string& path, Make&& make) {
    try {
        make();
    } catch (...) {
        RemoveDatabase(path);
        throw;
    }
}

void SqliteStore::Create(const ProjectContent& content, const String& design) {
    m_lock.emplace(m_path);
    const std::string unfinished = m_path + "-new";
    RemoveDatabase(unfinished);
    std::optional<UnfinishedFiles> making(FilesOfMaking(m_path, unfinished));
    FileState state;
    MakeOrRemove(unfinished, [&] {
        {
            SqliteFile file(unfinished, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX);
            // Nobody reads the file before it is complete, so nothing need be taken back in it.
            file.Run("PRAGMA journal_mode = OFF");
            file.Run("PRAGMA synchronous = OFF");
            file.Run("BEGIN");
            file.Run(("PRAGMA application_id = " + std::to_string(ApplicationId)).c_str());
            file.Run(("PRAGMA user_version = " + std::to_string(SchemaVersion)).c_str());
            for (const std::string& statement : SchemaStatements())
                file.Run(statement.c_str());
            DesignWriter writer(file, content.places, {});
            writer.WriteAll(content, design);
            file.Run("COMMIT");
            state = writer.Release();
            UseLog(file);
        }
        Sync(unfinished);
        // Unlike a renaming this never puts the file in another one's place.
        if (link(unfinished.c_str(), m_path.c_str()) != 0) {
            // Some file systems have no links; the lock and the look before have to do there.
            if (errno != EPERM && errno != EOPNOTSUPP) FailSystem();
            if (rename(unfinished.c_str(), m_path.c_str()) != 0) FailSystem();
        }
    });
    RemoveDatabase(unfinished);
    making.reset();
    MakeOrRemove(m_path, [&] {
        Sync(std::filesystem::path(m_path).parent_path().string());
        BeginWriting(content.places, std::move(state));
    });
    m_design = design;
}

// Binds a database to a new file.
class Creation final : public StoreWriter {
public:
    Creation(const std::string& path, const String& design) : m_path(path), m_design(design) {}

    Result Write(const ProjectContent& content, RefPtr<Store>& store) override {
        return AsResult(m_path, [&]() -> Result {
            if (std::filesystem::exists(std::filesystem::symlink_status(m_path)))
                return Result(EErrorCode::AlreadyExists, String(m_path.c_str()));
            RefPtr<SqliteStore> made(new SqliteStore(m_path, EFileAccess::Write));
            made->Create(content, m_design);
            store = std::move(made);
            return {};
        });
    }

private:
    const std::string& m_path;
    const String& m_design;
};

}  // namespace

Result CreateDesignFile(const Database& database, const std::string& path, const String& design) {
    return AsResult(path, [&]() -> Result {
        const std::string name = AbsoluteName(path);
        Creation creation(name, design);
        return BindStored(database, creation);
    });
}

Result OpenDesignFile(Database& database, const String& project, const std::string& path, EFileAccess access,
                      String& design) {
    return AsResult(path, [&]() -> Result {
        const RefPtr<SqliteStore> store(new SqliteStore(AbsoluteName(path), access));
        Result made = CreateStored(database, project, store);
        if (made) design = store->Design();
        return made;
    });
}

void RemoveUnfinishedDesignFiles() noexcept {
    UnfinishedFiles::RemoveAll();
}

bool LooksLikeDesignFile(const std::string& path) noexcept {
    return HasSqliteHeader(path);
}

}  // namespace Orin::DesignDb
