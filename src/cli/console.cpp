#include "cli/console.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include <fmt/format.h>
#include <unistd.h>

#include "cli/json.h"
#include "text/utf8.h"

namespace Quill::Cli {

namespace {

// The character that well-formed bytes stand for.
std::uint32_t Decode(std::string_view character) {
    const auto byte = [character](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(character[at]));
    };
    if (character.size() == 1) return byte(0);
    std::uint32_t code = byte(0) & (0xFFU >> (character.size() + 1));
    for (std::size_t i = 1; i < character.size(); ++i)
        code = code << 6 | (byte(i) & 0x3F);
    return code;
}

bool IsControl(std::uint32_t code) {
    const auto within = [code](std::uint32_t first, std::uint32_t last) { return code >= first && code <= last; };
    return within(0, 0x1F) || within(0x7F, 0x9F) || within(0x200E, 0x200F) || within(0x2028, 0x202E) ||
           within(0x2066, 0x2069) || code == 0x61C || code == 0xFEFF;
}

// The number of characters of a printable text, which stands for its width.
std::size_t Width(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const std::size_t length = Text::Utf8Length(text);
        if (length == 0) {
            printable += fmt::format("\\x{:02X}", static_cast<unsigned char>(text.front()));
            text.remove_prefix(1);
            continue;
        }
        const std::string_view character = text.substr(0, length);
        const std::uint32_t code = Decode(character);
        if (!IsControl(code)) {
            printable += character;
        } else {
            printable += code < 0x80 ? fmt::format("\\x{:02X}", code) : fmt::format("\\u{:04X}", code);
        }
        text.remove_prefix(length);
    }
    return printable;
}

void Say(std::string_view message) {
    std::cerr << "quill: " << Printable(message) << '\n';
}

void PrintJson(const Json& answer, int indent) {
    const std::string text = answer.Text(indent);
    // Outside of texts JSON has no characters above U+007F, and of control characters the line feed alone.
    std::string printable;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view character = rest.substr(0, std::max<std::size_t>(Text::Utf8Length(rest), 1));
        const std::uint32_t code = Decode(character);
        if (IsControl(code) && code != '\n') {
            printable += fmt::format("\\u{:04x}", code);
        } else {
            printable += character;
        }
        rest.remove_prefix(character.size());
    }
    std::cout << printable << '\n';
}

void PrintText(std::string_view text) {
    std::cout << text;
}

void PrintLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines)
        std::cout << Printable(line) << '\n';
}

bool HasColours() {
    const char* const refused = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    if (refused != nullptr && *refused != '\0') return false;
    if (terminal == nullptr || std::string_view(terminal) == "dumb") return false;
    return isatty(STDOUT_FILENO) != 0;
}

void Table::AddRow(const std::vector<std::string>& cells) {
    std::vector<std::string> row;
    row.reserve(cells.size());
    for (const std::string& cell : cells)
        row.push_back(Printable(cell));
    m_rows.push_back(std::move(row));
}

std::string Table::Render(bool colours) const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        widths.push_back(Width(m_columns[i].heading));
        for (const std::vector<std::string>& row : m_rows)
            widths[i] = std::max(widths[i], Width(row[i]));
    }
    std::string out;
    const auto line = [&](const auto& cell) {
        std::string text;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const std::string& content = cell(i);
            const std::string padding(widths[i] - Width(content), ' ');
            if (i != 0) text += "  ";
            text += m_columns[i].align == Align::Right ? padding + content : content + padding;
        }
        text.erase(text.find_last_not_of(' ') + 1);
        return text;
    };
    const std::string heading = line([this](std::size_t i) -> const std::string& { return m_columns[i].heading; });
    out += (colours ? "\x1B[1m" + heading + "\x1B[0m" : heading) + '\n';
    for (const std::vector<std::string>& row : m_rows)
        out += line([&row](std::size_t i) -> const std::string& { return row[i]; }) + '\n';
    return out;
}

}  // namespace Quill::Cli
