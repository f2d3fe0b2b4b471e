// SQLite's file layer with a hook in front of each call that reaches the disk.
#pragma once

#include <functional>
#include <string>

#include <sqlite3.h>

namespace Tests {

enum class Io { Open, Read, Write, Truncate, Sync, Delete };

// Called before the call; a result other than SQLITE_OK takes its place.
struct IoCall {
    Io what;
    const std::string& path;
    const void* data;
    sqlite3_int64 offset;  // of a truncation: the new size
    int size;
};
using IoHook = std::function<int(const IoCall&)>;

// Stands in for the default layer of the process while it exists.
class TestVfs {
public:
    explicit TestVfs(IoHook hook) : m_base(sqlite3_vfs_find(nullptr)), m_vfs(*m_base), m_hook(std::move(hook)) {
        m_vfs.szOsFile = static_cast<int>(sizeof(File)) + m_base->szOsFile;
        m_vfs.zName = "test";
        m_vfs.pAppData = this;
        m_vfs.xOpen = [](sqlite3_vfs* vfs, sqlite3_filename name, sqlite3_file* file, int flags, int* out) {
            TestVfs& self = *static_cast<TestVfs*>(vfs->pAppData);
            auto* const own = new (file) File{};
            own->vfs = &self;
            if (name != nullptr) own->path = new std::string(name);
            if (const int code = own->Ask(Io::Open)) return own->Discard(code);
            own->base = reinterpret_cast<sqlite3_file*>(own + 1);
            const int code = self.m_base->xOpen(self.m_base, name, own->base, flags, out);
            if (code != SQLITE_OK || own->base->pMethods == nullptr) return own->Discard(code);
            own->pMethods = &Methods();
            return SQLITE_OK;
        };
        m_vfs.xDelete = [](sqlite3_vfs* vfs, const char* name, int sync) {
            TestVfs& self = *static_cast<TestVfs*>(vfs->pAppData);
            const std::string path(name);
            const int code = self.m_hook({Io::Delete, path, nullptr, 0, 0});
            return code != SQLITE_OK ? code : self.m_base->xDelete(self.m_base, name, sync);
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
    // The layer below keeps its own file directly behind.
    struct File : sqlite3_file {
        TestVfs* vfs;
        std::string* path;
        sqlite3_file* base;

        int Ask(Io what, const void* data = nullptr, sqlite3_int64 offset = 0, int size = 0) {
            static const std::string s_nameless;
            return vfs->m_hook({what, path != nullptr ? *path : s_nameless, data, offset, size});
        }
        int Discard(int code) {
            delete path;
            pMethods = nullptr;
            return code;
        }
    };

    // A method of the layer below, for those that pass straight through.
    template <auto Method, class... Arguments>
    static int Pass(sqlite3_file* file, Arguments... arguments) {
        sqlite3_file* const base = static_cast<File*>(file)->base;
        return (base->pMethods->*Method)(base, arguments...);
    }

    static const sqlite3_io_methods& Methods() {
        using M = sqlite3_io_methods;
        static const sqlite3_io_methods s_methods = [] {
            M m{};
            m.iVersion = 2;
            m.xClose = [](sqlite3_file* file) {
                File* const own = static_cast<File*>(file);
                return own->Discard(own->base->pMethods->xClose(own->base));
            };
            m.xRead = [](sqlite3_file* file, void* data, int size, sqlite3_int64 offset) {
                const int code = static_cast<File*>(file)->Ask(Io::Read, nullptr, offset, size);
                return code != SQLITE_OK ? code : Pass<&M::xRead>(file, data, size, offset);
            };
            m.xWrite = [](sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
                const int code = static_cast<File*>(file)->Ask(Io::Write, data, offset, size);
                return code != SQLITE_OK ? code : Pass<&M::xWrite>(file, data, size, offset);
            };
            m.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
                const int code = static_cast<File*>(file)->Ask(Io::Truncate, nullptr, size);
                return code != SQLITE_OK ? code : Pass<&M::xTruncate>(file, size);
            };
            m.xSync = [](sqlite3_file* file, int flags) {
                const int code = static_cast<File*>(file)->Ask(Io::Sync);
                return code != SQLITE_OK ? code : Pass<&M::xSync>(file, flags);
            };
            m.xFileSize = Pass<&M::xFileSize, sqlite3_int64*>;
            m.xLock = Pass<&M::xLock, int>;
            m.xUnlock = Pass<&M::xUnlock, int>;
            m.xCheckReservedLock = Pass<&M::xCheckReservedLock, int*>;
            m.xFileControl = Pass<&M::xFileControl, int, void*>;
            m.xSectorSize = Pass<&M::xSectorSize>;
            m.xDeviceCharacteristics = Pass<&M::xDeviceCharacteristics>;
            m.xShmMap = Pass<&M::xShmMap, int, int, int, void volatile**>;
            m.xShmLock = Pass<&M::xShmLock, int, int, int>;
            m.xShmBarrier = [](sqlite3_file* file) {
                sqlite3_file* const base = static_cast<File*>(file)->base;
                base->pMethods->xShmBarrier(base);
            };
            m.xShmUnmap = Pass<&M::xShmUnmap, int>;
            return m;
        }();
        return s_methods;
    }

    sqlite3_vfs* const m_base;
    sqlite3_vfs m_vfs;
    IoHook m_hook;
};

}  // namespace Tests
