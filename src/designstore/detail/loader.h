// Reads the rows of a design file into a project.
#pragma once

#include "designdb/detail/store.h"
#include "designstore/detail/sqlite.h"
#include "designstore/detail/writer.h"

namespace Orin::DesignDb {

// Checks all rows against each other, and throws a StoreFault that names the row at fault. Fills an empty
// project, and tells what a writer has to know. The caller keeps a transaction open, so that all rows are of one state.
void LoadProject(SqliteFile& file, const ProjectContent& content, FileState& state, String& design);

}  // namespace Orin::DesignDb
