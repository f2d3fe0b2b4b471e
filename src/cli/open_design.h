// Brings the DESIGN of a command line into memory.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "designdb/database.h"
#include "interchange/kicad_import.h"
#include "interchange/project_data.h"
#include "orin/orin.h"

namespace Quill::Cli {

// A design in a database of its own, which goes with it. While it is open, the libraries know its project.
struct OpenDesign {
    std::string name;
    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    std::unique_ptr<Interchange::ProjectDataService> project;
    bool isStored = false;  // it is kept in a design file, which follows every commit
};

// Whether the path ends like that of a schematic file.
bool IsSchematicPath(std::string_view path);

// Reads the design at `path`: a design file (docs/design-file.md), JSON (docs/design-json.md), or the root schematic of
// a KiCad design. A design file is opened for reading, or `toEdit`. Throws a CommandError that names the file.
OpenDesign ReadDesign(const std::string& path, bool toEdit = false);

// A copy in a database of its own, in memory. Save points do not come along, and the libraries do not know its project.
OpenDesign CopyOf(const OpenDesign& design);

// Writes the design down at `path`: as a design file, which must not be there yet, when the path ends in ".qdb", else
// as JSON, in place of a file that is there. Throws a CommandError that names the file, with everything as it was.
void WriteDesign(const std::string& path, const OpenDesign& design);

// Imports the KiCad design with this root schematic. Warnings go to standard error, also when an error follows. Throws
// a CommandError that names the place.
OpenDesign ImportDesign(const std::string& root, const Interchange::KicadOptions& options);

// The configuration called `name`, or for an empty name the default one: that of the design's name, else the first.
// Throws a CommandError when there is none.
Orin::ContainerT<const Orin::IConfig> FindConfig(const OpenDesign& design, const std::string& name);

// The place at the top of the configuration. Throws a CommandError when it has no root block.
Orin::ContainerT<const Orin::IPath> RootOf(const Orin::IConfig& config);

}  // namespace Quill::Cli
