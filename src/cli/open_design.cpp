#include "cli/open_design.h"

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/progress.h"
#include "cli/stored_design.h"
#include "cli/whole_file.h"
#include "interchange/design_json.h"

namespace Quill::Cli {

namespace {

constexpr std::string_view SchematicSuffix = ".kicad_sch";

void Attach(OpenDesign& design) {
    design.client = design.database.Connect("quill");
    Need(design.client->GetSnapshotByName(design.snapshot, Orin::DesignDb::WorkingSnapshot));
}

// A design that is to be read from `path`.
OpenDesign EmptyDesign(const std::string& path) {
    OpenDesign design;
    if (const auto made = Orin::DesignDb::Database::Create(design.database, Orin::String(path.c_str())); !made)
        throw CommandError(path + ": " + static_cast<const char*>(made.GetDescription()));
    Attach(design);
    return design;
}

OpenDesign Opened(OpenDesign design, const Orin::String& name) {
    design.name = name.View();
    design.project = std::make_unique<Interchange::ProjectDataService>(design.snapshot);
    return design;
}

}  // namespace

bool IsSchematicPath(std::string_view path) {
    return path.size() > SchematicSuffix.size() && path.substr(path.size() - SchematicSuffix.size()) == SchematicSuffix;
}

OpenDesign ReadDesign(const std::string& path, bool toEdit) {
    if (IsSchematicPath(path)) return ImportDesign(path, {});
    const std::string reading = "Reading " + path;
    Orin::String name;
    {
        const Progress progress(reading);
        OpenDesign stored;
        if (OpenStoredDesign(path, toEdit, stored.database, name)) {
            stored.isStored = true;
            Attach(stored);
            return Opened(std::move(stored), name);
        }
    }
    OpenDesign design = EmptyDesign(path);
    const Progress progress(reading, design.snapshot);
    const std::string text = ReadWholeFile(path);
    if (const auto fault = Interchange::ReadDesignJson(text, design.snapshot, name))
        throw CommandError(path + ": " + fault->Message());
    return Opened(std::move(design), name);
}

OpenDesign CopyOf(const OpenDesign& design) {
    Orin::String name(std::string_view(design.name));
    std::string text;
    Need(Interchange::WriteDesignJson(design.snapshot, name, text));
    OpenDesign copy = EmptyDesign(std::string(design.database.ProjectName().View()) + " (copy)");
    if (const auto fault = Interchange::ReadDesignJson(text, copy.snapshot, name)) throw CommandError(fault->Message());
    copy.name = design.name;
    return copy;
}

void WriteDesign(const std::string& path, const OpenDesign& design) {
    if (IsSchematicPath(path)) throw CommandError(path + ": A schematic is not overwritten with a design file");
    const Progress progress("Writing " + path);
    if (IsStoredPath(path)) return WriteStoredDesign(path, design);
    std::string text;
    Need(Interchange::WriteDesignJson(design.snapshot, Orin::String(std::string_view(design.name)), text));
    ReplaceFile(path, text);
}

OpenDesign ImportDesign(const std::string& root, const Interchange::KicadOptions& options) {
    OpenDesign design = EmptyDesign(root);
    Orin::String name;
    std::vector<Interchange::KicadMessage> warnings;
    const auto fault = [&] {
        const Progress progress("Importing " + root, design.snapshot);
        return Interchange::ImportKicad(root, options, design.snapshot, name, warnings);
    }();
    for (const Interchange::KicadMessage& warning : warnings)
        Say("warning: " + warning.Message());
    if (fault) throw CommandError(fault->Message());
    return Opened(std::move(design), name);
}

Orin::ContainerT<const Orin::IConfig> FindConfig(const OpenDesign& design, const std::string& name) {
    Orin::ContainerT<const Orin::IConfig> config;
    const std::string& wanted = name.empty() ? design.name : name;
    if (design.snapshot->GetDefaultConfig(config, Orin::String(std::string_view(wanted)))) return config;
    if (!name.empty()) throw CommandError("The design has no configuration called " + name);
    Orin::IteratorT<const Orin::IConfig> configs;
    if (!design.snapshot->GetIterConfigs(configs) || !configs) throw CommandError("The design has no configuration");
    const Orin::ContainerT<const Orin::IConfig>& first = configs;
    return first;
}

Orin::ContainerT<const Orin::IPath> RootOf(const Orin::IConfig& config) {
    Orin::ContainerT<const Orin::IPath> root;
    if (!config.GetRoot(root)) throw CommandError("Configuration " + NameOf(config) + " has no root block");
    return root;
}

}  // namespace Quill::Cli
