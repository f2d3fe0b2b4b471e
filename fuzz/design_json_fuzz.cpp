// Any text as a design in JSON: a fault, or a design that is written as a text which reads as the same.
#include "fuzz/fuzz.h"
#include "interchange/design_json.h"

namespace {

std::string Written(const Fuzz::Design& design, const Orin::String& name) {
    std::string text;
    Fuzz::Require(static_cast<bool>(Quill::Interchange::WriteDesignJson(design.snapshot, name, text)));
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Orin::String name;
    std::string text;
    {
        const Fuzz::Design design;
        const std::string empty = Written(design, name);
        const bool failed =
            Quill::Interchange::ReadDesignJson(Fuzz::Text(data, size), design.snapshot, name).has_value();
        text = Written(design, name);
        Fuzz::Require(!failed || text == empty);
        if (failed) return 0;
    }
    const Fuzz::Design again;
    Orin::String nameAgain;
    Fuzz::Require(!Quill::Interchange::ReadDesignJson(text, again.snapshot, nameAgain).has_value());
    Fuzz::Require(Written(again, nameAgain) == text);
    return 0;
}
