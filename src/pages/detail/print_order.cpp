#include "pages/detail/print_order.h"

#include <algorithm>
#include <numeric>

#include "text/number.h"

namespace Quill::detail {

namespace {

constexpr std::string_view Separators = " ./-";

}  // namespace

PrintOrder::PrintOrder(std::string_view text) : m_isEmptyText(text.empty()) {
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(Separators), text.size()));
        if (text.empty()) return;
        const std::string_view piece = text.substr(0, text.find_first_of(Separators));
        const std::int64_t value = Text::ParseInt64(piece).value;
        m_pieces.push_back({piece, value, value != 0 || piece == "0"});
        text.remove_prefix(piece.size());
    }
}

int PrintOrder::Compare(const Piece& a, const Piece& b) noexcept {
    if (a.isNumber && b.isNumber) return a.value < b.value ? -1 : a.value > b.value ? 1 : 0;
    return a.text.compare(b.text);
}

bool PrintOrder::IsBefore(const PrintOrder& other) const noexcept {
    if (m_isEmptyText) return true;
    if (other.m_isEmptyText) return false;
    const std::size_t common = std::min(m_pieces.size(), other.m_pieces.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int order = Compare(m_pieces[i], other.m_pieces[i]);
        if (order != 0) return order < 0;
    }
    return m_pieces.size() < other.m_pieces.size();
}

std::vector<std::size_t> SortByPrintOrder(const std::vector<std::string_view>& orders) {
    const std::vector<PrintOrder> parts(orders.begin(), orders.end());
    std::vector<std::size_t> sorted(orders.size());
    std::iota(sorted.begin(), sorted.end(), std::size_t{0});
    std::vector<std::size_t> merged(sorted.size());

    // Runs of doubling length are merged two by two. One comparison decides each step and no conclusion is drawn from
    // two of them, so nothing depends on the comparison being consistent.
    for (std::size_t length = 1; length < sorted.size(); length *= 2) {
        for (std::size_t begin = 0; begin < sorted.size(); begin += 2 * length) {
            const std::size_t middle = std::min(begin + length, sorted.size());
            const std::size_t end = std::min(begin + 2 * length, sorted.size());
            std::size_t left = begin;
            std::size_t right = middle;
            for (std::size_t to = begin; to < end; ++to) {
                const bool takeRight =
                    left == middle || (right < end && parts[sorted[right]].IsBefore(parts[sorted[left]]));
                merged[to] = sorted[takeRight ? right++ : left++];
            }
        }
        sorted.swap(merged);
    }
    return sorted;
}

}  // namespace Quill::detail
