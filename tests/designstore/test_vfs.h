// SQLite's file layer with a hook in front of each call that reaches the disk.
#pragma once

#include <functional>
#include <map>
#include <string>

#include <sqlite3.h>

namespace Tests {

enum class Io { Open, Read, Write, Truncate, Sync, Delete };

// Called before the call; a result other than SQLITE_OK takes its place.
struct IoCall {
    Io what;
    std::string path;
    const void* data = nullptr;
    sqlite3_int64 offset = 0;  // of a truncation: the new size
    int size = 0;
};
using IoHook = std::function<int(const IoCall&)>;

// Stands in for the default layer of the process while it exists; only one does at a time.
class TestVfs {
public:
    explicit TestVfs(IoHook hook) : m_base(sqlite3_vfs_find(nullptr)), m_vfs(*m_base), m_hook(std::move(hook)) {
        s_current = this;
        m_vfs.zName = "test";
        m_vfs.xOpen = [](sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* out) {
            return s_current->Open(name, file, flags, out);
        };
        m_vfs.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
            sqlite3_vfs* const base = s_current->m_base;
            const int code = s_current->m_hook({Io::Delete, name});
            return code != SQLITE_OK ? code : base->xDelete(base, name, sync);
        };
        sqlite3_vfs_register(&m_vfs, 1);
    }
    ~TestVfs() {
        sqlite3_vfs_unregister(&m_vfs);
        sqlite3_vfs_register(m_base, 1);
    }
    TestVfs(const TestVfs&) = delete;
    TestVfs& operator=(const TestVfs&) = delete;

private:
    // What the layer below gave for a file, and what the file has in place of its methods.
    struct File {
        std::string path;
        const sqlite3_io_methods* base;
        sqlite3_io_methods hooked;
    };

    int Open(sqlite3_filename name, sqlite3_file* file, int flags, int* out) {
        const std::string path = name != nullptr ? name : "";
        file->pMethods = nullptr;
        if (const int code = m_hook({Io::Open, path})) return code;
        const int code = m_base->xOpen(m_base, name, file, flags, out);
        if (file->pMethods == nullptr) return code;
        File& opened = m_files[file] = {path, file->pMethods, *file->pMethods};
        opened.hooked.xRead = [](sqlite3_file* of, void* data, int size, sqlite3_int64 offset) {
            return Hooked<&sqlite3_io_methods::xRead>(of, {Io::Read, "", nullptr, offset, size}, data, size, offset);
        };
        opened.hooked.xWrite = [](sqlite3_file* of, const void* data, int size, sqlite3_int64 offset) {
            return Hooked<&sqlite3_io_methods::xWrite>(of, {Io::Write, "", data, offset, size}, data, size, offset);
        };
        opened.hooked.xTruncate = [](sqlite3_file* of, sqlite3_int64 size) {
            return Hooked<&sqlite3_io_methods::xTruncate>(of, {Io::Truncate, "", nullptr, size}, size);
        };
        opened.hooked.xSync = [](sqlite3_file* of, int flag) {
            return Hooked<&sqlite3_io_methods::xSync>(of, {Io::Sync, ""}, flag);
        };
        file->pMethods = &opened.hooked;
        return code;
    }
    template <auto Method, class... Arguments>
    static int Hooked(sqlite3_file* file, IoCall call, Arguments... arguments) {
        const File& opened = s_current->m_files.at(file);
        call.path = opened.path;
        const int code = s_current->m_hook(call);
        return code != SQLITE_OK ? code : (opened.base->*Method)(file, arguments...);
    }

    static inline TestVfs* s_current = nullptr;
    sqlite3_vfs* const m_base;
    sqlite3_vfs m_vfs;
    IoHook m_hook;
    std::map<sqlite3_file*, File> m_files;  // by where they are; an entry that was closed waits for the next one there
};

}  // namespace Tests
