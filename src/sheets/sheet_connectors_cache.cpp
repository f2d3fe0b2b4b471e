#include "sheets/sheet_connectors_cache.h"

#include <atomic>
#include <deque>
#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "designdata/result_rule.h"
#include "labels/time_stamp.h"
#include "orin/design_objects.h"
#include "orin/observers.h"
#include "orin/orin_pi.h"
#include "orin/uid_manager.h"
#include "pages/page_traverser.h"
#include "platform/annotated_mutex.h"
#include "text/number.h"

namespace Quill {

namespace {

using Block = Orin::ContainerT<const Orin::IBlock>;
using Comp = Orin::ContainerT<const Orin::IComp>;
using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;
using Hierarchy = Orin::ListT<Orin::Index>;
using Utils::Require;

constexpr const char* ClientName = "SheetConnectorsCache";

void AppendIndex(std::string& text, const Orin::Index& index) {
    Text::AppendNumber(text, index.Low());
    text += ':';
    Text::AppendNumber(text, index.Middle());
    text += ':';
    Text::AppendNumber(text, index.Top());
}

std::string KeyOf(const Orin::Index& connector, const Hierarchy& hierarchy) {
    std::string key;
    for (const Orin::Index& index : hierarchy) {
        AppendIndex(key, index);
        key += '/';
    }
    key += '[';
    AppendIndex(key, connector);
    key += ']';
    return key;
}

std::string SymbolKey(std::string_view library, std::string_view symbol) {
    std::string key(library);
    key.append(1, ':').append(symbol);
    return key;
}

// The symbol key of a component; empty when its symbol is not known.
std::string SymbolKeyOf(const Orin::IComp& comp) {
    Orin::String partition;
    Orin::String name;
    Comp symbol;
    if (!comp.GetDefinition(symbol) || !symbol->GetName(name)) return {};
    static_cast<void>(comp.GetPartitionName(partition));  // a symbol may belong to none
    return SymbolKey(partition.View(), name.View());
}

bool IsSchematic(const Orin::IBlock& block) {
    Orin::BlockTypes types;
    return block.GetType(types) && types.Contains(Orin::EBlockType::Schematic);
}

// Whether the block is the root of the configuration of that name.
bool IsRootOf(const Block& block, const Orin::ISnapshot& snapshot, const Orin::String& name) {
    Orin::ContainerT<const Orin::IConfig> config;
    Orin::ContainerT<const Orin::IPath> path;
    Block root;
    Orin::Index index;
    Orin::Index rootIndex;
    return snapshot.GetDefaultConfig(config, name) && config->GetRoot(path) && path->GetBlock(root) &&
           block->GetIndex(index) && root->GetIndex(rootIndex) && index == rootIndex;
}

std::string_view FileName(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator != std::string_view::npos ? path.substr(separator + 1) : path;
}

}  // namespace

IPinTypeComponentsData::~IPinTypeComponentsData() = default;

class CSheetConnectorsCache::CImpl : public Orin::EventObserver {
public:
    // The connectors of one label in page order.
    struct Connectors {
        std::deque<CSheetConnectorData> list;
        std::unordered_map<std::string_view, std::size_t> places;  // by key: views of the keys in the list
    };
    using Labels = std::map<std::string, Connectors, std::less<>>;
    using Designs = std::map<std::string, Labels, std::less<>>;

    ~CImpl() override { Detach(); }

    void Attach(const Snapshot& snapshot);
    void Detach() noexcept;

    void SetSymbols(std::vector<std::string> keys);
    bool IsConnectorSymbol(const std::string& key) const;

    bool Reload();
    // For queries, which find nothing in a design that cannot be read.
    void ReloadIfStale() {
        if (!m_isStale) return;
        try {
            Reload();
        } catch (const Orin::Result&) {
            // It stays stale, for the next query to try.
        }
    }
    const Designs& GetDesigns() const noexcept { return m_designs; }
    // The connectors of a label, or null when the design or the label is not known.
    const Connectors* Find(const std::string& designPath, const std::string& label) const;

    void OnBeforeDelete(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsDelete kind,
                        bool undo) override;
    void OnAfterAdd(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsAdd kind, bool undo) override;
    void OnAfterDelete(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsDelete kind,
                       bool undo) override;
    void OnAfterChange(const Orin::Index& object, Orin::EEventsChange kind, bool undo) override;

private:
    // What one collection finds.
    struct Collection {
        std::unordered_set<std::string> symbols;
        Orin::IUIDManager objects;
        Designs designs;
        std::unordered_set<Orin::Index> connectors;
    };

    void Open(const Snapshot& snapshot);
    void CollectDesign(const Orin::String& name, Collection& collection) const;
    static void CollectPage(const PageID& page, Labels& labels, Collection& collection);
    bool IsConnector(const Orin::Index& object) const;

    Orin::OrinPI m_database;
    bool m_hasClient = false;
    Snapshot m_snapshot;          // empty when detached
    Orin::IUIDManager m_objects;  // for the events; set before the first one comes
    Designs m_designs;
    std::atomic<bool> m_isStale{true};

    // Events read the sets while the owner's thread may be writing them. The database is never called under the lock.
    mutable Platform::Mutex m_mutex;
    std::unordered_set<std::string> m_symbols QUILL_GUARDED_BY(m_mutex);
    std::unordered_set<Orin::Index> m_tracked QUILL_GUARDED_BY(m_mutex);  // those whose end makes the cache stale
};

void CSheetConnectorsCache::CImpl::Attach(const Snapshot& snapshot) {
    Detach();
    m_designs.clear();  // they belong to the snapshot before
    m_isStale = true;
    try {
        Open(snapshot);
    } catch (const Orin::Result&) {
        Detach();
    }
}

void CSheetConnectorsCache::CImpl::Open(const Snapshot& snapshot) {
    if (!snapshot) throw Orin::Result(Orin::EErrorCode::ObjectNotFound);
    Orin::SnapshotInfo info;
    Require(snapshot->GetInfo(info));
    std::string client = ClientName + Utils::time_stamp::current(Utils::time_stamp::raw) + ':';
    client += info.snapshotName.View();
    Require(m_database.AttachSubClient(info.projectName, client.c_str()));
    m_hasClient = true;
    Snapshot observed;
    Require(m_database.GetSnapshotByName(observed, info.snapshotName));
    Require(observed->GetUIDManager(m_objects));
    Require(observed->AddEventObserver(this));
    m_snapshot = observed;
}

void CSheetConnectorsCache::CImpl::Detach() noexcept {
    if (m_snapshot) static_cast<void>(m_snapshot->RemoveEventObserver(this));
    // Closing the client lets go of the observer where the removal failed. No event comes from here on.
    if (std::exchange(m_hasClient, false)) static_cast<void>(m_database.DetachSubClient());
    static_cast<void>(m_snapshot.Release());
    m_objects = {};
}

void CSheetConnectorsCache::CImpl::SetSymbols(std::vector<std::string> keys) {
    m_isStale = true;
    const Platform::MutexLock lock(m_mutex);
    m_symbols.clear();
    for (std::string& key : keys)
        m_symbols.insert(std::move(key));
}

bool CSheetConnectorsCache::CImpl::IsConnectorSymbol(const std::string& key) const {
    const Platform::MutexLock lock(m_mutex);
    return m_symbols.find(key) != m_symbols.end();
}

bool CSheetConnectorsCache::CImpl::Reload() {
    if (!m_snapshot) return false;
    Collection found;
    {
        const Platform::MutexLock lock(m_mutex);
        found.symbols = m_symbols;
    }
    m_designs.clear();
    // From here on, since what an event tells of later may have been read before.
    m_isStale = false;
    try {
        Require(m_snapshot->GetUIDManager(found.objects));
        Orin::IteratorT<const Orin::IBlock> block;
        Require(m_snapshot->GetIterBlocks(block));
        for (; block; ++block) {
            Orin::String name;
            if (IsSchematic(*block) && block->GetName(name) && IsRootOf(block, *m_snapshot, name))
                CollectDesign(name, found);
        }
    } catch (...) {
        m_isStale = true;
        throw;
    }
    m_designs = std::move(found.designs);
    const Platform::MutexLock lock(m_mutex);
    m_tracked = std::move(found.connectors);
    return true;
}

void CSheetConnectorsCache::CImpl::CollectDesign(const Orin::String& name, Collection& collection) const {
    const std::string design(name.View());
    Labels& labels = collection.designs[design];
    PageTraverser pages(m_snapshot, design, EViewMode::Logical);
    pages.setAlgorithm(EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    pages.update();
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        CollectPage(page, labels, collection);
}

void CSheetConnectorsCache::CImpl::CollectPage(const PageID& page, Labels& labels, Collection& collection) {
    Orin::ContainerT<const Orin::IPath> path;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Block block;
    Hierarchy hierarchy;
    Orin::ListT<Orin::Index> objects;
    if (!collection.objects.GetPath(path, page.path) || !path->GetBlock(block) || !block->GetGroup(sheet, page.group) ||
        !path->GetListHierarchyIndexes(hierarchy) || !sheet->GetListObjects(objects))
        return;
    for (const Orin::Index& index : std::as_const(objects)) {
        Comp comp;
        Orin::String label;
        if (!collection.objects.GetComp(comp, index)) continue;
        if (collection.symbols.find(SymbolKeyOf(*comp)) == collection.symbols.end() || !comp->GetLabel(label)) continue;
        Connectors& connectors = labels[std::string(label.View())];
        const std::size_t place = connectors.list.size();
        connectors.list.push_back({index, hierarchy, KeyOf(index, hierarchy)});
        connectors.places.try_emplace(connectors.list.back().key, place);
        collection.connectors.insert(index);
    }
}

const CSheetConnectorsCache::CImpl::Connectors* CSheetConnectorsCache::CImpl::Find(const std::string& designPath,
                                                                                   const std::string& label) const {
    const auto design = m_designs.find(FileName(designPath));
    if (design == m_designs.end()) return nullptr;
    const auto found = design->second.find(label);
    return found != design->second.end() ? &found->second : nullptr;
}

// Whether the object is a component of a schematic with the symbol of a sheet connector.
bool CSheetConnectorsCache::CImpl::IsConnector(const Orin::Index& object) const {
    Comp comp;
    Block block;
    return m_objects.GetComp(comp, object) && comp->GetParentBlock(block) && IsSchematic(*block) &&
           IsConnectorSymbol(SymbolKeyOf(*comp));
}

namespace {

// Databases tell of a component by the kind of the event or by the kind of its index.
template <class Event>
bool IsOfComp(Event kind, Event comp, const Orin::Index& object) {
    return kind == comp || static_cast<int>(object.GetType()) == static_cast<int>(comp);
}

}  // namespace

// Its symbol can be read for the last time. Without this a collection on another thread might have read the connector,
// but not entered it into the tracked ones, when it is gone.
void CSheetConnectorsCache::CImpl::OnBeforeDelete(const Orin::Index&, const Orin::Index& object,
                                                  Orin::EEventsDelete kind, bool) {
    if (!IsOfComp(kind, Orin::EEventsDelete::Comp, object) || !IsConnector(object)) return;
    const Platform::MutexLock lock(m_mutex);
    m_tracked.insert(object);
}

void CSheetConnectorsCache::CImpl::OnAfterAdd(const Orin::Index&, const Orin::Index& object, Orin::EEventsAdd kind,
                                              bool) {
    if (IsOfComp(kind, Orin::EEventsAdd::Comp, object) && IsConnector(object)) m_isStale = true;
}

void CSheetConnectorsCache::CImpl::OnAfterDelete(const Orin::Index&, const Orin::Index& object,
                                                 Orin::EEventsDelete kind, bool) {
    if (!IsOfComp(kind, Orin::EEventsDelete::Comp, object)) return;
    const Platform::MutexLock lock(m_mutex);
    if (m_tracked.erase(object) != 0) m_isStale = true;
}

void CSheetConnectorsCache::CImpl::OnAfterChange(const Orin::Index& object, Orin::EEventsChange kind, bool) {
    if ((kind == Orin::EEventsChange::Label || kind == Orin::EEventsChange::Name) && IsConnector(object))
        m_isStale = true;
}

CSheetConnectorsCache::CSheetConnectorsCache() : m_impl(std::make_unique<CImpl>()) {}
CSheetConnectorsCache::~CSheetConnectorsCache() = default;

void CSheetConnectorsCache::attachObserver(const Snapshot& snapshot) {
    m_impl->Attach(snapshot);
}

void CSheetConnectorsCache::detachObserver() {
    m_impl->Detach();
}

bool CSheetConnectorsCache::reloadSheetConnectorsList(IPinTypeComponentsData* data) {
    if (data != nullptr) m_impl->SetSymbols(data->GetComponents(SheetConnectorPinType));
    return m_impl->Reload();
}

bool CSheetConnectorsCache::reloadSheetConnectorsCache() {
    return m_impl->Reload();
}

bool CSheetConnectorsCache::isSheetConnectorSymbol(const std::string& library, const std::string& cell,
                                                   const std::string& variant) {
    m_impl->ReloadIfStale();
    return m_impl->IsConnectorSymbol(SymbolKey(library, cell + '.' + variant));
}

bool CSheetConnectorsCache::getNextTargetSheetConnector(const std::string& library, const std::string& cell,
                                                        const std::string& variant, const std::string& designPath,
                                                        const std::string& label, const Orin::Index& connector,
                                                        const Hierarchy& hierarchy, const CSheetConnectorData** next) {
    if (designPath.empty() || !isSheetConnectorSymbol(library, cell, variant)) return false;
    const CImpl::Connectors* const connectors = m_impl->Find(designPath, label);
    if (connectors == nullptr) return false;
    const std::string key = KeyOf(connector, hierarchy);
    const auto start = connectors->places.find(key);
    if (start == connectors->places.end()) return false;
    const CSheetConnectorData& target = connectors->list[(start->second + 1) % connectors->list.size()];
    if (next != nullptr) *next = &target;
    return target.key != key;
}

bool CSheetConnectorsCache::getAllTargetSheetConnectors(const std::string& library, const std::string& cell,
                                                        const std::string& variant, const std::string& designPath,
                                                        const std::string& label, const Orin::Index& connector,
                                                        const Hierarchy& hierarchy,
                                                        std::list<const CSheetConnectorData*>& targets) {
    targets.clear();
    if (designPath.empty() || !isSheetConnectorSymbol(library, cell, variant)) return false;
    const CImpl::Connectors* const connectors = m_impl->Find(designPath, label);
    if (connectors == nullptr) return false;
    const std::string key = KeyOf(connector, hierarchy);
    for (const CSheetConnectorData& target : connectors->list)
        if (target.key != key) targets.push_back(&target);
    return true;
}

void CSheetConnectorsCache::forEachSheetConnector(const Visitor& visit) {
    m_impl->ReloadIfStale();
    for (const auto& [design, labels] : m_impl->GetDesigns())
        for (const auto& [label, connectors] : labels)
            for (const CSheetConnectorData& connector : connectors.list)
                visit(design, label, connector);
}

}  // namespace Quill
