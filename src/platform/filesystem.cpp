#include "platform/filesystem.h"

#include <algorithm>

#include "platform/detail/directory.h"
#include "platform/detail/path_text.h"
#include "text/ascii.h"

namespace zolt::filesystem {

path& path::operator/=(const path& element) {
    m_text = Joined<NativeSyntax>(m_text, element.m_text);
    return *this;
}

path path::parent_path() const {
    return path(ParentOf<NativeSyntax>(m_text));
}

path path::filename() const {
    return path(std::string_view(m_text).substr(LastElement<NativeSyntax>(m_text)));
}

bool path::is_dir() const noexcept {
    return KindOf(m_text) == FileKind::Directory;
}

bool path::is_file() const noexcept {
    return KindOf(m_text) == FileKind::File;
}

directory_iterator::directory_iterator(const path& directory) {
    std::vector<std::string> names = NamesIn(directory.string());
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const int order = Quill::Text::CompareNoCase(a, b);
        return order != 0 ? order < 0 : a < b;
    });

    auto entries = std::make_shared<std::vector<path>>();
    entries->reserve(names.size());
    for (const std::string& name : names) {
        if (name != "." && name != "..") entries->push_back(directory / name);
    }
    m_entries = std::move(entries);
}

}  // namespace zolt::filesystem
