// The labels of a design in the grammar of this library.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "interchange/detail/kicad/block_plan.h"
#include "interchange/detail/kicad/hierarchy.h"
#include "interchange/detail/kicad/label_text.h"

namespace Quill::Interchange::Kicad {

struct WrittenLabel {
    std::string text;
    bool bus = false;
};

// Knows the bus aliases and buses of a whole design. One block is written at a time.
class LabelWriter {
public:
    // `aliases` are those of the project; the files' own are added, of equal names the first one holds.
    LabelWriter(const Hierarchy& hierarchy, BusAliases aliases, std::vector<KicadMessage>& warnings);

    void StartBlock(const PlannedBlock& block);

    // A global or hierarchical label, a pin of a sheet symbol, the name of a power net: read by the buses of the whole
    // design. `start` is its place in `source`, for warnings.
    WrittenLabel Wide(std::string_view text, const SourceText& source, std::size_t start);
    // A local label: read by the buses of its block, unless a hierarchical label there has the same text, since the two
    // are one net.
    WrittenLabel Local(std::string_view text, const SourceText& source, std::size_t start);

    std::map<std::string, std::string> BusContents() { return TranslateAliases(m_aliases, m_designBuses, m_budget); }

private:
    void AddBuses(const SchematicFile& file, KnownBuses& buses);
    WrittenLabel Write(std::string_view text, const KnownBuses& buses, const SourceText& source, std::size_t start);

    const Hierarchy& m_hierarchy;
    BusAliases m_aliases;
    std::vector<KicadMessage>& m_warnings;
    LabelBudget m_budget;
    KnownBuses m_designBuses;
    KnownBuses m_blockBuses;
    std::unordered_set<std::string_view> m_hierarchical;  // texts of the block's hierarchical labels
};

// Throws a KicadMessage that lists them when labels that belong to one page would name nets of several pages of a
// block, which the writer has started: local and hierarchical labels, and the members of those that are buses.
void RefuseCollisions(const Hierarchy& hierarchy, const PlannedBlock& block, LabelWriter& labels);

}  // namespace Quill::Interchange::Kicad
