// Files that are read and written as a whole.
#pragma once

#include <string>
#include <string_view>

namespace Quill::Cli {

// Throws a CommandError that names the file.
std::string ReadWholeFile(const std::string& path);

// Puts a file of this content in the place of `path`. Whoever opens `path` finds the old file or the new one, never a
// part. Throws a CommandError that names the file, with the old one as it was; also when `path` is there and is no
// regular file. A link stays, and what it leads to is replaced.
void ReplaceFile(const std::string& path, std::string_view content);

// A CommandError that says of the file what the number of a system error means; 0 stands for an error without number.
[[noreturn]] void ThrowFileError(const std::string& path, int code);

}  // namespace Quill::Cli
