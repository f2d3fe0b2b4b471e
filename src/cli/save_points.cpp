#include "cli/save_points.h"

#include "attributes/common_rollback_ops.h"
#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "designdb/editor.h"
#include "properties/stored_attribute.h"

namespace Quill::Cli {

namespace {

using Utils::CommonRollbackOps;
using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;

// Beside the comment of attributes/common_rollback_ops.h, which has the key "SVPT_COMMENT".
constexpr char DateKey[] = "SVPT_DATE";

Snapshot SnapshotOf(const OpenDesign& design, const std::string& name) {
    Snapshot snapshot;
    Need(design.client->GetSnapshotByName(snapshot, name.c_str()));
    return snapshot;
}

// In one transaction.
void Describe(const Snapshot& snapshot, const SavePoint& point) {
    Need(snapshot->BeginTransaction(Orin::ETransactionType::Edit));
    Orin::MutableContainerT<Orin::ISnapshot> writable;
    Need(Orin::LockerT<Orin::ISnapshot>::Lock(snapshot, writable));
    Need(Utils::StoreInternal(writable, DateKey, point.date.c_str()));
    if (!point.comment.empty()) Need(CommonRollbackOps::SetComment(snapshot, point.comment));
    Need(snapshot->CommitTransaction());
}

}  // namespace

std::string SavePoint::MenuText() const {
    return CommonRollbackOps::FormatRollbackMenu(date, comment);
}

std::string SavePoint::Description() const {
    const std::string menu = MenuText();
    const bool isJoined = menu.empty() || menu.front() == ' ';  // a comment without a date brings its own blank
    return "save point " + name + (isJoined ? "" : ", ") + menu;
}

void AddSavePointOptions(const Syntax& command, SavePointOptions& options) {
    AddEditOptions(command, options.edit);
    command.Option("NAME", options.name, "name of the save point").Required();
}

OpenDesign OpenDesignFile(const std::string& path, bool toEdit) {
    constexpr const char* Refusal = ": Save points are kept in design files only; ";
    if (IsSchematicPath(path))
        throw CommandError(path + Refusal + "\"quill import " + path + " -o FILE.qdb\" makes one");
    OpenDesign design = ReadDesign(path, toEdit);
    if (!design.isStored) throw CommandError(path + Refusal + "\"quill export " + path + " -o FILE.qdb\" makes one");
    return design;
}

std::vector<SavePoint> ListSavePoints(const OpenDesign& design) {
    Orin::ListT<Orin::String> names;
    Need(design.database.ListSnapshots(names));
    std::vector<SavePoint> points;
    for (const Orin::String& name : std::as_const(names)) {
        if (name == Orin::DesignDb::WorkingSnapshot) continue;
        SavePoint& point = points.emplace_back(SavePoint{std::string(name.View()), {}, {}});
        const Snapshot snapshot = SnapshotOf(design, point.name);
        Orin::String date;
        if (Utils::ReadInternal(*snapshot, DateKey, Utils::BareKey::Ignored, date)) point.date = date.View();
        static_cast<void>(CommonRollbackOps::GetComment(snapshot, point.comment));  // it may have none
    }
    return points;
}

SavePoint FindSavePoint(const OpenDesign& design, const std::string& name) {
    for (const SavePoint& point : ListSavePoints(design))
        if (point.name == name) return point;
    throw CommandError("The design has no save point called " + name);
}

void MakeSavePoint(const OpenDesign& design, const SavePoint& point) {
    Orin::DesignDb::Editor editor;
    Need(Orin::DesignDb::Editor::Open(editor, design.snapshot));
    Need(editor.MakeSavePoint(point.name.c_str()));
    try {
        Describe(SnapshotOf(design, point.name), point);
    } catch (...) {
        static_cast<void>(design.database.RemoveSnapshot(point.name.c_str()));  // the first failure is the one to tell
        throw;
    }
}

Json AsJson(const SavePoint& point) {
    return {{"name", point.name}, {"date", point.date}, {"comment", point.comment}, {"menu", point.MenuText()}};
}

}  // namespace Quill::Cli
