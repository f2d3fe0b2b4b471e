// The text of one schematic file, and places in it.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>

#include "interchange/kicad_import.h"

namespace Quill::Interchange::Kicad {

// Holds the text of a file; views of it, and of the texts that were decoded from it, live as long as the object, which
// does not move.
class SourceText {
public:
    // `file` is the name that messages bear.
    SourceText(std::string file, std::string text) : m_file(std::move(file)), m_text(std::move(text)) {}
    SourceText(const SourceText&) = delete;
    SourceText& operator=(const SourceText&) = delete;

    const std::string& File() const noexcept { return m_file; }
    std::string_view Text() const noexcept { return m_text; }

    // A message about the byte at `offset`. Lines are counted only now, since hardly any place is ever asked for.
    KicadMessage At(std::size_t offset, std::string reason) const;
    KicadMessage Whole(std::string reason) const { return {m_file, 0, 0, std::move(reason)}; }

    // Keeps a text that differs from what the file has.
    std::string_view Keep(std::string text) { return m_kept.emplace_back(std::move(text)); }

private:
    std::string m_file;
    std::string m_text;
    std::deque<std::string> m_kept;
};

// The content of a file. Throws a KicadMessage about `name` when it cannot be read.
std::string ReadWholeFile(const std::filesystem::path& path, const std::string& name);

}  // namespace Quill::Interchange::Kicad
