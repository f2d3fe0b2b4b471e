// All files of a design, and where each stands in its hierarchy.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interchange/detail/kicad/schematic.h"

namespace Quill::Interchange::Kicad {

using FileId = std::uint32_t;

struct SchematicFile {
    explicit SchematicFile(std::string file, std::string text) : source(std::move(file), std::move(text)) {}

    SourceText source;
    Schematic content;
    std::string name;  // path relative to the root, without the extension
    std::filesystem::path path;
    std::vector<std::optional<FileId>> children;  // by sheet symbol: its file, nothing when it is missing
};

// The files in the order in which the sheets name them, root first. No file stands below itself.
struct Hierarchy {
    std::string design;  // stem of the root file
    std::vector<std::unique_ptr<SchematicFile>> files;
};

// Reads the root and everything below it. Throws a KicadMessage.
Hierarchy LoadHierarchy(const std::filesystem::path& root, bool allowMissing, std::vector<KicadMessage>& warnings);

// A sheet symbol, by the file it is drawn in.
struct SheetStep {
    FileId file = 0;
    std::uint32_t sheet = 0;
    friend auto operator<=>(const SheetStep&, const SheetStep&) = default;
};

// One place where a file stands: the sheet symbols on the way down from the root.
struct FilePlace {
    FileId file = 0;
    std::vector<SheetStep> steps;
};

// The places that the instances of a design name. Only those that are named are made: there can be exponentially more.
class FilePlaces {
public:
    explicit FilePlaces(const Hierarchy& hierarchy);

    // The place that a path of sheet uuids leads to, with or without the root's own in front; null when it leads
    // nowhere, as those of other designs that use the same files do.
    const FilePlace* Find(std::string_view path);
    const FilePlace* Root() { return Intern({}); }
    // The place below `parent` that sheet symbol `sheet` stands for; null when its file is missing.
    const FilePlace* Below(const FilePlace& parent, std::uint32_t sheet);

private:
    const FilePlace* Intern(FilePlace place);

    const Hierarchy& m_hierarchy;
    std::vector<std::unordered_map<std::string_view, std::uint32_t>> m_sheets;  // by file: sheet symbols by uuid
    std::map<std::vector<SheetStep>, FilePlace> m_places;
    std::unordered_map<std::string_view, const FilePlace*> m_found;
};

// The instances that hold, one a place, in the order of the places' first ones: of several for one place the last that
// names the design, and else the last.
struct HeldInstance {
    const FilePlace* place = nullptr;
    const Instance* instance = nullptr;
};
std::vector<HeldInstance> HoldingInstances(const std::vector<Instance>& instances, std::string_view design, FileId file,
                                           FilePlaces& places);

// The page numbers of all places that have one, by file, each list in the order of the files.
using PageNumbers = std::vector<std::vector<std::pair<const FilePlace*, std::string_view>>>;
PageNumbers FindPageNumbers(const Hierarchy& hierarchy, FilePlaces& places);

}  // namespace Quill::Interchange::Kicad
