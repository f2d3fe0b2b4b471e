#include "cli/stored_design.h"

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "designstore/design_file.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

using Orin::DesignDb::Database;

bool IsStoredPath(std::string_view path) {
    return path.ends_with(".qdb");
}

bool OpenStoredDesign(const std::string& path, bool toWrite, Database& database, Orin::String& name) {
    using namespace Orin::DesignDb;
    if (!LooksLikeDesignFile(path)) return false;
    const EFileAccess access = toWrite ? EFileAccess::Write : EFileAccess::Read;
    Need(OpenDesignFile(database, Orin::String(std::string_view(path)), path, access, name));
    return true;
}

void WriteStoredDesign(const std::string& path, const OpenDesign& design) {
    using namespace Orin::DesignDb;
    const Orin::String name(std::string_view(design.name));
    if (!design.isStored) {
        Need(CreateDesignFile(design.database, path, name));
        return;
    }
    // By way of a copy, since a database keeps to its file.
    std::string text;
    Need(Interchange::WriteDesignJson(design.snapshot, name, text));
    Database database;
    Need(Database::Create(database, Orin::String(std::string_view(path + " (new)"))));
    const std::unique_ptr<Orin::OrinPI> client = database.Connect("quill");
    Orin::ContainerT<const Orin::ISnapshot> copy;
    Orin::String read;
    Need(client->GetSnapshotByName(copy, WorkingSnapshot));
    if (const auto fault = Interchange::ReadDesignJson(text, copy, read)) throw CommandError(fault->Message());
    Need(CreateDesignFile(database, path, name));
}

}  // namespace Quill::Cli
