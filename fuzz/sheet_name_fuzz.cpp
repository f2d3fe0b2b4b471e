// Any text as a sheet's name.
#include "fuzz/fuzz.h"
#include "sheets/sheet_name.h"
#include "text/ascii.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> lines = Fuzz::Lines(Fuzz::Text(data, size), 2);
    const Quill::SheetName name(lines[0].c_str());
    const Quill::SheetName other(lines[1].c_str());
    Fuzz::Require(std::string_view(name) == lines[0].c_str());
    Fuzz::Require((name == other) == Quill::Text::EqualNoCase(lines[0].c_str(), lines[1].c_str()));
    Fuzz::Require((name == other) == (other == name) && (name != other) == !(name == other));

    const int number = name.__Number();
    Quill::SheetName counted(name);
    Fuzz::Require(counted.__Number() == number && counted == Quill::SheetName(number));
    Fuzz::Require(Quill::SheetName(static_cast<const char*>(counted)).__Number() == number);
    return 0;
}
