// Paths and directory listings.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/export.h"

namespace zolt::filesystem {

// A path as text, in the platform's own form. Both "/" and, on Windows, "\" separate its elements. Nothing is read
// from the disk but by is_dir and is_file.
class PLATFORMUTILS_EXPORT path {
public:
    path() = default;
    path(std::string text) : m_text(std::move(text)) {}
    path(std::string_view text) : m_text(text) {}
    path(const char* text) : m_text(text) {}

    const std::string& string() const noexcept { return m_text; }
    bool empty() const noexcept { return m_text.empty(); }

    // Appends an element with one separator between; an absolute element takes the place of the whole path.
    path& operator/=(const path& element);
    friend path operator/(path base, const path& element) { return base /= element; }

    // The path without its last element: "a/b" gives "a", "a" gives "", "/" stays "/".
    path parent_path() const;

    // The last element: "a/b" gives "b", "a/" gives "".
    path filename() const;

    // Whether the path leads to an existing directory or file, through links. An error counts as no.
    bool is_dir() const noexcept;
    bool is_file() const noexcept;

    friend bool operator==(const path& a, const path& b) noexcept { return a.m_text == b.m_text; }

private:
    std::string m_text;
};

// The entries of one directory without "." and "..", each as the directory's path with the name appended. They are
// read at once and come sorted by name, without regard to ASCII letter case (names that differ in case only: by bytes),
// so that a listing does not depend on the file system. A directory that cannot be read has no entries.
//
//     for (directory_iterator it(dir); it != directory_iterator(); ++it) use(*it);
class PLATFORMUTILS_EXPORT directory_iterator {
public:
    directory_iterator() = default;  // the end of every listing
    explicit directory_iterator(const path& directory);

    const path& operator*() const noexcept { return m_entries[m_position]; }
    const path* operator->() const noexcept { return &m_entries[m_position]; }
    directory_iterator& operator++() noexcept {
        ++m_position;
        return *this;
    }

    // Equal when both are at their end or both stand before the same number of remaining entries of equal listings.
    friend bool operator==(const directory_iterator& a, const directory_iterator& b) noexcept {
        return a.remaining() == b.remaining();
    }

private:
    std::size_t remaining() const noexcept { return m_entries.size() - m_position; }

    std::vector<path> m_entries;
    std::size_t m_position = 0;
};

}  // namespace zolt::filesystem
