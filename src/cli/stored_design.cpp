#include "cli/stored_design.h"

#include "cli/command.h"
#include "designstore/design_file.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

namespace {

void Need(const Orin::Result& result) {
    if (!result) throw CommandError(static_cast<const char*>(result.GetDescription()));
}

}  // namespace

bool IsStoredPath(std::string_view path) {
    return path.ends_with(".qdb");
}

bool ReadStoredDesign(const std::string& path, Orin::DesignDb::Database& database, Orin::String& name) {
    using namespace Orin::DesignDb;
    if (!LooksLikeDesignFile(path)) return false;
    Need(OpenDesignFile(database, Orin::String(std::string_view(path)), path, EFileAccess::Read, name));
    return true;
}

// By way of a copy: the database at hand may be that of another design file, and is bound to it then.
void WriteStoredDesign(const std::string& path, const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                       const Orin::String& name) {
    using namespace Orin::DesignDb;
    std::string text;
    Need(Interchange::WriteDesignJson(snapshot, name, text));
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
