// The short text in which the font of a text item is stored.
#pragma once

#include <string>

#include "quillutils_export.h"

namespace Quill::Fonts {

// Converts between a font string and its record. The string is the number of a font style alone ("12"), or, for a
// custom font, the number and eight fields separated by "|": face, style name, weight, strike-out, underline, bold,
// italic, character set ("3|Arial|0|700|0|0|1|0|0"). An empty face or style name is written as "0", because runs of
// "|" count as one separator when the string is read. Hence a name that is itself "0" reads back as empty, and a name
// that holds a "|" does not read back. Static operations only; callable from any thread.
class QUILLUTILS_EXPORT CFontStringParser {
public:
    class QUILLUTILS_EXPORT CFontData {
    public:
        CFontData() = default;
        CFontData(int style, bool custom, const std::string& fontFace, const std::string& fontStyle, int fontWeight,
                  int fontStrikeout, int fontUnderline, int fontBold, int fontItalic, int fontCharset);

        // The number of a style in the application's table.
        int Style() const noexcept { return m_style; }
        void Style(int value) noexcept { m_style = value; }

        // Whether the fields below are in force.
        bool Custom() const noexcept { return m_custom; }
        void Custom(bool value) noexcept { m_custom = value; }

        const std::string& FontFace() const noexcept { return m_fontFace; }
        void FontFace(const std::string& value) { m_fontFace = value; }
        const std::string& FontStyle() const noexcept { return m_fontStyle; }
        void FontStyle(const std::string& value) { m_fontStyle = value; }
        int FontWeight() const noexcept { return m_fontWeight; }
        void FontWeight(int value) noexcept { m_fontWeight = value; }
        int FontStrikeout() const noexcept { return m_fontStrikeout; }
        void FontStrikeout(int value) noexcept { m_fontStrikeout = value; }
        int FontUnderline() const noexcept { return m_fontUnderline; }
        void FontUnderline(int value) noexcept { m_fontUnderline = value; }
        int FontBold() const noexcept { return m_fontBold; }
        void FontBold(int value) noexcept { m_fontBold = value; }
        int FontItalic() const noexcept { return m_fontItalic; }
        void FontItalic(int value) noexcept { m_fontItalic = value; }
        int FontCharset() const noexcept { return m_fontCharset; }
        void FontCharset(int value) noexcept { m_fontCharset = value; }

    private:
        friend class CFontStringParser;

        int m_style = 0;
        bool m_custom = false;
        std::string m_fontFace;
        std::string m_fontStyle;
        int m_fontWeight = 0;
        int m_fontStrikeout = 0;
        int m_fontUnderline = 0;
        int m_fontBold = 0;
        int m_fontItalic = 0;
        int m_fontCharset = 0;
    };

    static std::string toString(const CFontData& data);

    // Fills `data` from a font string and reports nothing. Without a "|" only Style and Custom (false) are set. With
    // one, Style, Custom (true) and as many fields as the string has are set, further ones are ignored; a string that
    // ends after its "|" leaves Custom as it is. Fields that the string does not reach keep their values. A number is
    // read up to the first character that does not belong to it; text without a number is 0, a number beyond 32 bits
    // the nearest that fits.
    static void fromString(const std::string& text, CFontData& data);

    CFontStringParser() = delete;

private:
    static int CFontData::*const s_numbers[];  // the integer fields after the names, in the order of the string
};

}  // namespace Quill::Fonts
