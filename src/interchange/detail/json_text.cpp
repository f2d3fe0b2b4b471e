#include "interchange/detail/json_text.h"

#include "interchange/index_text.h"
#include "text/utf8.h"

namespace Quill::Interchange {

namespace {

constexpr std::string_view HexDigits = "0123456789ABCDEF";

void AppendHex(std::string& out, unsigned char byte) {
    out += HexDigits[byte >> 4];
    out += HexDigits[byte & 15];
}

}  // namespace

void JsonText::Key(std::string_view key) {
    Separate(false);
    Quote(key);
    m_out += ": ";
    m_afterKey = true;
}

void JsonText::KeyOnNewLine(std::string_view key) {
    Separate(true);
    Quote(key);
    m_out += ": ";
    m_afterKey = true;
}

void JsonText::Value(std::string_view text) {
    if (Text::IsUtf8(text)) {
        BeginValue();
        Quote(text);
        return;
    }
    BeginObject();
    Key("hex");
    BeginValue();
    m_out += '"';
    for (const char c : text)
        AppendHex(m_out, static_cast<unsigned char>(c));
    m_out += '"';
    EndObject();
}

void JsonText::Value(const Orin::Index& index) {
    BeginValue();
    m_out += '"';
    m_out += IndexText(index);
    m_out += '"';
}

void JsonText::Raw(std::string_view text) {
    BeginValue();
    m_out += text;
}

void JsonText::Open(char bracket, bool lines) {
    BeginValue();
    m_out += bracket;
    m_levels.push_back({lines, true});
}

void JsonText::Close(char bracket) {
    m_levels.pop_back();
    m_out += bracket;
    if (m_levels.empty()) m_out += '\n';
}

void JsonText::Separate(bool newLine) {
    Level& level = m_levels.back();
    if (!level.empty) m_out += ',';
    if (newLine || level.lines) {
        NewLine();
    } else if (!level.empty) {
        m_out += ' ';
    }
    level.empty = false;
}

void JsonText::BeginValue() {
    if (!m_afterKey && !m_levels.empty()) Separate(false);
    m_afterKey = false;
}

void JsonText::NewLine() {
    m_out += '\n';
    m_out.append(m_levels.size(), ' ');
}

void JsonText::Quote(std::string_view text) {
    m_out += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            m_out += '\\';
            m_out += c;
        } else if (c == '\n') {
            m_out += "\\n";
        } else if (c == '\t') {
            m_out += "\\t";
        } else if (byte < 0x20 || byte == 0x7F) {
            m_out += "\\u00";
            AppendHex(m_out, byte);
        } else {
            m_out += c;
        }
    }
    m_out += '"';
}

}  // namespace Quill::Interchange
