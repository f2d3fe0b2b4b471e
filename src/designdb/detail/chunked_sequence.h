// Long sequences that change in the middle and are copied without copying their elements.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "orin/object.h"

namespace Orin::DesignDb {

// A sequence of distinct numbers in leaves of a bounded size. Copies share the leaves until one of them changes; then
// only that leaf is copied. Appending is O(1); inserting and erasing by position cost one look at each leaf's head and
// one leaf's elements. Finding looks at the leaves whose range holds the value, which is one leaf when the sequence is
// sorted or nearly so.
template <class T>
class ChunkedSequence {
public:
    std::size_t Size() const noexcept { return m_size; }
    bool IsEmpty() const noexcept { return m_size == 0; }

    static constexpr std::size_t NotFound = static_cast<std::size_t>(-1);

    // Where the value stands, or NotFound.
    std::size_t Find(T value) const noexcept {
        std::size_t before = 0;
        for (const RefPtr<Leaf>& leaf : m_leaves) {
            if (leaf->smallest <= value && value <= leaf->largest) {
                const auto found = std::find(leaf->values.begin(), leaf->values.end(), value);
                if (found != leaf->values.end()) return before + static_cast<std::size_t>(found - leaf->values.begin());
            }
            before += leaf->values.size();
        }
        return NotFound;
    }

    T operator[](std::size_t position) const noexcept {
        for (const RefPtr<Leaf>& leaf : m_leaves) {
            if (position < leaf->values.size()) return leaf->values[position];
            position -= leaf->values.size();
        }
        return T{};
    }

    // An allocation that fails leaves the values as they were; so below.
    void Insert(std::size_t position, T value) {
        const std::size_t at = LeafFor(position);
        // An append to a full leaf starts a new one, so that a sequence that only grows has full leaves.
        const bool full = at < m_leaves.size() && m_leaves[at]->values.size() == LeafSize;
        if (at == m_leaves.size() || (full && at + 1 == m_leaves.size() && position == LeafSize)) {
            RefPtr<Leaf> leaf(new Leaf);
            leaf->values.push_back(value);
            leaf->smallest = leaf->largest = value;
            m_leaves.push_back(std::move(leaf));
            ++m_size;
            return;
        }
        if (full) {
            Split(at);
            const std::size_t first = m_leaves[at]->values.size();
            if (position > first) return InsertInLeaf(at + 1, position - first, value);
        }
        InsertInLeaf(at, position, value);
    }
    void Append(T value) { Insert(m_size, value); }

    void Erase(std::size_t position) {
        std::size_t at = 0;
        while (position >= m_leaves[at]->values.size())
            position -= m_leaves[at++]->values.size();
        EraseInLeaf(at, position);
    }

    // ---- Of a sequence that is sorted upwards: all of it costs the logarithm of the size and one leaf. ----

    void InsertSorted(T value) {
        if (m_leaves.empty() || value > m_leaves.back()->largest) return Append(value);
        std::size_t at = SortedLeaf(value);
        if (m_leaves[at]->values.size() == LeafSize) {
            Split(at);
            at = SortedLeaf(value);
        }
        const std::vector<T>& values = m_leaves[at]->values;
        const auto place = std::lower_bound(values.begin(), values.end(), value);
        InsertInLeaf(at, static_cast<std::size_t>(place - values.begin()), value);
    }

    // Nothing happens when the value is not there.
    void EraseSorted(T value) {
        const std::size_t at = SortedLeaf(value);
        if (at == m_leaves.size()) return;
        const std::vector<T>& values = m_leaves[at]->values;
        const auto place = std::lower_bound(values.begin(), values.end(), value);
        if (place != values.end() && *place == value) EraseInLeaf(at, static_cast<std::size_t>(place - values.begin()));
    }

    bool ContainsSorted(T value) const noexcept {
        const std::size_t at = SortedLeaf(value);
        return at != m_leaves.size() &&
               std::binary_search(m_leaves[at]->values.begin(), m_leaves[at]->values.end(), value);
    }

    // The first element above `value`, or T{} when there is none.
    T Above(T value) const noexcept {
        const auto leaf = std::partition_point(m_leaves.begin(), m_leaves.end(),
                                               [value](const RefPtr<Leaf>& l) { return l->largest <= value; });
        if (leaf == m_leaves.end()) return T{};
        return *std::upper_bound((*leaf)->values.begin(), (*leaf)->values.end(), value);
    }

    // Whether the two are copies of which none has changed; false says nothing.
    bool SharesAll(const ChunkedSequence& other) const noexcept {
        return std::equal(m_leaves.begin(), m_leaves.end(), other.m_leaves.begin(), other.m_leaves.end(),
                          [](const RefPtr<Leaf>& a, const RefPtr<Leaf>& b) { return a.Get() == b.Get(); });
    }

    bool operator==(const ChunkedSequence& other) const noexcept {
        if (m_size != other.m_size) return false;
        // The leaves may part the same elements in different ways.
        std::size_t leaf = 0, place = 0;
        for (const RefPtr<Leaf>& own : m_leaves)
            for (const T value : own->values) {
                if (place == other.m_leaves[leaf]->values.size()) {
                    ++leaf;
                    place = 0;
                }
                if (other.m_leaves[leaf]->values[place++] != value) return false;
            }
        return true;
    }

    template <class Visit>
    void ForEach(Visit&& visit) const {
        for (const RefPtr<Leaf>& leaf : m_leaves)
            for (const T value : leaf->values)
                visit(value);
    }

private:
    static constexpr std::size_t LeafSize = 512;

    struct Leaf {
        std::vector<T> values;
        T smallest{};
        T largest{};
        mutable std::atomic<std::uint32_t> references{0};

        Leaf() = default;
        Leaf(const Leaf& other) : values(other.values), smallest(other.smallest), largest(other.largest) {}
        void AddReference() const noexcept { references.fetch_add(1, std::memory_order_relaxed); }
        void DropReference() const noexcept {
            if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
        }
    };

    // The leaf into which an insertion at `position` goes; `position` becomes the one within the leaf.
    std::size_t LeafFor(std::size_t& position) const noexcept {
        if (position == m_size && !m_leaves.empty()) {
            position = m_leaves.back()->values.size();
            return m_leaves.size() - 1;
        }
        std::size_t at = 0;
        while (at < m_leaves.size() && position > m_leaves[at]->values.size())
            position -= m_leaves[at++]->values.size();
        return at;
    }

    Leaf& Own(std::size_t at) {
        if (m_leaves[at]->references.load(std::memory_order_acquire) != 1)
            m_leaves[at] = RefPtr<Leaf>(new Leaf(*m_leaves[at]));
        return *m_leaves[at];
    }

    void InsertInLeaf(std::size_t at, std::size_t position, T value) {
        Leaf& leaf = Own(at);
        leaf.values.insert(leaf.values.begin() + static_cast<std::ptrdiff_t>(position), value);
        leaf.smallest = std::min(leaf.smallest, value);
        leaf.largest = std::max(leaf.largest, value);
        ++m_size;
    }

    void EraseInLeaf(std::size_t at, std::size_t position) {
        if (m_leaves[at]->values.size() == 1) {
            m_leaves.erase(m_leaves.begin() + static_cast<std::ptrdiff_t>(at));
        } else {
            Leaf& leaf = Own(at);
            const T value = leaf.values[position];
            leaf.values.erase(leaf.values.begin() + static_cast<std::ptrdiff_t>(position));
            // The range stays exact, or a value that has gone would be looked for in vain.
            if (value == leaf.smallest || value == leaf.largest) SetRange(leaf);
        }
        --m_size;
    }

    // The first leaf that reaches up to `value`.
    std::size_t SortedLeaf(T value) const noexcept {
        const auto leaf = std::partition_point(m_leaves.begin(), m_leaves.end(),
                                               [value](const RefPtr<Leaf>& l) { return l->largest < value; });
        return static_cast<std::size_t>(leaf - m_leaves.begin());
    }

    // Halves a full leaf.
    void Split(std::size_t at) {
        RefPtr<Leaf> behind(new Leaf);
        Leaf& leaf = Own(at);
        const auto middle = leaf.values.begin() + static_cast<std::ptrdiff_t>(LeafSize / 2);
        behind->values.assign(middle, leaf.values.end());
        SetRange(*behind);
        m_leaves.insert(m_leaves.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(behind));
        leaf.values.erase(middle, leaf.values.end());
        SetRange(leaf);
    }

    static void SetRange(Leaf& leaf) noexcept {
        const auto [smallest, largest] = std::minmax_element(leaf.values.begin(), leaf.values.end());
        leaf.smallest = *smallest;
        leaf.largest = *largest;
    }

    std::vector<RefPtr<Leaf>> m_leaves;
    std::size_t m_size = 0;
};

}  // namespace Orin::DesignDb
