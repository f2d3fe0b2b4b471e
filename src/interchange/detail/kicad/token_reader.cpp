#include "interchange/detail/kicad/token_reader.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

constexpr double NanometresPerMillimetre = 1e6;
// No sheet is a kilometre wide; within this bound sums of coordinates never overflow.
constexpr double LargestLength = 1e6;

enum class Kind : std::uint8_t { Other, Blank, Open, Close, Quote, Bar, Hash };

constexpr std::array<Kind, 256> KindsOfCharacters = [] {
    std::array<Kind, 256> kinds{};
    for (const char c : {' ', '\t', '\r', '\n', '\f', '\v'})
        kinds[static_cast<unsigned char>(c)] = Kind::Blank;
    kinds['('] = Kind::Open;
    kinds[')'] = Kind::Close;
    kinds['"'] = Kind::Quote;
    kinds['|'] = Kind::Bar;
    kinds['#'] = Kind::Hash;
    return kinds;
}();

constexpr Kind KindOf(char c) noexcept {
    return KindsOfCharacters[static_cast<unsigned char>(c)];
}

struct StringEscape {
    char letter;
    char meaning;
};
constexpr StringEscape StringEscapes[] = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'},  {'a', '\a'}, {'b', '\b'},
                                          {'f', '\f'}, {'v', '\v'}, {'\\', '\\'}, {'"', '"'}};

constexpr int DigitValue(char c) noexcept {
    if (Text::IsDigit(c)) return c - '0';
    const char lower = Text::ToLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

}  // namespace

TokenReader::TokenReader(SourceText& source, std::string_view part)
    : m_source(source),
      m_text(source.Text().substr(0, static_cast<std::size_t>(part.data() - source.Text().data()) + part.size())),
      m_at(static_cast<std::size_t>(part.data() - source.Text().data())) {}

void TokenReader::Fail(std::size_t offset, std::string reason) const {
    throw m_source.At(offset, std::move(reason));
}

void TokenReader::EnterRoot(std::string_view head) {
    constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
    if (m_at == 0 && m_text.starts_with(ByteOrderMark)) m_at = ByteOrderMark.size();
    SkipBlanks();
    const std::size_t start = m_at;
    if (m_at == m_text.size()) Fail(m_at, "the file is empty");
    if (m_text[m_at] != '(' || Next() != Step::List || m_head != head)
        Fail(start, "this is no KiCad schematic: it does not begin with (" + std::string(head));
}

void TokenReader::ExpectEnd() {
    SkipBlanks();
    if (m_at != m_text.size()) Fail(m_at, "text after the end of the schematic");
}

bool TokenReader::IsFirstOfLine(std::size_t at) const noexcept {
    while (at > 0 && m_text[at - 1] != '\n' && KindOf(m_text[at - 1]) == Kind::Blank)
        --at;
    return at == 0 || m_text[at - 1] == '\n';
}

std::size_t TokenReader::LineEnd(std::size_t at) const noexcept {
    return std::min(m_text.find('\n', at), m_text.size());
}

// A line whose first character is "#" is a comment.
void TokenReader::SkipBlanks() {
    while (m_at < m_text.size()) {
        if (KindOf(m_text[m_at]) == Kind::Blank) {
            ++m_at;
        } else if (m_text[m_at] == '#' && IsFirstOfLine(m_at)) {
            m_at = LineEnd(m_at);
        } else {
            return;
        }
    }
}

bool TokenReader::EndsWord(std::size_t at) const noexcept {
    const Kind kind = KindOf(m_text[at]);
    return kind == Kind::Blank || kind == Kind::Open || kind == Kind::Close || kind == Kind::Quote;
}

std::size_t TokenReader::QuotedEnd(std::size_t start) const {
    std::size_t at = start + 1;
    while (true) {
        at = m_text.find('"', at);
        if (at == m_text.npos) Fail(start, "a text without its closing quote");
        // The quote is part of the text when an odd number of backslashes stands before it.
        std::size_t first = at;
        while (m_text[first - 1] == '\\' && first - 1 > start)
            --first;
        if ((at - first) % 2 == 0) return at;
        ++at;
    }
}

// Embedded data stands between bars and may hold anything but a bar.
std::size_t TokenReader::BarEnd(std::size_t start) const {
    const std::size_t end = m_text.find('|', start + 1);
    if (end == m_text.npos) Fail(start, "embedded data without its closing bar");
    return end;
}

std::string_view TokenReader::Decode(std::string_view raw, std::size_t offset) {
    std::string text;
    text.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '\\' || i + 1 == raw.size()) {
            text += raw[i];
            continue;
        }
        const char letter = raw[++i];
        const bool hex = letter == 'x';
        if (!hex && DigitValue(letter) >= 8) {
            const StringEscape* known = nullptr;
            for (const StringEscape& escape : StringEscapes)
                if (escape.letter == letter) known = &escape;
            text += known != nullptr ? known->meaning : letter;
            continue;
        }
        const int base = hex ? 16 : 8;
        const std::size_t most = hex ? 2 : 3;
        if (hex) ++i;
        int value = 0;
        std::size_t digits = 0;
        for (; digits < most && i + digits < raw.size() && DigitValue(raw[i + digits]) < base; ++digits)
            value = value * base + DigitValue(raw[i + digits]);
        if (value == 0 || value > 255) Fail(offset + i, "an escape that stands for no character");
        text += static_cast<char>(value);
        i += digits - 1;
    }
    return m_source.Keep(std::move(text));
}

void TokenReader::ReadQuoted() {
    const std::size_t end = QuotedEnd(m_at);
    const std::string_view raw = m_text.substr(m_at + 1, end - m_at - 1);
    if (raw.find('\0') != raw.npos) Fail(m_at + 1 + raw.find('\0'), "a text with the character U+0000");
    m_word = raw.find('\\') == raw.npos ? raw : Decode(raw, m_at + 1);
    m_at = end + 1;
}

void TokenReader::ReadToken() {
    m_wordStart = m_at;
    const Kind kind = KindOf(m_text[m_at]);
    if (kind == Kind::Quote) return ReadQuoted();
    if (kind == Kind::Bar) {
        const std::size_t end = BarEnd(m_at);
        m_word = m_text.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        return;
    }
    while (m_at < m_text.size() && !EndsWord(m_at)) {
        if (m_text[m_at] == '\0') Fail(m_at, "the character U+0000");
        ++m_at;
    }
    m_word = m_text.substr(m_wordStart, m_at - m_wordStart);
}

TokenReader::Step TokenReader::Next() {
    SkipBlanks();
    if (m_at == m_text.size()) Fail(m_at, "the text ends inside a list");
    switch (KindOf(m_text[m_at])) {
        case Kind::Close:
            if (m_depth == 0) Fail(m_at, "a closing bracket without an opening one");
            ++m_at;
            --m_depth;
            return Step::End;
        case Kind::Open: {
            m_listStart = m_at++;
            ++m_depth;
            SkipBlanks();
            m_head = {};
            if (m_at < m_text.size() && KindOf(m_text[m_at]) != Kind::Open && KindOf(m_text[m_at]) != Kind::Close) {
                ReadToken();
                m_head = m_word;
            }
            return Step::List;
        }
        default:
            ReadToken();
            return Step::Word;
    }
}

bool TokenReader::NextList() {
    while (true) {
        const Step step = Next();
        if (step != Step::Word) return step == Step::List;
    }
}

void TokenReader::Leave() {
    std::size_t open = 1;
    for (std::size_t at = m_at; at < m_text.size(); ++at) {
        switch (KindOf(m_text[at])) {
            case Kind::Open:
                ++open;
                break;
            case Kind::Close:
                if (--open == 0) {
                    m_at = at + 1;
                    --m_depth;
                    return;
                }
                break;
            case Kind::Quote:
                at = QuotedEnd(at);
                break;
            case Kind::Bar:
                if (EndsWord(at - 1)) at = BarEnd(at);
                break;
            case Kind::Hash:
                if (IsFirstOfLine(at)) at = LineEnd(at);
                break;
            case Kind::Other:
            case Kind::Blank:
                break;
        }
    }
    Fail(m_text.size(), "the text ends inside a list");
}

std::string_view TokenReader::ReadWord() {
    SkipBlanks();
    if (m_at == m_text.size()) Fail(m_at, "the text ends inside a list");
    const Kind kind = KindOf(m_text[m_at]);
    if (kind == Kind::Open || kind == Kind::Close) Fail(m_at, "a value is missing");
    ReadToken();
    return m_word;
}

bool TokenReader::TryReadWord() {
    SkipBlanks();
    if (m_at == m_text.size() || m_text[m_at] == '(' || m_text[m_at] == ')') return false;
    ReadToken();
    return true;
}

bool TokenReader::AtListEnd() {
    SkipBlanks();
    return m_at < m_text.size() && m_text[m_at] == ')';
}

std::int32_t TokenReader::ReadInteger() {
    const std::string_view word = ReadWord();
    const Text::ParsedNumber<std::int32_t> number = Text::ParseInt32(word);
    if (!number.Ok() || number.length != word.size()) Fail(m_wordStart, "a whole number should stand here");
    return number.value;
}

double TokenReader::ReadDouble() {
    const std::string_view word = ReadWord();
    const Text::ParsedNumber<double> number = Text::ParseDouble(word);
    // A number too small to be told from zero is zero.
    const bool tiny = number.status == Text::NumberStatus::OutOfRange && number.value == 0;
    if ((!number.Ok() && !tiny) || number.length != word.size()) Fail(m_wordStart, "a number should stand here");
    return number.value;
}

std::int64_t TokenReader::ReadLength() {
    const double millimetres = ReadDouble();
    if (!(std::abs(millimetres) <= LargestLength)) Fail(m_wordStart, "a length beyond one kilometre");
    return std::llround(millimetres * NanometresPerMillimetre);
}

Orin::Point TokenReader::ReadPoint() {
    const std::int64_t x = ReadLength();
    return {x, ReadLength()};
}

}  // namespace Quill::Interchange::Kicad
