#include "sheets/sheet_range.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "designdata/object_index.h"
#include "designdata/result_rule.h"
#include "properties/property_mangler.h"
#include "sheets/detail/transaction_guard.h"
#include "sheets/detail/used_ids.h"
#include "sheets/detail/used_names.h"
#include "sheets/sheet_name.h"
#include "text/number.h"

namespace Quill {

struct SheetRange::Entry {
    Sheet group;
    double position = 0.0;  // between operations the place in the range, counted from 1
    double stored = 0.0;    // the order that the design holds
};

namespace {

using Utils::IndexOf;
using Utils::Require;

// What a sheet without an order of its own counts as: behind every sheet that has one.
constexpr double NoOrder = 2147483647.0;

Orin::String OrderAttributeName() {
    return Utils::CPropertyMangler::Mangle("CUSTOM_ORDER", DataModel::PropertyType::Internal);
}

// The order that the design holds for the sheet.
double ReadOrder(const Orin::IGroup& sheet, const Orin::String& attribute) {
    Orin::String value;
    if (!sheet.GetAttribute(attribute, value)) return NoOrder;
    const double order = Text::ParseDouble(value.View()).value;
    return order == 0.0 ? NoOrder : order;
}

// The name of the sheet at `place`, counted from 0.
std::string NumberedName(const SheetRange::NumberingInfo& info, std::size_t place) {
    const std::int64_t number = info.start + static_cast<std::int64_t>(place) * info.step;
    return info.prefix + Text::Render(number);
}

}  // namespace

class SheetRange::Impl {
public:
    void Load(Block block);

    const std::vector<std::unique_ptr<Entry>>& Entries() const noexcept { return m_entries; }
    const Snapshot& Design() const noexcept { return m_snapshot; }
    detail::UsedIds& Ids() noexcept { return m_ids; }
    detail::UsedNames& Names() noexcept { return m_names; }

    // The place of an entry among Entries.
    static std::size_t PlaceOf(const Entry& entry) { return static_cast<std::size_t>(entry.position) - 1; }
    // The sheet's entry, or null when it is not in the range.
    const Entry* Lookup(const Sheet& sheet) const;
    // Where the sheet stands; behind all others when it is not in the range.
    double PositionOf(const Sheet& sheet) const;

    bool MoveTo(const std::vector<Sheet>& sheets, const Sheet& target, bool after);
    // By one place, up (-1) or down (+1).
    bool CanMoveBy(const Sheet& sheet, int step) const { return Neighbour(Lookup(sheet), step) != nullptr; }
    bool MoveBy(const Sheet& sheet, int step);

private:
    // A sheet with the position that it is to have.
    struct Placed {
        double position;
        Entry* entry;
    };

    const Entry* Neighbour(const Entry* entry, int step) const;
    std::vector<Placed> CurrentPlaces() const;
    void Arrange(std::vector<Placed> places);
    void WriteOrder(const std::vector<Placed>& order) const;
    void Adopt(const std::vector<Placed>& order) noexcept;

    std::vector<std::unique_ptr<Entry>> m_entries;  // in the order of their positions
    std::unordered_map<Orin::Index, Entry*> m_byIndex;
    detail::UsedIds m_ids;
    detail::UsedNames m_names;
    Block m_block;
    Snapshot m_snapshot;
    unsigned m_loads = 0;  // tells a write whether the range was loaded again in its course
};

void SheetRange::Impl::Load(Block block) {
    Impl loaded;
    loaded.m_loads = m_loads + 1;
    *this = Impl();  // what a failure on the way leaves
    m_loads = loaded.m_loads;

    if (!block) throw Orin::Result(Orin::EErrorCode::ObjectNotFound);
    Snapshot snapshot;
    Require(block->GetParentSnapshot(snapshot));
    Orin::ListT<Orin::GroupInfo> groups;
    Orin::GroupTypes sheetTypes(Orin::EGroupType::Sheet);
    sheetTypes |= Orin::EGroupType::GeneratedSheet;
    Require(block->GetListOwnedGroups(groups, sheetTypes));

    loaded.m_block = block;
    loaded.m_snapshot = snapshot;
    loaded.m_entries.reserve(groups.Count());
    const Orin::String attribute = OrderAttributeName();
    for (const Orin::GroupInfo& info : groups) {
        Sheet sheet;
        if (!block->GetGroup(sheet, info.index)) continue;
        const double order = ReadOrder(*sheet, attribute);
        loaded.m_entries.push_back(std::make_unique<Entry>(Entry{sheet, order, order}));
        loaded.m_byIndex.emplace(info.index, loaded.m_entries.back().get());
        int id = 0;
        if (ReadSheetId(*sheet, id)) loaded.m_ids.Insert(id);
        loaded.m_names.Insert(info.name.View());
    }
    std::stable_sort(loaded.m_entries.begin(), loaded.m_entries.end(),
                     [](const auto& a, const auto& b) { return a->position < b->position; });
    // Only the positions are made consecutive. The stored orders that are not are written with the next move.
    for (std::size_t i = 0; i < loaded.m_entries.size(); ++i)
        loaded.m_entries[i]->position = static_cast<double>(i + 1);
    *this = std::move(loaded);
}

const SheetRange::Entry* SheetRange::Impl::Lookup(const Sheet& sheet) const {
    const auto found = m_byIndex.find(IndexOf(sheet));
    return found != m_byIndex.end() ? found->second : nullptr;
}

double SheetRange::Impl::PositionOf(const Sheet& sheet) const {
    const Entry* const entry = Lookup(sheet);
    return entry != nullptr ? entry->position : std::numeric_limits<double>::infinity();
}

const SheetRange::Entry* SheetRange::Impl::Neighbour(const Entry* entry, int step) const {
    if (entry == nullptr) return nullptr;
    // In front of the first one the place wraps round to a number that is too large, too.
    const std::size_t place = PlaceOf(*entry) + static_cast<std::size_t>(step);
    return place < m_entries.size() ? m_entries[place].get() : nullptr;
}

std::vector<SheetRange::Impl::Placed> SheetRange::Impl::CurrentPlaces() const {
    std::vector<Placed> places;
    places.reserve(m_entries.size());
    for (const std::unique_ptr<Entry>& entry : m_entries)
        places.push_back({entry->position, entry.get()});
    return places;
}

bool SheetRange::Impl::MoveTo(const std::vector<Sheet>& sheets, const Sheet& target, bool after) {
    const Entry* const goal = Lookup(target);
    if (goal == nullptr) return false;
    std::vector<const Entry*> moved;
    moved.reserve(sheets.size());
    double largest = 0.0;
    for (const Sheet& sheet : sheets) {
        const Entry* const entry = Lookup(sheet);
        if (entry == nullptr) return false;
        moved.push_back(entry);
        largest = std::max(largest, entry->position);
    }

    // Divided by a power of ten above them all, the positions lie between 0 and 1 in their old order: room for every
    // moved sheet between two places.
    double divisor = 10.0;
    while (largest >= divisor)
        divisor *= 10.0;
    const double base = after ? goal->position : goal->position - 1.0;
    std::vector<Placed> places = CurrentPlaces();
    for (const Entry* const entry : moved)
        places[PlaceOf(*entry)].position = entry->position / divisor + base;
    Arrange(std::move(places));
    return true;
}

bool SheetRange::Impl::MoveBy(const Sheet& sheet, int step) {
    if (!CanMoveBy(sheet, step)) return false;
    const Entry* const entry = Lookup(sheet);
    const Entry* const neighbour = Neighbour(entry, step);
    if (neighbour == nullptr) {
        // Between two looks the database ceased to know the sheet. What is under way on such a design is given up, be
        // it the caller's.
        static_cast<void>(m_snapshot->RollbackTransaction());
        return false;
    }
    std::vector<Placed> places = CurrentPlaces();
    std::swap(places[PlaceOf(*entry)].position, places[PlaceOf(*neighbour)].position);
    Arrange(std::move(places));
    return true;
}

// Writes the order that the positions make, then takes it over. Nothing changes here before the design has it.
void SheetRange::Impl::Arrange(std::vector<Placed> places) {
    std::stable_sort(places.begin(), places.end(),
                     [](const Placed& a, const Placed& b) { return a.position < b.position; });
    const unsigned loads = m_loads;
    WriteOrder(places);
    if (loads == m_loads)
        Adopt(places);
    else if (m_block)
        Load(m_block);  // an observer of the writes did so before the last of them
}

void SheetRange::Impl::WriteOrder(const std::vector<Placed>& order) const {
    struct Write {
        Sheet sheet;
        std::int64_t position;
    };
    // Collected first, since the entries go when an observer of the writes loads the range again.
    std::vector<Write> writes;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto position = static_cast<std::int64_t>(i + 1);
        if (order[i].entry->stored != static_cast<double>(position))
            writes.push_back({order[i].entry->group, position});
    }

    const Orin::String attribute = OrderAttributeName();
    detail::TransactionGuard guard(m_snapshot);
    for (const Write& write : writes) {
        Orin::MutableContainerT<Orin::IGroup> group;
        Require(Orin::LockerT<Orin::IGroup>::Lock(write.sheet, group));
        Require(group->SetAttribute(attribute, Orin::String(Text::Render(write.position))));
    }
    guard.Commit();
}

void SheetRange::Impl::Adopt(const std::vector<Placed>& order) noexcept {
    for (std::unique_ptr<Entry>& entry : m_entries)
        static_cast<void>(entry.release());  // `order` names each entry once
    for (std::size_t i = 0; i < order.size(); ++i) {
        m_entries[i].reset(order[i].entry);
        m_entries[i]->position = m_entries[i]->stored = static_cast<double>(i + 1);
    }
}

struct SheetRange::Iterator::Place {
    const std::vector<std::unique_ptr<Entry>>* entries;
    std::size_t position;

    bool operator==(const Place&) const = default;
};

SheetRange::Iterator::Iterator(const std::vector<std::unique_ptr<Entry>>& entries, std::size_t position)
    : m_place(new Place{&entries, position}) {}

SheetRange::Iterator::Iterator(const Iterator& other) : m_place(new Place(*other.m_place)) {}

SheetRange::Iterator& SheetRange::Iterator::operator=(const Iterator& other) {
    *m_place = *other.m_place;
    return *this;
}

SheetRange::Iterator::~Iterator() = default;

const SheetRange::Sheet& SheetRange::Iterator::operator*() const {
    return (*m_place->entries)[m_place->position]->group;
}

bool SheetRange::Iterator::operator==(const Iterator& other) const {
    return *m_place == *other.m_place;
}

bool SheetRange::Iterator::operator!=(const Iterator& other) const {
    return !(*this == other);
}

SheetRange::Iterator& SheetRange::Iterator::operator++() {
    ++m_place->position;
    return *this;
}

SheetRange::Iterator SheetRange::Iterator::operator++(int) {
    Iterator before(*this);
    ++*this;
    return before;
}

SheetRange::Iterator& SheetRange::Iterator::operator--() {
    --m_place->position;
    return *this;
}

SheetRange::Iterator SheetRange::Iterator::operator--(int) {
    Iterator before(*this);
    --*this;
    return before;
}

SheetRange::SheetRange() : m_impl(std::make_unique<Impl>()) {}
SheetRange::SheetRange(SheetRange&&) noexcept = default;
SheetRange& SheetRange::operator=(SheetRange&&) noexcept = default;
SheetRange::~SheetRange() = default;

bool SheetRange::Init(const Block& block) {
    m_impl->Load(block);
    return true;
}

bool SheetRange::Init(Snapshot snapshot, const char* blockName) {
    if (!snapshot) throw Orin::Result(Orin::EErrorCode::ObjectNotFound);
    Orin::ListT<Orin::BlockInfo> found;
    Require(snapshot->FindBlock(found, Orin::String(blockName), {}));
    if (found.Count() != 1) return false;
    Block block;
    Require(snapshot->GetBlock(block, std::as_const(found).Front().index));
    return Init(block);
}

bool SheetRange::IsOrderChanged(Block block, Orin::Index changed, Orin::EEventsChange kind) {
    if (kind != Orin::EEventsChange::SetAttribute || changed.GetType() != Orin::EObjectType::Group || !block)
        return false;
    Sheet group;
    Orin::Index owner;
    if (!block->GetGroup(group, changed) || !group->GetOwner(owner)) return false;
    return owner == IndexOf(block);  // a group that another group of the block owns is not in its order
}

SheetRange::Iterator SheetRange::Begin() const {
    return {m_impl->Entries(), 0};
}

SheetRange::Iterator SheetRange::End() const {
    return {m_impl->Entries(), m_impl->Entries().size()};
}

int SheetRange::Count() const noexcept {
    return static_cast<int>(m_impl->Entries().size());
}

SheetRange::Iterator SheetRange::Find(Sheet sheet) const {
    const Entry* const entry = m_impl->Lookup(sheet);
    return entry != nullptr ? Iterator(m_impl->Entries(), Impl::PlaceOf(*entry)) : End();
}

SheetRange::Iterator SheetRange::Find(const std::string& name) const {
    // The sheets are asked, because they may have been renamed since the range was loaded.
    const auto bearsName = [&name](const Sheet& sheet) {
        Orin::String own;
        return sheet->GetName(own) && own.View() == name;
    };
    Iterator it = Begin();
    const Iterator end = End();
    while (it != end && !bearsName(*it))
        ++it;
    return it;
}

void SheetRange::Advance(Iterator& it, int n, Iterator limit) {
    const auto from = static_cast<std::int64_t>(it.m_place->position);
    const auto end = static_cast<std::int64_t>(it.m_place->entries->size());
    std::int64_t to = std::clamp<std::int64_t>(from + n, 0, end);
    if (limit.m_place->entries == it.m_place->entries) {
        // A limit that does not lie on the way is never reached.
        const auto stop = static_cast<std::int64_t>(limit.m_place->position);
        if (n > 0 && stop >= from) to = std::min(to, stop);
        if (n < 0 && stop <= from) to = std::max(to, stop);
    }
    it.m_place->position = static_cast<std::size_t>(to);
}

bool SheetRange::Compare(Sheet a, Sheet b) const {
    return m_impl->PositionOf(a) < m_impl->PositionOf(b);
}

void SheetRange::Sort(std::vector<Sheet>& sheets) const {
    std::vector<std::pair<double, Sheet>> placed;
    placed.reserve(sheets.size());
    for (const Sheet& sheet : sheets)
        placed.emplace_back(m_impl->PositionOf(sheet), sheet);
    std::stable_sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < sheets.size(); ++i)
        sheets[i] = placed[i].second;
}

bool SheetRange::CanMoveTo(const std::vector<Sheet>& sheets, Sheet target, bool /*after*/) const {
    const Orin::Index index = IndexOf(target);
    return std::none_of(sheets.begin(), sheets.end(), [&](const Sheet& sheet) { return IndexOf(sheet) == index; });
}

bool SheetRange::MoveTo(const std::vector<Sheet>& sheets, Sheet target, bool after) {
    return m_impl->MoveTo(sheets, target, after);
}

bool SheetRange::CanMoveUp(Sheet sheet) const {
    return m_impl->CanMoveBy(sheet, -1);
}

bool SheetRange::CanMoveDown(Sheet sheet) const {
    return m_impl->CanMoveBy(sheet, +1);
}

bool SheetRange::MoveUp(Sheet sheet) {
    return m_impl->MoveBy(sheet, -1);
}

bool SheetRange::MoveDown(Sheet sheet) {
    return m_impl->MoveBy(sheet, +1);
}

bool SheetRange::NameAlreadyExists(const std::string& name) const {
    return m_impl->Names().Contains(name);
}

void SheetRange::CreateNewName(std::string& name) {
    const detail::UsedIds& ids = m_impl->Ids();
    name = m_impl->Names().TakeNumberAbove(ids.IsEmpty() ? 1 : ids.Largest());
}

void SheetRange::CreateNewName(const std::string& base, std::string& name) {
    name = m_impl->Names().TakeDerivedFrom(base);
}

int SheetRange::CreateNewId(const std::string& name) {
    const int number = Text::ParseInt32(name).value;
    const int id = m_impl->Ids().FirstFreeFrom(number != 0 ? number : 1);
    m_impl->Ids().Insert(id);
    return id;
}

bool SheetRange::ValidateRenumber(const std::vector<Sheet>& sheets, const NumberingInfo& info) const {
    std::unordered_set<std::string> givenUp;
    for (const Sheet& sheet : sheets) {
        Orin::String name;
        if (sheet && sheet->GetName(name)) givenUp.emplace(name.View());
    }
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const std::string name = NumberedName(info, i);
        if (m_impl->Names().Contains(name) && givenUp.count(name) == 0) return false;
    }
    return true;
}

bool SheetRange::Renumber(const std::vector<Sheet>& sheets, const NumberingInfo& info) {
    detail::TransactionGuard guard(m_impl->Design());
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        Orin::MutableContainerT<Orin::IGroup> group;
        Require(Orin::LockerT<Orin::IGroup>::Lock(sheets[i], group));
        Require(group->SetName(Orin::String(NumberedName(info, i))));
    }
    guard.Commit();
    return true;
}

}  // namespace Quill
