// Lists of plain records.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace Orin {

// An owned list of records, one pointer wide. Copies share the records until one of them is changed; only non-const
// access detaches. An empty list allocates nothing. One object is used by one thread at a time; copies of it may be
// used by others.
//
// Reading goes through begin and end or a const list's GetIterator; the non-const Front and GetIterator give write
// access and therefore take the records for themselves first.
template <class E>
class ListT {
public:
    // Walks the records of a list that outlives it and is not changed in its number of records meanwhile.
    template <class Record>
    class IteratorOf {
    public:
        IteratorOf() noexcept = default;
        IteratorOf(Record* first, Record* last) noexcept : m_at(first), m_end(last) {}

        bool IsValid() const noexcept { return m_at != m_end; }
        IteratorOf& operator++() noexcept {
            ++m_at;
            return *this;
        }
        Record& operator*() const noexcept { return *m_at; }
        Record* operator->() const noexcept { return m_at; }
        operator Record*() const noexcept { return IsValid() ? m_at : nullptr; }

    private:
        Record* m_at = nullptr;
        Record* m_end = nullptr;
    };
    using Iterator = IteratorOf<E>;
    using ConstIterator = IteratorOf<const E>;

    ListT() noexcept = default;
    ListT(std::initializer_list<E> records) : ListT(std::vector<E>(records)) {}
    explicit ListT(std::vector<E> records) {
        if (!records.empty()) m_rep = new Rep{{1}, std::move(records)};
    }
    ListT(const ListT& other) noexcept : m_rep(other.m_rep) {
        if (m_rep != nullptr) m_rep->references.fetch_add(1, std::memory_order_relaxed);
    }
    ListT(ListT&& other) noexcept : m_rep(std::exchange(other.m_rep, nullptr)) {}
    ListT& operator=(ListT other) noexcept {
        std::swap(m_rep, other.m_rep);
        return *this;
    }
    ~ListT() { Drop(m_rep); }

    unsigned Count() const noexcept { return m_rep != nullptr ? static_cast<unsigned>(m_rep->records.size()) : 0; }
    bool IsEmpty() const noexcept { return Count() == 0; }

    // The first record of a list that is not empty.
    E& Front() { return Own().front(); }
    const E& Front() const noexcept { return m_rep->records.front(); }

    const E& operator[](std::size_t position) const noexcept { return m_rep->records[position]; }

    Iterator GetIterator() {
        if (IsEmpty()) return {};
        std::vector<E>& records = Own();
        return {records.data(), records.data() + records.size()};
    }
    ConstIterator GetIterator() const noexcept { return {begin(), end()}; }

    const E* begin() const noexcept { return m_rep != nullptr ? m_rep->records.data() : nullptr; }
    const E* end() const noexcept { return begin() + Count(); }

    void Append(E record) { Own().push_back(std::move(record)); }
    void Insert(std::size_t position, E record) {
        std::vector<E>& records = Own();
        records.insert(records.begin() + static_cast<std::ptrdiff_t>(position), std::move(record));
    }
    void Erase(std::size_t position) {
        std::vector<E>& records = Own();
        records.erase(records.begin() + static_cast<std::ptrdiff_t>(position));
    }
    void Reserve(std::size_t count) { Own().reserve(count); }
    void Clear() noexcept { Drop(std::exchange(m_rep, nullptr)); }

    friend bool operator==(const ListT& a, const ListT& b) {
        if (a.m_rep == b.m_rep) return true;
        if (a.Count() != b.Count()) return false;
        for (std::size_t i = 0; i < a.Count(); ++i)
            if (!(a[i] == b[i])) return false;
        return true;
    }

private:
    struct Rep {
        std::atomic<std::uint32_t> references;
        std::vector<E> records;
    };

    static void Drop(Rep* rep) noexcept {
        if (rep != nullptr && rep->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete rep;
    }

    // The records, shared with no other list.
    std::vector<E>& Own() {
        if (m_rep == nullptr) {
            m_rep = new Rep{{1}, {}};
        } else if (m_rep->references.load(std::memory_order_acquire) != 1) {
            Rep* const own = new Rep{{1}, m_rep->records};
            Drop(std::exchange(m_rep, own));
        }
        return m_rep->records;
    }

    Rep* m_rep = nullptr;
};

}  // namespace Orin
