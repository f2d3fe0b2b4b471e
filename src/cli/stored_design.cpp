#include "cli/stored_design.h"

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/interruption.h"
#include "designstore/design_file.h"

namespace Quill::Cli {

bool IsStoredPath(std::string_view path) {
    return path.ends_with(".qdb");
}

bool OpenStoredDesign(const std::string& path, bool toWrite, Orin::DesignDb::Database& database, Orin::String& name) {
    using namespace Orin::DesignDb;
    if (!LooksLikeDesignFile(path)) return false;
    const EFileAccess access = toWrite ? EFileAccess::Write : EFileAccess::Read;
    Need(OpenDesignFile(database, Orin::String(std::string_view(path)), path, access, name));
    return true;
}

void WriteStoredDesign(const std::string& path, const OpenDesign& design) {
    using namespace Orin::DesignDb;
    const Orin::String name(std::string_view(design.name));
    const AtInterruption cleaning([](const char*) { RemoveUnfinishedDesignFiles(); }, "");
    // By way of a copy where it is stored, since a database keeps to its file.
    Need(CreateDesignFile(design.isStored ? CopyOf(design).database : design.database, path, name));
}

}  // namespace Quill::Cli
