// Lists of plain records.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <new>
#include <type_traits>
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
    ListT(std::initializer_list<E> records) : m_rep(Copied(records.begin(), records.size(), records.size())) {}
    explicit ListT(const std::vector<E>& records) : m_rep(Copied(records.data(), records.size(), records.size())) {}
    ListT(const ListT& other) noexcept : m_rep(other.m_rep) {
        if (m_rep != nullptr) m_rep->references.fetch_add(1, std::memory_order_relaxed);
    }
    ListT(ListT&& other) noexcept : m_rep(std::exchange(other.m_rep, nullptr)) {}
    ListT& operator=(ListT other) noexcept {
        std::swap(m_rep, other.m_rep);
        return *this;
    }
    ~ListT() { Drop(m_rep); }

    unsigned Count() const noexcept { return m_rep != nullptr ? m_rep->count : 0; }
    bool IsEmpty() const noexcept { return Count() == 0; }

    // The first record of a list that is not empty.
    E& Front() { return Own(Count())[0]; }
    const E& Front() const noexcept { return begin()[0]; }

    const E& operator[](std::size_t position) const noexcept { return begin()[position]; }

    Iterator GetIterator() {
        if (IsEmpty()) return {};
        E* const records = Own(Count());
        return {records, records + Count()};
    }
    ConstIterator GetIterator() const noexcept { return {begin(), end()}; }

    const E* begin() const noexcept { return m_rep != nullptr ? RecordsOf(m_rep) : nullptr; }
    const E* end() const noexcept { return begin() + Count(); }

    // Where memory for a change is wanting, std::bad_alloc is thrown and the list is as it was.
    void Append(E record) { Insert(Count(), std::move(record)); }
    void Insert(std::size_t position, E record) {
        const unsigned count = Count();
        E* const records = Own(std::size_t{count} + 1);
        if (position == count) {
            ::new (static_cast<void*>(records + count)) E(std::move(record));
        } else {
            ::new (static_cast<void*>(records + count)) E(std::move(records[count - 1]));
            std::move_backward(records + position, records + count - 1, records + count);
            records[position] = std::move(record);
        }
        ++m_rep->count;
    }
    void Erase(std::size_t position) {
        E* const records = Own(Count());
        std::move(records + position + 1, records + Count(), records + position);
        --m_rep->count;
        std::destroy_at(records + m_rep->count);
    }
    void Reserve(std::size_t count) {
        if (count > Count()) Own(count);
    }
    void Clear() noexcept { Drop(std::exchange(m_rep, nullptr)); }

    friend bool operator==(const ListT& a, const ListT& b) {
        if (a.m_rep == b.m_rep) return true;
        if (a.Count() != b.Count()) return false;
        for (std::size_t i = 0; i < a.Count(); ++i)
            if (!(a[i] == b[i])) return false;
        return true;
    }

private:
    // Stands in front of the records, so that one look leads to them.
    struct Rep {
        std::atomic<std::uint32_t> references;
        std::uint32_t count;
        std::size_t capacity;
    };

    static E* RecordsOf(Rep* rep) noexcept {
        constexpr std::size_t offset = (sizeof(Rep) + alignof(E) - 1) / alignof(E) * alignof(E);
        return reinterpret_cast<E*>(reinterpret_cast<std::byte*>(rep) + offset);
    }

    static Rep* Make(std::size_t capacity) {
        static_assert(alignof(E) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__ && std::is_nothrow_move_constructible_v<E>);
        constexpr std::size_t offset = (sizeof(Rep) + alignof(E) - 1) / alignof(E) * alignof(E);
        return ::new (::operator new(offset + capacity * sizeof(E))) Rep{{1}, 0, capacity};
    }

    // Null for no records and no room.
    static Rep* Copied(const E* records, std::size_t count, std::size_t capacity) {
        if (capacity == 0) return nullptr;
        Rep* const rep = Make(capacity);
        try {
            std::uninitialized_copy_n(records, count, RecordsOf(rep));
        } catch (...) {
            Drop(rep);
            throw;
        }
        rep->count = static_cast<std::uint32_t>(count);
        return rep;
    }

    static void Drop(Rep* rep) noexcept {
        if (rep == nullptr || rep->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
        std::destroy_n(RecordsOf(rep), rep->count);
        rep->~Rep();
        ::operator delete(rep);
    }

    // The records, shared with no other list, with room for so many.
    E* Own(std::size_t room) {
        if (m_rep == nullptr) {
            m_rep = Copied(nullptr, 0, room);
        } else if (m_rep->references.load(std::memory_order_acquire) != 1) {
            Drop(std::exchange(m_rep,
                               Copied(RecordsOf(m_rep), m_rep->count, std::max<std::size_t>(room, m_rep->count))));
        } else if (m_rep->capacity < room) {
            Rep* const own = Make(std::max(room, 2 * m_rep->capacity));
            std::uninitialized_move_n(RecordsOf(m_rep), m_rep->count, RecordsOf(own));
            own->count = m_rep->count;
            Drop(std::exchange(m_rep, own));
        }
        return RecordsOf(m_rep);
    }

    Rep* m_rep = nullptr;
};

}  // namespace Orin
