// Paths and directory listings.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/export.h"

namespace zolt::filesystem {

// A path as text, in the platform's own form: bytes on POSIX, text of the ANSI code page on Windows. Elements are
// separated by "/" and, on Windows, also by "\". Any length that the file system takes is allowed. Only is_dir and
// is_file look at the disk; the other operations work on the text alone.
class PLATFORMUTILS_EXPORT path {
public:
    path() = default;
    path(std::string text) : m_text(std::move(text)) {}
    path(std::string_view text) : m_text(text) {}
    path(const char* text) : m_text(text) {}

    const std::string& string() const noexcept { return m_text; }
    bool empty() const noexcept { return m_text.empty(); }

    // Appends an element, with the platform's separator between unless one ends the path already. An empty element
    // changes nothing; one that begins at a root ("/usr", "C:\lib") takes the place of the whole path.
    path& operator/=(const path& element);
    friend path operator/(path base, const path& element) {
        base /= element;
        return base;
    }

    // The path without its last element and the separators before it: "a/b" gives "a", "a/" gives "a", "a" gives "".
    // A root is its own parent: "/" stays "/", "C:\" stays "C:\".
    path parent_path() const;

    // The last element: "a/b" gives "b", "a/" and "/" give "".
    path filename() const;

    // Whether the path leads to an existing directory or to a regular file, through links. An error counts as no.
    bool is_dir() const noexcept;
    bool is_file() const noexcept;

    friend bool operator==(const path& a, const path& b) noexcept { return a.m_text == b.m_text; }

private:
    std::string m_text;
};

// The entries of one directory without "." and "..", each as the directory's path with the name appended. They are
// read at construction and come sorted by name, without regard to ASCII letter case (names that differ in case only:
// by bytes), so that a listing does not depend on the file system and later changes do not disturb it. A directory
// that cannot be read has no entries. Copies share the listing.
//
//     for (directory_iterator it(dir); it != directory_iterator(); ++it) use(*it);
class PLATFORMUTILS_EXPORT directory_iterator {
public:
    directory_iterator() = default;  // the end of every listing
    explicit directory_iterator(const path& directory);

    // Only before the end.
    const path& operator*() const noexcept { return (*m_entries)[m_position]; }
    const path* operator->() const noexcept { return &(*m_entries)[m_position]; }
    directory_iterator& operator++() noexcept {
        ++m_position;
        return *this;
    }

    // Equal when both are at their end, or are copies that stand at the same entry.
    friend bool operator==(const directory_iterator& a, const directory_iterator& b) noexcept {
        if (a.AtEnd() || b.AtEnd()) return a.AtEnd() && b.AtEnd();
        return a.m_entries == b.m_entries && a.m_position == b.m_position;
    }

private:
    bool AtEnd() const noexcept { return m_entries == nullptr || m_position == m_entries->size(); }

    std::shared_ptr<const std::vector<path>> m_entries;
    std::size_t m_position = 0;
};

}  // namespace zolt::filesystem
