#include "pages/page_traverser.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "designdata/object_index.h"
#include "designdata/result_rule.h"
#include "orin/design_objects.h"
#include "orin/uid_manager.h"
#include "pages/composite_order_supplier.h"
#include "pages/detail/child_order.h"
#include "pages/detail/page_tree.h"
#include "pages/detail/place_names.h"
#include "pages/page_number_supplier.h"
#include "pages/page_objects.h"
#include "properties/property_mangler.h"
#include "sheets/sheet_range.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill {

namespace {

using Block = Orin::ContainerT<const Orin::IBlock>;
using Comp = Orin::ContainerT<const Orin::IComp>;
using Path = Orin::ContainerT<const Orin::IPath>;
using Sheet = Orin::ContainerT<const Orin::IGroup>;
using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;
using detail::PageKey;
using detail::PageTree;
using Utils::IndexOf;
using Utils::Require;

constexpr const char* WorkingDesign = "QUILL";
constexpr const char* ExcludedAttribute = "ExcludeFromPrintout";
constexpr unsigned FirstNumber = 1;

// The sheets of a block in the order of its sheet range, or, when that cannot be loaded, in the order in which the
// block lists them. Throws the failed Orin::Result when they cannot be listed either.
std::vector<Sheet> ListSheets(const Block& block) {
    std::vector<Sheet> sheets;
    try {
        SheetRange range;
        if (range.Init(block)) {
            sheets.reserve(static_cast<std::size_t>(range.Count()));
            for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it)
                sheets.push_back(*it);
            return sheets;
        }
    } catch (const Orin::Result&) {
        sheets.clear();  // the order is lost; the sheets may still be listed
    }
    constexpr Orin::GroupTypes SheetTypes =
        Orin::GroupTypes(Orin::EGroupType::Sheet) | Orin::EGroupType::GeneratedSheet;
    Orin::ListT<Orin::GroupInfo> groups;
    Require(block->GetListOwnedGroups(groups, SheetTypes));
    for (const Orin::GroupInfo& group : groups) {
        Sheet sheet;
        if (block->GetGroup(sheet, group.index)) sheets.push_back(sheet);
    }
    return sheets;
}

bool IsExcludedBySheet(const Orin::IGroup& sheet) {
    Orin::String value;
    return sheet.GetAttribute(ExcludedAttribute, value) && Text::EqualNoCase(value.View(), "TRUE");
}

PageObjects ObjectsOf(const Snapshot& snapshot) {
    if (!snapshot) throw Orin::Result(Orin::EErrorCode::ObjectNotFound);
    Orin::IUIDManager resolver;
    Require(snapshot->GetUIDManager(resolver));
    return PageObjects(resolver);
}

Snapshot WorkingSnapshot(Orin::OrinPI& db) {
    Snapshot snapshot;
    Require(db.GetSnapshotByName(snapshot, WorkingDesign));
    return snapshot;
}

}  // namespace

class PageTraverser::Impl {
public:
    Impl(const Snapshot& snapshot, const std::string& configName, EViewMode mode);

    void SetAlgorithm(EAlgorithm algorithm, ECompAlgorithm childOrder);
    unsigned Update();

    // Null before SetAlgorithm.
    PageHolder* Holder() const noexcept { return m_holder.get(); }

    void Exclude(const PageID& page);
    void Include(const PageID& page);
    bool IsMarkedExcluded(const PageID& page) const { return m_excluded.count(detail::KeyOf(page)) != 0; }
    void Remove(const PageID& page);
    void Attach(const PageID& page);

    std::vector<Orin::Index> CompositeOrder(const Orin::Index& group) const;
    std::vector<unsigned> NumbersFrom(const PageKey& page) const;
    std::vector<unsigned> NumbersOf(const Orin::Index& block, const Orin::Index& path) const;

    const std::string configName;
    const EViewMode viewMode;

private:
    // A block occurrence that the walk is in.
    struct Visit {
        Block block;
        Path path;
        Orin::Index pathIndex;
        detail::PlaceNames::Place place;
        PageTree::OccurrenceNumber occurrence;
        bool excluded;  // by a page above

        std::vector<Sheet> sheets;
        std::size_t nextSheet = 0;

        // The page in work.
        PageTree::PageNumber page = PageTree::Root;  // none
        bool pageExcluded = false;
        std::vector<Orin::Index> childOrder = {};
        std::size_t nextChild = 0;
        bool hasChildren = false;
    };
    struct LevelPage {
        PageID page;
        bool excluded;
    };

    void Reset();
    unsigned Walk();
    void Enter(const Block& block, const Path& path, PageTree::PageNumber parent, bool excluded,
               detail::PlaceNames::Place above);
    void BeginPage(Visit& visit, const Sheet& sheet);
    void Descend(Visit& visit, const Orin::Index& index);
    void FinishPage(Visit& visit);
    std::string PrintOrderOf(const Path& path, const Sheet& sheet);
    void NumberLevels();
    void ForEachRecorded(const PageID& page, void (PageHolder::*change)(const PageID&));

    PageObjects m_objects;
    Path m_rootPath;
    Block m_rootBlock;

    EAlgorithm m_algorithm = EAlgorithm::DepthFirst;
    std::unique_ptr<PageHolder> m_holder;
    std::unique_ptr<PageNumberSupplier> m_numbers;
    StringBaseNumberSupplier* m_printOrders = nullptr;  // m_numbers, when pages are numbered by print order
    std::unique_ptr<CompositeOrderSupplier> m_childOrder;
    std::unique_ptr<CompositeOrderSupplier> m_defaultOrder;

    PageTree m_tree;
    std::unordered_set<PageKey, detail::PageKeyHash> m_excluded;                  // pages that are marked themselves
    std::unordered_map<Orin::Index, std::vector<Orin::Index>> m_compositeOrders;  // by sheet; empty ones are left out

    // The walk in progress. It keeps its own stack: designs may be deeper than the program's.
    std::vector<Visit> m_visits;
    detail::PlaceNames m_names;
    std::vector<std::vector<LevelPage>> m_levels;  // by depth; the holder gets them when the walk is done
};

PageTraverser::Impl::Impl(const Snapshot& snapshot, const std::string& config, EViewMode mode)
    : configName(config), viewMode(mode), m_objects(ObjectsOf(snapshot)) {
    Orin::ContainerT<const Orin::IConfig> configuration;
    Require(snapshot->GetDefaultConfig(configuration, configName.c_str()));
    Require(configuration->GetRoot(m_rootPath));
    Require(m_rootPath->GetBlock(m_rootBlock));
}

void PageTraverser::Impl::SetAlgorithm(EAlgorithm algorithm, ECompAlgorithm childOrder) {
    m_algorithm = algorithm;
    m_printOrders = nullptr;
    if (algorithm == EAlgorithm::DepthFirst || algorithm == EAlgorithm::LevelByLevel) {
        m_numbers = std::make_unique<OrdinalNumberSupplier>(FirstNumber);
        m_holder = std::make_unique<SequencedPageHolder>();
    } else {
        auto printOrders = std::make_unique<StringBaseNumberSupplier>();
        m_printOrders = printOrders.get();
        m_numbers = std::move(printOrders);
        m_holder = std::make_unique<RandomPageHolder>();
    }
    m_childOrder = detail::MakeChildOrder(childOrder, m_objects);
    m_defaultOrder = std::make_unique<DefaultOrderSupplier>(m_objects);
}

void PageTraverser::Impl::Reset() {
    m_holder->clear();
    m_numbers->reset();
    m_tree.Clear();
    m_excluded.clear();
    m_compositeOrders.clear();
    m_visits.clear();
    m_levels.clear();
}

unsigned PageTraverser::Impl::Update() {
    if (!m_holder) return 0;
    Reset();
    try {
        const unsigned rootSheets = Walk();
        NumberLevels();
        m_holder->renumber();
        return rootSheets;
    } catch (...) {
        Reset();
        throw;
    }
}

unsigned PageTraverser::Impl::Walk() {
    Enter(m_rootBlock, m_rootPath, PageTree::Root, false, {});
    const std::size_t rootSheets = m_visits.empty() ? 0 : m_visits.back().sheets.size();
    while (!m_visits.empty()) {
        Visit& visit = m_visits.back();
        if (visit.nextChild < visit.childOrder.size()) {
            const Orin::Index child = visit.childOrder[visit.nextChild++];
            Descend(visit, child);  // which may move the visits
            continue;
        }
        FinishPage(visit);
        if (visit.nextSheet < visit.sheets.size())
            BeginPage(visit, visit.sheets[visit.nextSheet++]);
        else
            m_visits.pop_back();
    }
    return static_cast<unsigned>(rootSheets);
}

void PageTraverser::Impl::Enter(const Block& block, const Path& path, PageTree::PageNumber parent, bool excluded,
                                detail::PlaceNames::Place above) {
    m_objects.Forget();
    const Orin::Index pathIndex = IndexOf(path);
    const auto [occurrence, isNew] = m_tree.EnterOccurrence(IndexOf(block), pathIndex);
    m_tree.PutBelow(parent, occurrence);
    // The holder takes no page twice, so a second visit would find nothing new; and where each level names its child
    // twice, visits would double from level to level.
    if (!isNew) return;
    std::vector<Sheet> sheets = ListSheets(block);
    if (sheets.empty()) return;
    // The root has no name, whatever the database makes of the place above it.
    const bool isRoot = m_visits.empty();
    const detail::PlaceNames::Place place = isRoot ? detail::PlaceNames::Place() : m_names.Below(above, *path);
    m_visits.push_back({block, path, pathIndex, place, occurrence, excluded, std::move(sheets)});
}

void PageTraverser::Impl::BeginPage(Visit& visit, const Sheet& sheet) {
    PageID page{visit.pathIndex, IndexOf(sheet), m_names.PageName(visit.place, *sheet)};
    const bool excludedBySheet = IsExcludedBySheet(*sheet);
    if (excludedBySheet) m_excluded.insert(detail::KeyOf(page));
    visit.pageExcluded = visit.excluded || excludedBySheet;
    visit.page = m_tree.EnterPage(visit.occurrence, detail::KeyOf(page));

    if (!m_childOrder->supplyOrder(visit.block, page, visit.childOrder))
        m_defaultOrder->supplyOrder(visit.block, page, visit.childOrder);
    if (visit.childOrder.empty())
        m_compositeOrders.erase(page.group);
    else
        m_compositeOrders[page.group] = visit.childOrder;

    switch (m_algorithm) {
        case EAlgorithm::PrintOrder:
            m_printOrders->base = PrintOrderOf(visit.path, sheet);
            [[fallthrough]];
        case EAlgorithm::DepthFirst:
            m_holder->addPage(page, m_numbers.get(), visit.pageExcluded);
            break;
        case EAlgorithm::LevelByLevel: {
            const std::size_t depth = m_visits.size() - 1;
            if (m_levels.size() <= depth) m_levels.resize(depth + 1);
            m_levels[depth].push_back({std::move(page), visit.pageExcluded});
            break;
        }
    }
}

void PageTraverser::Impl::Descend(Visit& visit, const Orin::Index& index) {
    Comp comp;
    Block child;
    Path path;
    if (!visit.block->GetComp(comp, index) || !comp->GetChildBlock(child) || !child.IsValid() ||
        !visit.path->GetChildPath(path, index))
        return;
    visit.hasChildren = true;
    Enter(child, path, visit.page, visit.pageExcluded, visit.place);
}

void PageTraverser::Impl::FinishPage(Visit& visit) {
    if (visit.page == PageTree::Root) return;
    if (!visit.hasChildren) m_tree.MarkAsLeaf(visit.page);
    visit.page = PageTree::Root;
    visit.childOrder.clear();
    visit.nextChild = 0;
    visit.hasChildren = false;
}

// The print order stands on the first title component of the page, as it is at the page's place, that bears one.
std::string PageTraverser::Impl::PrintOrderOf(const Path& path, const Sheet& sheet) {
    const Orin::String attribute =
        Utils::CPropertyMangler::Mangle("@PRINTORDER", DataModel::PropertyType::NotCommonProperty);
    for (const Orin::Index& index : m_objects.ObjectsOf(sheet)) {
        Comp comp;
        Orin::CompTypes types;
        Orin::String printOrder;
        if (index.GetType() == Orin::EObjectType::Comp && path->GetCompInPath(comp, index) && comp->GetType(types) &&
            types.Contains(Orin::ECompType::Border) && types.Contains(Orin::ECompType::Titled) &&
            comp->GetAttribute(attribute, printOrder, Orin::EAttributeType::User))
            return std::string(printOrder.View());
    }
    return {};
}

void PageTraverser::Impl::NumberLevels() {
    for (std::vector<LevelPage>& level : m_levels) {
        for (const LevelPage& found : level)
            m_holder->addPage(found.page, m_numbers.get(), found.excluded);
        level = {};  // the holder has them now, and long names take room
    }
}

void PageTraverser::Impl::Exclude(const PageID& page) {
    m_excluded.insert(detail::KeyOf(page));
    ForEachRecorded(page, &PageHolder::excludePage);
    m_holder->renumber();
}

void PageTraverser::Impl::Include(const PageID& page) {
    m_excluded.erase(detail::KeyOf(page));
    ForEachRecorded(page, &PageHolder::includePage);
    m_holder->renumber();
}

// A page whose child blocks are all without sheets stays as it is, be it named itself or below the one that is: what is
// printed of existing designs rests on it.
void PageTraverser::Impl::ForEachRecorded(const PageID& page, void (PageHolder::*change)(const PageID&)) {
    for (const PageTree::PageNumber number : m_tree.PagesFrom(detail::KeyOf(page)))
        if (m_tree.IsRecorded(number)) ((*m_holder).*change)(detail::WithoutName(m_tree.KeyOf(number)));
}

void PageTraverser::Impl::Remove(const PageID& page) {
    std::vector<PageKey> removed = {detail::KeyOf(page)};
    for (const PageTree::PageNumber below : m_tree.PagesFrom(detail::KeyOf(page)))
        removed.push_back(m_tree.KeyOf(below));
    for (const PageKey& key : removed) {
        m_holder->removePage(detail::WithoutName(key));
        m_tree.TakeOut(key);
        m_excluded.erase(key);
    }
}

void PageTraverser::Impl::Attach(const PageID& page) {
    Path path;
    Block block;
    if (!m_objects.Resolver().GetPath(path, page.path) || !path->GetBlock(block)) return;
    std::unordered_map<Orin::Index, std::size_t> places;
    try {
        for (const Sheet& sheet : ListSheets(block))
            places.emplace(IndexOf(sheet), places.size());
    } catch (const Orin::Result&) {
        return;
    }
    const auto own = places.find(page.group);
    if (own == places.end()) return;
    const auto [occurrence, isNew] = m_tree.EnterOccurrence(IndexOf(block), page.path);
    if (isNew && page.path == IndexOf(m_rootPath)) m_tree.PutBelow(PageTree::Root, occurrence);
    m_tree.PutIn(occurrence, detail::KeyOf(page), [&](const Orin::Index& group) {
        const auto place = places.find(group);
        return place != places.end() && place->second > own->second;
    });
}

std::vector<Orin::Index> PageTraverser::Impl::CompositeOrder(const Orin::Index& group) const {
    const auto found = m_compositeOrders.find(group);
    return found != m_compositeOrders.end() ? found->second : std::vector<Orin::Index>();
}

std::vector<unsigned> PageTraverser::Impl::NumbersFrom(const PageKey& page) const {
    std::vector<unsigned> numbers;
    if (!m_holder) return numbers;
    for (const PageTree::PageNumber below : m_tree.PagesFrom(page)) {
        const unsigned number = m_holder->pageOrder(detail::WithoutName(m_tree.KeyOf(below)));
        if (number != NoPageNumber) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<unsigned> PageTraverser::Impl::NumbersOf(const Orin::Index& block, const Orin::Index& path) const {
    std::vector<unsigned> numbers;
    for (const PageKey& page : m_tree.PagesOf(block, path)) {
        const std::vector<unsigned> below = NumbersFrom(page);
        numbers.insert(numbers.end(), below.begin(), below.end());
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

PageTraverser::PageTraverser(Orin::OrinPI& db, const std::string& configName, EViewMode mode)
    : PageTraverser(WorkingSnapshot(db), configName, mode) {}
PageTraverser::PageTraverser(const Snapshot& snapshot, const std::string& configName, EViewMode mode)
    : m_impl(std::make_unique<Impl>(snapshot, configName, mode)) {}
PageTraverser::PageTraverser(PageTraverser&&) noexcept = default;
PageTraverser& PageTraverser::operator=(PageTraverser&&) noexcept = default;
PageTraverser::~PageTraverser() = default;

void PageTraverser::setAlgorithm(EAlgorithm a, ECompAlgorithm c) {
    m_impl->SetAlgorithm(a, c);
}

unsigned PageTraverser::update() {
    return m_impl->Update();
}

bool PageTraverser::setCustomFile(const std::string&, std::string&) {
    return false;
}

const std::string& PageTraverser::configName() const noexcept {
    return m_impl->configName;
}

EViewMode PageTraverser::viewMode() const noexcept {
    return m_impl->viewMode;
}

PageID PageTraverser::firstPage() const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->firstPage() : PageID();
}

PageID PageTraverser::nextPage(const PageID& page) const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->nextPage(page) : PageID();
}

PageID PageTraverser::getPage(unsigned position) const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->getPage(position) : PageID();
}

PageID PageTraverser::getPageByName(const std::string& name) const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->getPageByName(name) : PageID();
}

unsigned PageTraverser::pagesCount() const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->pagesCount() : 0;
}

unsigned PageTraverser::pageOrder(const PageID& page) const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->pageOrder(page) : NoPageNumber;
}

bool PageTraverser::containsPage(const PageID& page) const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr && holder->containsPage(page);
}

std::vector<PageID> PageTraverser::heldPages() const {
    const PageHolder* const holder = m_impl->Holder();
    return holder != nullptr ? holder->heldPages() : std::vector<PageID>();
}

std::string PageTraverser::pageNumber(const PageID& page) const {
    const unsigned number = pageOrder(page);
    return number != NoPageNumber ? Text::Render(number) : std::string();
}

void PageTraverser::excludePage(const PageID& page) {
    if (m_impl->Holder() != nullptr) m_impl->Exclude(page);
}

void PageTraverser::includePage(const PageID& page) {
    if (m_impl->Holder() != nullptr) m_impl->Include(page);
}

bool PageTraverser::isMarkedExcluded(const PageID& page) const {
    return m_impl->IsMarkedExcluded(page);
}

void PageTraverser::removePage(const PageID& page) {
    if (m_impl->Holder() != nullptr) m_impl->Remove(page);
}

void PageTraverser::attachPage(const PageID& page) {
    if (m_impl->Holder() != nullptr) m_impl->Attach(page);
}

std::vector<Orin::Index> PageTraverser::compositeOrder(const Orin::Index& group) const {
    return m_impl->CompositeOrder(group);
}

std::vector<unsigned> PageTraverser::numbersForPage(const PageID& page) const {
    return m_impl->NumbersFrom(detail::KeyOf(page));
}

std::vector<unsigned> PageTraverser::numbersForBlock(const Orin::Index& block, const Orin::Index& path) const {
    return m_impl->NumbersOf(block, path);
}

std::vector<unsigned> PageTraverser::rangeForBlock(const Orin::Index& block, const Orin::Index& path) const {
    const std::vector<unsigned> numbers = m_impl->NumbersOf(block, path);
    return numbers.empty() ? numbers : std::vector<unsigned>{numbers.front(), numbers.back()};
}

std::vector<unsigned> PageTraverser::rangeForPage(const PageID&) const {
    return {};
}

}  // namespace Quill
