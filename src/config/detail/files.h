// Reading of files whose paths may be written with backslashes.
#pragma once

#include <optional>
#include <string>

namespace Quill::ConfigDetail {

// `path` with "/" for every backslash.
std::string WithForwardSlashes(std::string path);

// Paths are composed with backslashes on every platform, because the composed texts are part of what callers see. Where
// the backslash is an ordinary character of a name, a path that leads nowhere as it is given is tried with "/" instead.

// The bytes of the file at `path`; nothing when there is none or it cannot be read to its end.
std::optional<std::string> ReadWholeFile(const std::string& path);

// The form of `path` that leads to an existing directory; `path` with "/" when neither does.
std::string DirectoryAt(const std::string& path);

}  // namespace Quill::ConfigDetail
