#include "config/font_string_parser.h"

#include <iterator>
#include <string_view>
#include <utility>

#include "text/number.h"

namespace Quill::Fonts {
namespace {

constexpr char kSeparator = '|';
constexpr std::string_view kEmptyName = "0";

void AppendName(std::string& text, const std::string& name) {
    text += kSeparator;
    text += name.empty() ? kEmptyName : std::string_view(name);
}

// Takes the next token off the front of `rest`; "" when there is none.
std::string_view TakeToken(std::string_view& rest) {
    const std::size_t start = rest.find_first_not_of(kSeparator);
    if (start == std::string_view::npos) return rest = {};
    rest.remove_prefix(start);
    const std::string_view token = rest.substr(0, rest.find(kSeparator));
    rest.remove_prefix(token.size());
    return token;
}

std::string Name(std::string_view token) {
    return token == kEmptyName ? std::string() : std::string(token);
}

}  // namespace

int CFontStringParser::CFontData::*const CFontStringParser::s_numbers[] = {
    &CFontData::m_fontWeight, &CFontData::m_fontStrikeout, &CFontData::m_fontUnderline,
    &CFontData::m_fontBold,   &CFontData::m_fontItalic,    &CFontData::m_fontCharset,
};

CFontStringParser::CFontData::CFontData(int style, bool custom, const std::string& fontFace,
                                        const std::string& fontStyle, int fontWeight, int fontStrikeout,
                                        int fontUnderline, int fontBold, int fontItalic, int fontCharset)
    : m_style(style),
      m_custom(custom),
      m_fontFace(fontFace),
      m_fontStyle(fontStyle),
      m_fontWeight(fontWeight),
      m_fontStrikeout(fontStrikeout),
      m_fontUnderline(fontUnderline),
      m_fontBold(fontBold),
      m_fontItalic(fontItalic),
      m_fontCharset(fontCharset) {}

std::string CFontStringParser::toString(const CFontData& data) {
    std::string text = Text::Render(data.m_style);
    if (!data.m_custom) return text;
    AppendName(text, data.m_fontFace);
    AppendName(text, data.m_fontStyle);
    for (const auto number : s_numbers) {
        text += kSeparator;
        Text::AppendNumber(text, data.*number);
    }
    return text;
}

void CFontStringParser::fromString(const std::string& text, CFontData& data) {
    CFontData read = data;  // `text` may be one of the names in `data`
    std::string_view rest(text);
    const std::string_view style = rest.substr(0, rest.find(kSeparator));
    read.m_style = Text::ParseInt32(style).value;
    rest.remove_prefix(style.size());
    if (rest.empty()) read.m_custom = false;

    for (std::size_t field = 0; field < 2 + std::size(s_numbers); ++field) {
        const std::string_view token = TakeToken(rest);
        if (token.empty()) break;
        read.m_custom = true;
        switch (field) {
            case 0:
                read.m_fontFace = Name(token);
                break;
            case 1:
                read.m_fontStyle = Name(token);
                break;
            default:
                read.*s_numbers[field - 2] = Text::ParseInt32(token).value;
        }
    }
    data = std::move(read);
}

}  // namespace Quill::Fonts
