// What each port of the file system provides.
#pragma once

#include <string>
#include <vector>

namespace zolt::filesystem {

enum class FileKind { None, File, Directory, Other };

// What stands at the end of the path, through links. An error counts as None.
FileKind KindOf(const std::string& path) noexcept;

// The names in a directory, in the system's order, with "." and "..". Empty when the directory cannot be opened or
// read to its end.
std::vector<std::string> NamesIn(const std::string& directory);

}  // namespace zolt::filesystem
