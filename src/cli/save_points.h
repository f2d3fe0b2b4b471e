// The save points of a design file.
#pragma once

#include <string>
#include <vector>

#include "cli/edit_design.h"
#include "cli/json.h"
#include "cli/open_design.h"

namespace Quill::Cli {

struct SavePoint {
    std::string name;
    std::string date;  // a stamp (labels/time_stamp.h); empty when none is kept
    std::string comment;

    // How the rollback menu of an application shows it.
    std::string MenuText() const;

    // "save point NAME, MENU TEXT".
    std::string Description() const;
};

// What is asked of one save point.
struct SavePointOptions {
    EditOptions edit;
    std::string name;
};

// Adds DESIGN, NAME, --dry-run and --json.
void AddSavePointOptions(const Syntax& command, SavePointOptions& options);

// Opens a design file, for reading or `toEdit`. Throws a CommandError when it cannot be opened, and for a design in
// another form, which has no save points.
OpenDesign OpenDesignFile(const std::string& path, bool toEdit);

// Oldest first.
std::vector<SavePoint> ListSavePoints(const OpenDesign& design);

// Throws a CommandError when there is none of that name.
SavePoint FindSavePoint(const OpenDesign& design, const std::string& name);

// Makes a save point of the design as it is, then gives it the date and the comment: two commits, since no transaction
// is open while a save point is made. A crash between them leaves it without the two. Throws a CommandError or the
// failed Orin::Result, and there is none then.
void MakeSavePoint(const OpenDesign& design, const SavePoint& point);

Json AsJson(const SavePoint& point);

}  // namespace Quill::Cli
