// DESIGNs that are kept in design files (docs/design-file.md).
#pragma once

#include <string>
#include <string_view>

#include "cli/open_design.h"

namespace Quill::Cli {

// Whether a file of that name is to be a design file.
bool IsStoredPath(std::string_view path);

// Opens the design file at `path`, for reading or to write, and gives the name of its design. False, with nothing done,
// when it is no SQLite database and so a design in another form. Throws a CommandError that names the file.
bool OpenStoredDesign(const std::string& path, bool toWrite, Orin::DesignDb::Database& database, Orin::String& name);

// Makes a design file of the design. Throws a CommandError that names the file, also when there is one.
void WriteStoredDesign(const std::string& path, const OpenDesign& design);

}  // namespace Quill::Cli
