#include "pages/page_holder.h"

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "pages/detail/page_table.h"
#include "pages/detail/print_order.h"
#include "pages/page_number_supplier.h"

namespace Quill {

PageHolder::~PageHolder() = default;

// ---- The sequenced holder ----

class SequencedPageHolder::Impl {
public:
    enum class State : std::uint8_t { Included, Excluded, Removed };
    struct Record {
        PageID page;
        unsigned number = NoPageNumber;
        unsigned position = 0;  // in the sequence, when it is in order and the page is included
        State state = State::Included;
    };
    using Pages = detail::PageTable<Record>;

    void Add(const PageID& page, PageNumberSupplier* numbers, bool excluded);
    void SetState(const PageID& page, State state);
    void Renumber();
    // Keeps the room of the tables: as a rule a walk like the last one follows.
    void Clear() {
        m_pages.Clear();
        m_included = 0;
        m_sequence.clear();
        m_sequenceIsInOrder = true;
    }

    // The included pages in the order of the walk.
    const std::vector<Pages::Slot>& Sequence() const {
        if (!m_sequenceIsInOrder) Arrange();
        return m_sequence;
    }
    PageID At(std::size_t position) const {
        return position < Sequence().size() ? m_pages[m_sequence[position]].page : PageID();
    }

    const Pages& GetPages() const noexcept { return m_pages; }
    unsigned IncludedCount() const noexcept { return m_included; }

private:
    void Arrange() const;

    mutable Pages m_pages;
    unsigned m_included = 0;
    // Collected from the pages when first asked for after a page left or came back. Pages that are added go to its end,
    // so a walk does not disturb it.
    mutable std::vector<Pages::Slot> m_sequence;
    mutable bool m_sequenceIsInOrder = true;
};

void SequencedPageHolder::Impl::Add(const PageID& page, PageNumberSupplier* numbers, bool excluded) {
    unsigned number = NoPageNumber;
    if (auto* const counter = dynamic_cast<OrdinalNumberSupplier*>(numbers)) number = counter->next++;
    const auto [slot, added] = m_pages.Enter(page);
    if (!added) return;
    Record& record = m_pages[slot];
    if (excluded) {
        record.state = State::Excluded;
        return;
    }
    record.number = number;
    ++m_included;
    if (!m_sequenceIsInOrder) return;
    record.position = static_cast<unsigned>(m_sequence.size());
    m_sequence.push_back(slot);
}

void SequencedPageHolder::Impl::SetState(const PageID& page, State state) {
    Record* const record = m_pages.Find(page);
    if (record == nullptr || record->state == state) return;
    if (record->state == State::Included) --m_included;
    if (state == State::Included) ++m_included;
    record->state = state;
    record->number = NoPageNumber;
    m_sequenceIsInOrder = false;
    if (state == State::Removed) m_pages.Remove(page);
}

void SequencedPageHolder::Impl::Renumber() {
    unsigned number = 0;
    for (const Pages::Slot slot : Sequence())
        m_pages[slot].number = ++number;
}

void SequencedPageHolder::Impl::Arrange() const {
    m_sequence.clear();
    for (Pages::Slot slot = 0; slot < m_pages.SlotCount(); ++slot) {
        if (m_pages[slot].state != State::Included) continue;
        m_pages[slot].position = static_cast<unsigned>(m_sequence.size());
        m_sequence.push_back(slot);
    }
    m_sequenceIsInOrder = true;
}

SequencedPageHolder::SequencedPageHolder() : m_impl(std::make_unique<Impl>()) {}
SequencedPageHolder::SequencedPageHolder(SequencedPageHolder&&) noexcept = default;
SequencedPageHolder& SequencedPageHolder::operator=(SequencedPageHolder&&) noexcept = default;
SequencedPageHolder::~SequencedPageHolder() = default;

PageID SequencedPageHolder::firstPage() const {
    return m_impl->At(0);
}

PageID SequencedPageHolder::nextPage(const PageID& current) const {
    const std::vector<Impl::Pages::Slot>& sequence = m_impl->Sequence();
    const Impl::Record* const record = m_impl->GetPages().Find(current);
    if (record == nullptr || record->state != Impl::State::Included || sequence.empty()) return {};
    return m_impl->At(std::size_t{record->position} + 1);
}

PageID SequencedPageHolder::getPage(unsigned position) const {
    return m_impl->At(position);
}

unsigned SequencedPageHolder::pagesCount() const {
    return m_impl->IncludedCount();
}

unsigned SequencedPageHolder::pageOrder(const PageID& page) const {
    const Impl::Record* const record = m_impl->GetPages().Find(page);
    return record != nullptr ? record->number : NoPageNumber;
}

PageID SequencedPageHolder::getPageByName(const std::string& name) const {
    return m_impl->GetPages().FindByName(name);
}

void SequencedPageHolder::addPage(const PageID& page, PageNumberSupplier* numbers, bool excluded) {
    m_impl->Add(page, numbers, excluded);
}

void SequencedPageHolder::includePage(const PageID& page) {
    m_impl->SetState(page, Impl::State::Included);
}

void SequencedPageHolder::excludePage(const PageID& page) {
    m_impl->SetState(page, Impl::State::Excluded);
}

void SequencedPageHolder::removePage(const PageID& page) {
    m_impl->SetState(page, Impl::State::Removed);
}

void SequencedPageHolder::renumber() {
    m_impl->Renumber();
}

void SequencedPageHolder::clear() {
    m_impl->Clear();
}

bool SequencedPageHolder::containsPage(const PageID& page) const {
    return m_impl->GetPages().Find(page) != nullptr;
}

std::vector<PageID> SequencedPageHolder::heldPages() const {
    return m_impl->GetPages().List();
}

// ---- The random holder ----

class RandomPageHolder::Impl {
public:
    struct Record {
        PageID page;
        std::string order;                 // empty when the page is not numbered
        unsigned position = NoPageNumber;  // among the numbered pages, when they are in order
    };
    using Pages = detail::PageTable<Record>;

    void Add(const PageID& page, const std::string& order);
    void Clear() {
        m_held.clear();
        m_numbered.clear();
        m_sorted.clear();
        m_areSorted = true;
        m_pages.Clear();
    }

    // The numbered pages by their print orders.
    const std::vector<Pages::Slot>& Sorted() const {
        if (!m_areSorted) Sort();
        return m_sorted;
    }
    // The page's position among the numbered ones; NoPageNumber when it is none of them.
    unsigned PositionOf(const PageID& page) const {
        Sorted();
        const Record* const record = m_pages.Find(page);
        return record != nullptr ? record->position : NoPageNumber;
    }
    PageID At(std::size_t position) const {
        return position < Sorted().size() ? m_pages[m_sorted[position]].page : PageID();
    }

    const Pages& GetPages() const noexcept { return m_pages; }
    unsigned NumberedCount() const noexcept { return static_cast<unsigned>(m_numbered.size()); }

private:
    void Sort() const;

    mutable Pages m_pages;
    std::vector<Pages::Slot> m_numbered;                       // in the order of their adding
    std::unordered_map<std::string_view, Pages::Slot> m_held;  // by print order: views of the records' texts
    // Sorted when first asked for after a page was added, always from the order of adding: the comparison is no strict
    // weak order, so a sort of what was sorted in part might end elsewhere.
    mutable std::vector<Pages::Slot> m_sorted;
    mutable bool m_areSorted = true;
};

void RandomPageHolder::Impl::Add(const PageID& page, const std::string& order) {
    const auto [slot, added] = m_pages.Enter(page);
    if (!added || order.empty() || m_held.find(order) != m_held.end()) return;
    Record& record = m_pages[slot];
    record.order = order;
    m_held.emplace(record.order, slot);
    m_numbered.push_back(slot);
    m_areSorted = false;
}

void RandomPageHolder::Impl::Sort() const {
    std::vector<std::string_view> orders;
    orders.reserve(m_numbered.size());
    for (const Pages::Slot slot : m_numbered)
        orders.push_back(m_pages[slot].order);
    m_sorted.clear();
    for (const std::size_t rank : detail::SortByPrintOrder(orders)) {
        m_pages[m_numbered[rank]].position = static_cast<unsigned>(m_sorted.size());
        m_sorted.push_back(m_numbered[rank]);
    }
    m_areSorted = true;
}

RandomPageHolder::RandomPageHolder() : m_impl(std::make_unique<Impl>()) {}
RandomPageHolder::RandomPageHolder(RandomPageHolder&&) noexcept = default;
RandomPageHolder& RandomPageHolder::operator=(RandomPageHolder&&) noexcept = default;
RandomPageHolder::~RandomPageHolder() = default;

bool RandomPageHolder::IsBefore(std::string_view a, std::string_view b) {
    return detail::PrintOrder(a).IsBefore(detail::PrintOrder(b));
}

PageID RandomPageHolder::firstPage() const {
    return m_impl->At(0);
}

PageID RandomPageHolder::nextPage(const PageID& current) const {
    const unsigned position = m_impl->PositionOf(current);
    return position != NoPageNumber ? m_impl->At(std::size_t{position} + 1) : PageID();
}

PageID RandomPageHolder::getPage(unsigned position) const {
    return m_impl->At(position);
}

unsigned RandomPageHolder::pagesCount() const {
    return m_impl->NumberedCount();
}

unsigned RandomPageHolder::pageOrder(const PageID& page) const {
    const unsigned position = m_impl->PositionOf(page);
    return position != NoPageNumber ? position + 1 : NoPageNumber;
}

PageID RandomPageHolder::getPageByName(const std::string& name) const {
    return m_impl->GetPages().FindByName(name);
}

void RandomPageHolder::addPage(const PageID& page, PageNumberSupplier* numbers, bool) {
    const auto* const printOrder = dynamic_cast<const StringBaseNumberSupplier*>(numbers);
    m_impl->Add(page, printOrder != nullptr ? printOrder->base : std::string());
}

void RandomPageHolder::includePage(const PageID&) {}
void RandomPageHolder::excludePage(const PageID&) {}
void RandomPageHolder::removePage(const PageID&) {}
void RandomPageHolder::renumber() {}

void RandomPageHolder::clear() {
    m_impl->Clear();
}

bool RandomPageHolder::containsPage(const PageID& page) const {
    return m_impl->GetPages().Find(page) != nullptr;
}

std::vector<PageID> RandomPageHolder::heldPages() const {
    return m_impl->GetPages().List();
}

}  // namespace Quill
