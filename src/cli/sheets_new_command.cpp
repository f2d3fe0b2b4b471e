// quill sheets new: one more sheet for a block.
#include <optional>

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/sheet_order.h"
#include "designdb/editor.h"
#include "sheets/sheet_name.h"

namespace Quill::Cli {

namespace {

struct SheetsNewOptions {
    SheetEditOptions edit;
    std::optional<std::string> base;
};

Changes AddSheet(const OpenDesign& design, const SheetsNewOptions& options) {
    SheetRange range = SheetsOf(design, options.edit.block);
    std::string name;
    if (options.base) {
        range.CreateNewName(*options.base, name);
    } else {
        range.CreateNewName(name);
    }
    const int id = range.CreateNewId(name);
    const Orin::ContainerT<const Orin::IBlock> block = FindBlock(*design.snapshot, options.edit.block);
    Orin::DesignDb::Editor editor;
    Need(Orin::DesignDb::Editor::Open(editor, design.snapshot));
    Orin::Index index;
    Need(editor.AddGroup(IndexOf(*block), {Orin::String(std::string_view(name))}, index));
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::MutableContainerT<Orin::IGroup> writable;
    Need(block->GetGroup(sheet, index));
    Need(Orin::LockerT<Orin::IGroup>::ShallowLock(sheet, writable));
    if (!WriteSheetId(writable, id)) throw CommandError("The sheet cannot be given its id");
    return {{"Block " + options.edit.block + " has a new sheet " + name}, {{"sheet", name}, {"id", id}}};
}

ExitCode RunSheetsNew(const SheetsNewOptions& options) {
    return EditDesign(options.edit.edit, [&options](const OpenDesign& design) { return AddSheet(design, options); });
}

}  // namespace

void AddSheetsNewCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetsNewOptions>();
    const Syntax command =
        line.Add("sheets new", "Give a block one more sheet, behind the others",
                 "It is called by a fresh number, or by the name given, with _1, _2, ... where that is\n"
                 "taken.\n"
                 "\n"
                 "Examples:\n"
                 "  quill sheets new board.json controller --name TEST",
                 [options] { return RunSheetsNew(*options); });
    AddSheetEditOptions(command, options->edit);
    command.Option("--name", options->base, "name of the sheet");
}

}  // namespace Quill::Cli
