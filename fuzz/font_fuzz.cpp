// Any text as a font string: what is written of it reads as the same.
#include "config/font_string_parser.h"
#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Parser = Quill::Fonts::CFontStringParser;
    Parser::CFontData read, again;
    Parser::fromString(std::string(Fuzz::Text(data, size)), read);
    const std::string written = Parser::toString(read);
    Parser::fromString(written, again);
    Fuzz::Require(Parser::toString(again) == written && again.Style() == read.Style());
    return 0;
}
