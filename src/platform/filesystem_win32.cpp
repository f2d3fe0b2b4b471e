#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <climits>

#include <windows.h>

#include "platform/detail/directory.h"

namespace zolt::filesystem {

namespace {

// Narrow text is the ANSI code page's, as everywhere in the library. It is widened here only because the narrow calls
// of the system end at MAX_PATH characters.
std::wstring Widen(const std::string& text) {
    if (text.empty() || text.size() > INT_MAX) return {};
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

// The null-terminated text in the ANSI code page; like the narrow calls, with "?" for what the page does not have.
std::string Narrow(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), size, nullptr, nullptr);
    narrow.pop_back();  // the terminator
    return narrow;
}

// The form that the system takes at any length: short paths as they are, long ones absolute behind the prefix that
// lifts the limit. The limit of directories is 12 characters below MAX_PATH.
std::wstring SystemPath(const std::string& path) {
    constexpr std::size_t ShortPath = MAX_PATH - 12;
    std::wstring wide = Widen(path);
    if (wide.size() < ShortPath || wide.compare(0, 4, L"\\\\?\\") == 0) return wide;

    const DWORD needed = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    std::wstring full(needed, L'\0');
    const DWORD size = GetFullPathNameW(wide.c_str(), needed, full.data(), nullptr);
    if (size == 0 || size >= needed) return wide;  // the system's call on the path then tells of the failure
    full.resize(size);
    return full.compare(0, 2, L"\\\\") == 0 ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace

FileKind KindOf(const std::string& path) noexcept {
    try {
        const std::wstring name = SystemPath(path);
        DWORD attributes = GetFileAttributesW(name.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::None;
        if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
            // Only opening follows a link. No access right is asked for, so sharing cannot refuse it.
            const HANDLE target = CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                              nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
            if (target == INVALID_HANDLE_VALUE) return FileKind::None;
            BY_HANDLE_FILE_INFORMATION information;
            const bool known = GetFileInformationByHandle(target, &information) != FALSE;
            CloseHandle(target);
            if (!known) return FileKind::None;
            attributes = information.dwFileAttributes;
        }
        if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return FileKind::Directory;
        return (attributes & FILE_ATTRIBUTE_DEVICE) != 0 ? FileKind::Other : FileKind::File;
    } catch (...) {
        return FileKind::None;  // no memory for the path's other form
    }
}

std::vector<std::string> NamesIn(const std::string& directory) {
    class Search {
    public:
        Search(const std::wstring& pattern, WIN32_FIND_DATAW& entry)
            : m_handle(FindFirstFileW(pattern.c_str(), &entry)) {}
        ~Search() {
            if (IsOpen()) FindClose(m_handle);
        }
        Search(const Search&) = delete;
        Search& operator=(const Search&) = delete;

        bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
        bool Next(WIN32_FIND_DATAW& entry) noexcept { return FindNextFileW(m_handle, &entry) != FALSE; }

    private:
        HANDLE m_handle;
    };

    std::vector<std::string> names;
    if (directory.empty()) return names;  // else the pattern would name the current directory's root
    WIN32_FIND_DATAW entry;
    Search search(SystemPath(directory + "\\*"), entry);
    if (!search.IsOpen()) return names;
    do {
        names.push_back(Narrow(entry.cFileName));
    } while (search.Next(entry));
    if (GetLastError() != ERROR_NO_MORE_FILES) names.clear();
    return names;
}

}  // namespace zolt::filesystem
