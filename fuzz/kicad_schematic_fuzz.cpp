// Any text as a schematic: a fault, or a design that enters a database.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "designdb/database.h"
#include "interchange/detail/kicad/design_builder.h"
#include "interchange/detail/kicad/item_ids.h"

namespace {

using namespace Quill::Interchange;

DesignModel Build(std::string text) {
    std::vector<KicadMessage> warnings;
    Kicad::Hierarchy hierarchy;
    hierarchy.design = "fuzz";
    auto file = std::make_unique<Kicad::SchematicFile>("fuzz.kicad_sch", std::move(text));
    file->name = "fuzz";
    file->content = Kicad::ReadSchematic(file->source, warnings);
    file->children.resize(file->content.sheets.size());
    hierarchy.files.push_back(std::move(file));
    return Kicad::BuildDesign(hierarchy, {}, warnings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Orin::DesignDb::Database database;
    if (!Orin::DesignDb::Database::Create(database, "fuzz")) std::abort();
    const std::unique_ptr<Orin::OrinPI> client = database.Connect("fuzz");
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    if (!client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot)) std::abort();
    // Whatever model comes out must fit together: a fault of the database ends the run.
    try {
        DesignModel model = Build(std::string(reinterpret_cast<const char*>(data), size));
        static_cast<void>(ImportDesign(
            snapshot, [&model] { return std::move(model); },
            [&snapshot](DesignModel& design) { Kicad::NumberItems(design, snapshot); }));
    } catch (const KicadMessage&) {
    }
    return 0;
}
