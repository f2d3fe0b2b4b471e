#include "interchange/detail/kicad/hierarchy.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>

namespace Quill::Interchange::Kicad {

namespace {

namespace fs = std::filesystem;

// Sheets that stand in sheets multiply; walking more places than this takes longer than anybody waits.
constexpr std::uint64_t MostPlaces = 1'000'000;

class Loader {
public:
    Loader(const fs::path& root, bool allowMissing, std::vector<KicadMessage>& warnings)
        : m_root(root), m_folder(root.parent_path()), m_allowMissing(allowMissing), m_warnings(warnings) {}

    Hierarchy Load() {
        m_hierarchy.design = m_root.stem().generic_string();
        Open(m_root, ReadWholeFile(m_root, m_root.generic_string()));
        for (FileId file = 0; file < m_hierarchy.files.size(); ++file)
            LoadChildren(file);
        CountPlaces(RefuseCycles());
        return std::move(m_hierarchy);
    }

private:
    FileId Open(const fs::path& path, std::string text) {
        const auto id = static_cast<FileId>(m_hierarchy.files.size());
        auto file = std::make_unique<SchematicFile>(path.generic_string(), std::move(text));
        file->path = path;
        file->name = NameOf(path);
        file->content = ReadSchematic(file->source, m_warnings);
        m_hierarchy.files.push_back(std::move(file));
        m_ids.emplace(Identity(path), id);
        return id;
    }

    // What two ways to one file have in common.
    static std::string Identity(const fs::path& path) {
        std::error_code failed;
        const fs::path real = fs::weakly_canonical(path, failed);
        return failed ? path.lexically_normal().generic_string() : real.generic_string();
    }

    std::string NameOf(const fs::path& path) {
        fs::path relative = path.lexically_normal().lexically_relative(m_folder.lexically_normal());
        if (relative.empty() || m_folder.empty()) relative = path.lexically_normal();
        std::string name = fs::path(relative).replace_extension().generic_string();
        if (!m_names.insert(name).second) m_names.insert(name = relative.generic_string());
        return name;
    }

    // Sheets name their files relative to the folder of their own file.
    fs::path PathOf(const SchematicFile& parent, std::string_view name) const {
        constexpr std::string_view ProjectFolder = "${KIPRJMOD}";
        std::string text(name);
        std::replace(text.begin(), text.end(), '\\', '/');
        if (text.starts_with(ProjectFolder))
            return (m_folder / fs::path("." + text.substr(ProjectFolder.size()))).lexically_normal();
        return (parent.path.parent_path() / fs::path(text)).lexically_normal();
    }

    void LoadChildren(FileId id) {
        // Files that are opened meanwhile move the list, not the file.
        SchematicFile& parent = *m_hierarchy.files[id];
        for (const SheetSymbol& sheet : parent.content.sheets) {
            const fs::path path = PathOf(parent, sheet.file);
            if (const auto known = m_ids.find(Identity(path)); known != m_ids.end()) {
                parent.children.emplace_back(known->second);
                continue;
            }
            std::optional<std::string> text = ReadChild(parent, sheet, path);
            parent.children.push_back(text ? std::optional(Open(path, std::move(*text))) : std::nullopt);
        }
    }

    std::optional<std::string> ReadChild(const SchematicFile& parent, const SheetSymbol& sheet, const fs::path& path) {
        std::string reason = "no file is named";
        try {
            if (!sheet.file.empty()) return ReadWholeFile(path, path.generic_string());
        } catch (const KicadMessage& unreadable) {
            reason = unreadable.Message();
        }
        KicadMessage message =
            parent.source.At(sheet.fileStart, "sheet \"" + std::string(sheet.name) + "\": " + reason);
        if (!m_allowMissing) throw message;
        m_warnings.push_back(std::move(message));
        return std::nullopt;
    }

    // Walks down from the root with a stack of its own; a file that is met while it is on the stack is below itself.
    // Gives the files, each behind all that stand below it.
    std::vector<FileId> RefuseCycles() const {
        std::vector<FileId> order;
        enum class State : std::uint8_t { New, Open, Done };
        std::vector<State> states(m_hierarchy.files.size(), State::New);
        struct Level {
            FileId file;
            std::size_t next;
        };
        std::vector<Level> stack{{0, 0}};
        states[0] = State::Open;
        while (!stack.empty()) {
            const FileId file = stack.back().file;
            const SchematicFile& here = *m_hierarchy.files[file];
            const std::size_t next = stack.back().next++;
            if (next == here.children.size()) {
                states[file] = State::Done;
                order.push_back(file);
                stack.pop_back();
                continue;
            }
            const std::optional<FileId> child = here.children[next];
            if (!child || states[*child] == State::Done) continue;
            if (states[*child] == State::Open) {
                std::string reason = "the hierarchy contains itself: ";
                const auto first =
                    std::find_if(stack.begin(), stack.end(), [&](const Level& level) { return level.file == *child; });
                for (auto level = first; level != stack.end(); ++level)
                    reason += m_hierarchy.files[level->file]->name + " > ";
                throw here.source.At(here.content.sheets[next].fileStart, reason + m_hierarchy.files[*child]->name);
            }
            states[*child] = State::Open;
            stack.push_back({*child, 0});
        }
        return order;
    }

    void CountPlaces(const std::vector<FileId>& order) const {
        std::vector<std::uint64_t> places(m_hierarchy.files.size());
        places[0] = 1;
        std::uint64_t all = 0;
        for (auto file = order.rbegin(); file != order.rend(); ++file) {
            all += places[*file];
            if (all > MostPlaces)
                throw m_hierarchy.files[0]->source.Whole("the hierarchy has more than a million places");
            for (const std::optional<FileId>& child : m_hierarchy.files[*file]->children)
                if (child) places[*child] = std::min(places[*child] + places[*file], MostPlaces + 1);
        }
    }

    const fs::path m_root;
    const fs::path m_folder;
    const bool m_allowMissing;
    std::vector<KicadMessage>& m_warnings;
    Hierarchy m_hierarchy;
    std::unordered_map<std::string, FileId> m_ids;
    std::unordered_set<std::string> m_names;
};

}  // namespace

Hierarchy LoadHierarchy(const fs::path& root, bool allowMissing, std::vector<KicadMessage>& warnings) {
    return Loader(root, allowMissing, warnings).Load();
}

FilePlaces::FilePlaces(const Hierarchy& hierarchy) : m_hierarchy(hierarchy) {
    for (const auto& file : hierarchy.files) {
        auto& sheets = m_sheets.emplace_back();
        for (std::uint32_t i = 0; i < file->content.sheets.size(); ++i)
            sheets.emplace(file->content.sheets[i].uuid, i);
    }
}

const FilePlace* FilePlaces::Intern(FilePlace place) {
    return &m_places.try_emplace(place.steps, place).first->second;
}

const FilePlace* FilePlaces::Find(std::string_view path) {
    const auto [known, isNew] = m_found.try_emplace(path, nullptr);
    if (!isNew) return known->second;
    FilePlace place;
    bool first = true;
    for (std::string_view rest = path; !rest.empty(); first = false) {
        if (rest.front() == '/') rest.remove_prefix(1);
        const std::string_view uuid = rest.substr(0, rest.find('/'));
        rest.remove_prefix(uuid.size());
        if (uuid.empty() || (first && uuid == m_hierarchy.files[0]->content.uuid)) continue;
        const auto sheet = m_sheets[place.file].find(uuid);
        if (sheet == m_sheets[place.file].end()) return nullptr;
        const std::optional<FileId> child = m_hierarchy.files[place.file]->children[sheet->second];
        if (!child) return nullptr;
        place.steps.push_back({place.file, sheet->second});
        place.file = *child;
    }
    return known->second = Intern(std::move(place));
}

const FilePlace* FilePlaces::Below(const FilePlace& parent, std::uint32_t sheet) {
    const std::optional<FileId> child = m_hierarchy.files[parent.file]->children[sheet];
    if (!child) return nullptr;
    FilePlace place{*child, parent.steps};
    place.steps.push_back({parent.file, sheet});
    return Intern(std::move(place));
}

std::vector<HeldInstance> HoldingInstances(const std::vector<Instance>& instances, std::string_view design, FileId file,
                                           FilePlaces& places) {
    std::vector<HeldInstance> held;
    std::unordered_map<const FilePlace*, std::size_t> positions;
    for (const Instance& instance : instances) {
        const FilePlace* const place = places.Find(instance.path);
        if (place == nullptr || place->file != file) continue;
        const auto [position, isNew] = positions.try_emplace(place, held.size());
        if (isNew) {
            held.push_back({place, &instance});
        } else if (instance.project == design || held[position->second].instance->project != design) {
            held[position->second].instance = &instance;
        }
    }
    return held;
}

PageNumbers FindPageNumbers(const Hierarchy& hierarchy, FilePlaces& places) {
    PageNumbers numbers(hierarchy.files.size());
    std::unordered_set<const FilePlace*> numbered;
    const auto enter = [&](const FilePlace* place, std::string_view page) {
        if (place != nullptr && !page.empty() && numbered.insert(place).second)
            numbers[place->file].emplace_back(place, page);
    };
    for (FileId file = 0; file < hierarchy.files.size(); ++file) {
        const std::vector<SheetSymbol>& sheets = hierarchy.files[file]->content.sheets;
        for (std::uint32_t sheet = 0; sheet < sheets.size(); ++sheet)
            for (const HeldInstance& held : HoldingInstances(sheets[sheet].instances, hierarchy.design, file, places))
                enter(places.Below(*held.place, sheet), held.instance->text);
    }
    // The root file has its own number, and those of all sheets when the sheets have none themselves.
    for (const Instance& instance : hierarchy.files[0]->content.sheetInstances)
        enter(places.Find(instance.path), instance.text);
    return numbers;
}

}  // namespace Quill::Interchange::Kicad
