#include "small_design.h"

#include "sheets/sheet_name.h"

namespace Lessons {
namespace {

using Orin::Index;
using Orin::DesignDb::CompSpec;
using Orin::DesignDb::Editor;

Index AddSheet(Editor& editor, const Index& block, const char* name) {
    Index sheet;
    Check(editor.AddGroup(block, {name, Orin::EGroupType::Sheet}, sheet));
    Check(editor.SetAttribute(sheet, Quill::GetSheetIdAttrName().c_str(), name));  // stays when the sheet is renamed
    return sheet;
}

// What stands on a sheet is a component of the block and a member of the sheet, and is drawn there with a number that
// tells it from the sheet's other items. The names of pages are made of these numbers and of the sheets' ids.
Index Place(Editor& editor, const Index& block, const Index& sheet, Orin::ItemId number, const CompSpec& spec) {
    Index comp;
    Check(editor.AddComp(block, spec, comp));
    Check(editor.AddMember(sheet, comp));
    Orin::CompDataQuill drawn;
    drawn.objectId = number;
    Check(editor.SetCompData(sheet, comp, drawn));
    return comp;
}

}  // namespace

void Check(const Orin::Result& result) {
    if (!result) throw result;
}

SmallDesign::SmallDesign() {
    Check(Orin::DesignDb::Database::Create(database, "lamp"));
    connection = database.Connect("application");
    Check(connection->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));

    Editor editor;
    Check(Editor::Open(editor, snapshot));

    // The symbol of the connector stands in a library block: "LIB:offpage.1".
    Index library, offpage;
    Check(editor.AddBlock({"LIB", Orin::EBlockType::Symbol}, library));
    Check(editor.AddComp(library, {.label = "", .name = "offpage.1"}, offpage));
    const CompSpec connector{.label = "DIM", .partition = "LIB", .definition = offpage};

    const Orin::BlockTypes drawn = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
    Check(editor.AddBlock({"channel", drawn}, channel));
    const Index channelSheet = AddSheet(editor, channel, "1");
    Place(editor, channel, channelSheet, 1, connector);

    Check(editor.AddBlock({"lamp", drawn}, lamp));
    const Index sheet1 = AddSheet(editor, lamp, "1"), sheet2 = AddSheet(editor, lamp, "2");
    firstConnector = Place(editor, lamp, sheet1, 1, connector);
    Place(editor, lamp, sheet2, 1, connector);
    Place(editor, lamp, sheet1, 2, {.label = "CH1", .types = Orin::ECompType::Hierarchical, .childBlock = channel});
    Place(editor, lamp, sheet2, 2, {.label = "CH2", .types = Orin::ECompType::Hierarchical, .childBlock = channel});

    // The configuration says which block is the root of the hierarchy.
    Index configuration;
    Check(editor.AddConfig({"lamp", lamp}, configuration));
}

}  // namespace Lessons
