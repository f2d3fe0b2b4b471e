#include "interchange/detail/kicad/label_writer.h"

#include <map>
#include <set>

#include "labels/bus_label_expander.h"
#include "labels/net_limiter.h"

namespace Quill::Interchange::Kicad {

namespace {

struct ProblemText {
    LabelProblem problem;
    std::string_view text;
};
constexpr ProblemText Problems[] = {
    {LabelProblem::NoMembers, "names no net"},
    {LabelProblem::Unwritable, "has a member that cannot be told from something else"},
    {LabelProblem::AliasInItself, "has an alias that contains itself"},
    {LabelProblem::TooLarge, "names too many nets"},
};

}  // namespace

LabelWriter::LabelWriter(const Hierarchy& hierarchy, BusAliases aliases, std::vector<KicadMessage>& warnings)
    : m_hierarchy(hierarchy), m_aliases(std::move(aliases)), m_warnings(warnings) {
    for (const auto& file : hierarchy.files)
        for (const BusAlias& alias : file->content.aliases)
            m_aliases.try_emplace(std::string(alias.name), alias.members.begin(), alias.members.end());
    for (const auto& file : hierarchy.files)
        AddBuses(*file, m_designBuses);
}

void LabelWriter::AddBuses(const SchematicFile& file, KnownBuses& buses) {
    const auto add = [&](std::string_view text) {
        if (ClassifyLabel(text) != LabelKind::Plain) buses.Add(text, m_aliases, m_budget);
    };
    for (const Label& label : file.content.labels)
        if (label.type != LabelType::Directive) add(label.text);
    for (const SheetSymbol& sheet : file.content.sheets)
        for (const SheetPin& pin : sheet.pins)
            add(pin.name);
}

void LabelWriter::StartBlock(const PlannedBlock& block) {
    m_blockBuses = {};
    m_hierarchical.clear();
    for (const PlannedPage& page : block.pages) {
        const SchematicFile& file = *m_hierarchy.files[page.file];
        AddBuses(file, m_blockBuses);
        for (const Label& label : file.content.labels)
            if (label.type == LabelType::Hierarchical) m_hierarchical.insert(label.text);
    }
}

WrittenLabel LabelWriter::Wide(std::string_view text, const SourceText& source, std::size_t start) {
    return Write(text, m_designBuses, source, start);
}

WrittenLabel LabelWriter::Local(std::string_view text, const SourceText& source, std::size_t start) {
    return Write(text, m_hierarchical.count(text) != 0 ? m_designBuses : m_blockBuses, source, start);
}

WrittenLabel LabelWriter::Write(std::string_view text, const KnownBuses& buses, const SourceText& source,
                                std::size_t start) {
    TranslatedLabel label = TranslateLabel(text, m_aliases, buses, m_budget);
    for (const ProblemText& known : Problems)
        if (known.problem == label.problem)
            m_warnings.push_back(source.At(
                start, "the label \"" + std::string(text) + "\" " + std::string(known.text) + "; it stays as it is"));
    return {std::move(label.text), label.kind != LabelKind::Plain};
}

void RefuseCollisions(const Hierarchy& hierarchy, const PlannedBlock& block, LabelWriter& labels) {
    if (block.pages.size() < 2) return;
    std::map<std::string, std::set<std::size_t>, std::less<>> pagesOf;
    for (std::size_t page = 0; page < block.pages.size(); ++page) {
        const SchematicFile& file = *hierarchy.files[block.pages[page].file];
        for (const Label& label : file.content.labels) {
            const bool local = label.type == LabelType::Local;
            if (!local && label.type != LabelType::Hierarchical) continue;
            const WrittenLabel written = local ? labels.Local(label.text, file.source, label.start)
                                               : labels.Wide(label.text, file.source, label.start);
            BusContents::BusLabelExpander members(written.text, BusContents::SquareLimiter);
            std::size_t left = written.bus ? MostLabelMembers : 1;
            for (auto member = members.Next(); member && left > 0; member = members.Next(), --left) {
                const auto known = pagesOf.find(*member);
                if (known != pagesOf.end()) {
                    known->second.insert(page);
                } else {
                    pagesOf.emplace(*member, std::set<std::size_t>{page});
                }
            }
        }
    }
    std::string list;
    for (const auto& [name, pages] : pagesOf) {
        if (pages.size() < 2) continue;
        list.append(list.empty() ? " " : "; ").append(name);
        const char* before = " (";
        for (const std::size_t page : pages) {
            list.append(before).append(hierarchy.files[block.pages[page].file]->name);
            before = ", ";
        }
        list.append(")");
    }
    if (!list.empty())
        throw hierarchy.files[block.pages.front().file]->source.Whole(
            "merging flat sheets would join labels of one name on different sheets:" + list);
}

}  // namespace Quill::Interchange::Kicad
