#include "cli/page_list.h"

#include <algorithm>

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/progress.h"
#include "properties/property_mangler.h"

namespace Quill::Cli {

namespace {

using Orin::ContainerT;

// Reads what pages are called by.
class PageReader {
public:
    explicit PageReader(const Orin::ISnapshot& snapshot) : m_snapshot(snapshot) {
        Need(snapshot.GetUIDManager(m_objects));
    }

    PageEntry Read(const PageID& id) const {
        ContainerT<const Orin::IPath> path;
        ContainerT<const Orin::IBlock> block;
        ContainerT<const Orin::IGroup> sheet;
        Orin::ListT<Orin::Index> hierarchy;
        Need(m_objects.GetPath(path, id.path));
        Need(path->GetBlock(block));
        Need(block->GetGroup(sheet, id.group));
        Need(path->GetListHierarchyIndexes(hierarchy));
        PageEntry page{id, {}, NameOf(*block), NameOf(*sheet), LabelsOnTheWay(m_snapshot, hierarchy), {}, false};
        page.printOrder = PrintOrderOf(*path, *sheet);
        return page;
    }

private:
    // Stands on the first title component that bears one, as it is at the page's place (pages/page_traverser.h).
    static std::string PrintOrderOf(const Orin::IPath& path, const Orin::IGroup& sheet) {
        const Orin::String attribute =
            Utils::CPropertyMangler::Mangle("@PRINTORDER", DataModel::PropertyType::NotCommonProperty);
        Orin::ListT<Orin::Index> objects;
        Need(sheet.GetListObjects(objects));
        for (const Orin::Index& index : std::as_const(objects)) {
            ContainerT<const Orin::IComp> comp;
            Orin::CompTypes types;
            Orin::String value;
            if (index.GetType() == Orin::EObjectType::Comp && path.GetCompInPath(comp, index) && comp->GetType(types) &&
                types.Contains(Orin::ECompType::Border) && types.Contains(Orin::ECompType::Titled) &&
                comp->GetAttribute(attribute, value, Orin::EAttributeType::User))
                return std::string(value.View());
        }
        return {};
    }

    const Orin::ISnapshot& m_snapshot;
    Orin::IUIDManager m_objects;
};

PageTraverser Walked(const OpenDesign& design, const std::string& config, EAlgorithm order, ECompAlgorithm children) {
    PageTraverser pages(design.snapshot, config, EViewMode::Logical);
    pages.setAlgorithm(order, children);
    pages.update();
    return pages;
}

}  // namespace

std::string PageEntry::Description() const {
    return "page " + id.name + " (sheet " + sheet + " of " + block + " at " + WayText(way) + ')';
}

PageList ListPages(const OpenDesign& design, const std::string& config, EAlgorithm order, ECompAlgorithm children) {
    const ContainerT<const Orin::IConfig> configuration = FindConfig(design, config);
    RootOf(*configuration);
    const std::string name = NameOf(*configuration);
    const Progress progress("Numbering pages");
    const PageReader reader(*design.snapshot);
    const PageTraverser pages = Walked(design, name, order, children);
    // Print orders number excluded pages too; that they are excluded is known to a walk that numbers by places.
    const PageTraverser places = Walked(design, name, EAlgorithm::DepthFirst, children);

    PageList list;
    for (const PageID& id : pages.heldPages()) {
        PageEntry& page = list.pages.emplace_back(reader.Read(id));
        page.number = pages.pageNumber(id);
        page.excluded = places.pageNumber(id).empty();
    }
    if (order == EAlgorithm::PrintOrder)
        std::stable_sort(list.pages.begin(), list.pages.end(), [&pages](const PageEntry& a, const PageEntry& b) {
            return pages.pageOrder(a.id) < pages.pageOrder(b.id);  // those without a number have the largest one
        });
    if (children == ECompAlgorithm::Default) return list;
    for (const PageID& id : Walked(design, name, EAlgorithm::DepthFirst, ECompAlgorithm::Default).heldPages())
        if (!pages.containsPage(id)) list.dropped.push_back(reader.Read(id));
    return list;
}

const PageEntry& FindPage(const PageList& list, const std::string& numberOrName) {
    for (const PageEntry& page : list.pages)
        if (!page.number.empty() && page.number == numberOrName) return page;
    const PageEntry* found = nullptr;
    for (const PageEntry& page : list.pages) {
        if (page.id.name != numberOrName) continue;
        if (found != nullptr) throw CommandError("There are several pages called " + numberOrName);
        found = &page;
    }
    if (found == nullptr) throw CommandError("There is no page " + numberOrName);
    return *found;
}

}  // namespace Quill::Cli
