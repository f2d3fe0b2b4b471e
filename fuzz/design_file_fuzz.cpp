// A design file that was changed at random, or that holds any bytes: it is refused, or a design through and through.
//
// An input that begins as such files do is one. Any other is what is changed of a file that holds a small design, in
// groups of four bytes: three for the place, one that is combined with what stands there.
#include <iterator>

#include "designdb/editor.h"
#include "designstore/design_file.h"
#include "fuzz/fuzz.h"
#include "interchange/design_json.h"

namespace {

const Fuzz::ScratchFolder& Folder() {
    static const Fuzz::ScratchFolder folder;
    return folder;
}

std::string MakeFile() {
    Fuzz::Design design;
    Orin::DesignDb::Editor editor;
    Orin::Index block, sheet, comp, net, pin, config, item;
    Fuzz::Require(Orin::DesignDb::Editor::Open(editor, design.snapshot) &&
                  editor.AddBlock({"top", Orin::EBlockType::Schematic}, block) &&
                  editor.AddConfig({"top", block}, config) && editor.AddGroup(block, {"1"}, sheet) &&
                  editor.AddComp(block, {.label = "U1", .partition = "LIB"}, comp) && editor.AddPin(comp, {"A"}, pin) &&
                  editor.AddNet(block, {"N"}, net) && editor.ConnectPin(net, pin) && editor.AddMember(sheet, comp) &&
                  editor.SetCompData(sheet, comp, {}) && editor.AddNetQuill(sheet, net, {}, item) &&
                  editor.AddText(sheet, {}, item) && editor.SetAttribute(comp, "REFDES", "U1"));
    const std::string path = Folder() / "base.qdb";
    Fuzz::Require(static_cast<bool>(Orin::DesignDb::CreateDesignFile(design.database, path, "fuzz")));
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string base = MakeFile();
    const std::string_view input = Fuzz::Text(data, size);
    std::string content = base;
    if (input.starts_with("SQLite format 3")) {
        content = input;
    } else {
        for (std::size_t at = 0; at + 4 <= size; at += 4) {
            const std::size_t place = (data[at] * 65536U + data[at + 1] * 256U + data[at + 2]) % content.size();
            content[place] = static_cast<char>(static_cast<unsigned char>(content[place]) ^ data[at + 3]);
        }
    }
    const std::string path = Folder().Write("changed.qdb", content);
    static_cast<void>(Orin::DesignDb::LooksLikeDesignFile(path));
    Orin::DesignDb::Database database;
    Orin::String name("untouched");
    const Orin::Result opened =
        Orin::DesignDb::OpenDesignFile(database, "file", path, Orin::DesignDb::EFileAccess::Read, name);
    if (!opened) {
        const int code = opened.GetErrorCode();
        Fuzz::Require(name.View() == "untouched" && (code == static_cast<int>(Orin::EErrorCode::StoreFailed) ||
                                                     code == static_cast<int>(Orin::EErrorCode::OutOfMemory)));
        return 0;
    }
    const Fuzz::Design design(database);
    std::string text;
    Fuzz::Require(static_cast<bool>(Quill::Interchange::WriteDesignJson(design.snapshot, name, text)));
    const Fuzz::Design again;
    Fuzz::Require(!Quill::Interchange::ReadDesignJson(text, again.snapshot, name).has_value());
    return 0;
}
