// Stands in for stored_design.cpp where the SQLite store is left out.
#include "cli/command.h"
#include "cli/stored_design.h"

namespace Quill::Cli {

bool IsStoredPath(std::string_view path) {
    return path.ends_with(".qdb");
}

bool OpenStoredDesign(const std::string&, bool, Orin::DesignDb::Database&, Orin::String&) {
    return false;
}

void WriteStoredDesign(const std::string& path, const OpenDesign&) {
    throw CommandError(path + ": this program was built without design files");
}

}  // namespace Quill::Cli
