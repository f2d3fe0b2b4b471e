// Print orders taken apart, compared and sorted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Quill::detail {

// A print order taken apart into its pieces. Views the text, which must outlive it.
class PrintOrder {
public:
    explicit PrintOrder(std::string_view text);

    // The comparison that RandomPageHolder::IsBefore describes. Not a strict weak order.
    bool IsBefore(const PrintOrder& other) const noexcept;

private:
    struct Piece {
        std::string_view text;
        std::int64_t value;
        bool isNumber;
    };
    static int Compare(const Piece& a, const Piece& b) noexcept;

    bool m_isEmptyText;
    std::vector<Piece> m_pieces;
};

// The places of `orders` in the order of the comparison. Texts of which none is before the other keep their places to
// each other. Takes n log n comparisons and ends with each place given once, though the comparison goes in circles.
std::vector<std::size_t> SortByPrintOrder(const std::vector<std::string_view>& orders);

}  // namespace Quill::detail
