// Reads the S-expressions of a schematic file as a stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "interchange/detail/kicad/source_text.h"
#include "orin/records.h"

namespace Quill::Interchange::Kicad {

// Stands inside one list at a time and steps through what it holds:
//
//     while (reader.NextList()) {                    // steps over words of the list itself
//         if (reader.Head() == "at") at = reader.ReadPoint();
//         reader.Leave();                            // whatever is left of the inner list, however deep
//     }                                              // here the list itself is left
//
// Nothing recurses and nothing is built: lists that nobody asks for are skipped by counting brackets. Every operation
// throws a KicadMessage that names the place when the text is not well-formed.
class TokenReader {
public:
    enum class Step { List, Word, End };

    // Reads `part` of the source, which must outlive the reader.
    TokenReader(SourceText& source, std::string_view part);
    explicit TokenReader(SourceText& source) : TokenReader(source, source.Text()) {}

    // Enters the only list of the text, whose head must be `head`.
    void EnterRoot(std::string_view head);
    // After the root list was left: fails when anything follows.
    void ExpectEnd();

    // The next thing of the list: an inner list, which is entered; a word, which Word() then gives; or its end, by
    // which the list is left.
    Step Next();
    bool NextList();
    // Goes to the end of the list and leaves it.
    void Leave();

    // The first word of the list that was entered last; empty when the list begins with another list.
    std::string_view Head() const noexcept { return m_head; }
    // Where that list begins, as an offset into the source.
    std::size_t ListStart() const noexcept { return m_listStart; }
    // The word that Next gave last, decoded, and where it stands.
    std::string_view Word() const noexcept { return m_word; }
    std::size_t WordStart() const noexcept { return m_wordStart; }
    // Where reading goes on.
    std::size_t Position() const noexcept { return m_at; }

    // The next word of the list; a fault when there is none. A number must be a whole number, or a length in
    // millimetres, which comes in nanometres.
    std::string_view ReadWord();
    std::int32_t ReadInteger();
    std::int64_t ReadLength();
    double ReadDouble();
    Orin::Point ReadPoint();
    // Reads the next word when a word comes next, neither a list nor the end.
    bool TryReadWord();
    // Whether nothing is left in the list.
    bool AtListEnd();

    [[noreturn]] void Fail(std::size_t offset, std::string reason) const;

    SourceText& Source() const noexcept { return m_source; }

private:
    void SkipBlanks();
    bool IsFirstOfLine(std::size_t at) const noexcept;
    std::size_t LineEnd(std::size_t at) const noexcept;
    void ReadToken();  // a word
    void ReadQuoted();
    std::string_view Decode(std::string_view raw, std::size_t offset);
    std::size_t QuotedEnd(std::size_t start) const;  // the closing quote
    std::size_t BarEnd(std::size_t start) const;
    bool EndsWord(std::size_t at) const noexcept;

    SourceText& m_source;
    std::string_view m_text;  // up to the end of the part
    std::size_t m_at = 0;
    std::size_t m_depth = 0;
    std::string_view m_head;
    std::size_t m_listStart = 0;
    std::string_view m_word;
    std::size_t m_wordStart = 0;
};

}  // namespace Quill::Interchange::Kicad
