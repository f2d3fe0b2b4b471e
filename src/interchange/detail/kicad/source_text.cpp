#include "interchange/detail/kicad/source_text.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "text/number.h"

namespace Quill::Interchange {

std::string KicadMessage::Message() const {
    std::string text = file;
    if (line != 0) {
        text += ':';
        Text::AppendNumber(text, line);
        text += ':';
        Text::AppendNumber(text, column);
    }
    return text.append(": ").append(reason);
}

namespace Kicad {

KicadMessage SourceText::At(std::size_t offset, std::string reason) const {
    const std::string_view before = Text().substr(0, std::min(offset, m_text.size()));
    const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
    return {m_file, lines + 1, before.size() - lineStart + 1, std::move(reason)};
}

std::string ReadWholeFile(const std::filesystem::path& path, const std::string& name) {
    const auto fail = [&](int code) {
        throw KicadMessage{name, 0, 0, "cannot be read: " + std::generic_category().message(code != 0 ? code : EIO)};
    };
    std::error_code status;
    if (std::filesystem::is_directory(path, status)) fail(EISDIR);  // opening one succeeds on some systems
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) fail(errno);
    std::string text;
    const std::uintmax_t size = std::filesystem::file_size(path, status);
    if (!status) text.reserve(static_cast<std::size_t>(size));
    std::string buffer(1 << 18, '\0');
    while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
        text.append(buffer, 0, static_cast<std::size_t>(file.gcount()));
    if (file.bad()) fail(errno);
    return text;
}

}  // namespace Kicad

}  // namespace Quill::Interchange
