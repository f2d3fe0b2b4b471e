// From a bus label to the nets that it names.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "quillutils_export.h"

namespace Quill::BusContents {

// Yields the member nets of a bus label one at a time, in label order.
//
// A label is a list of items with "," between them. An item is
//   CLK              a net: itself. So is CLK[3], whose one index keeps its digits as they are written.
//   D[3:0]           the nets D[3], D[2], D[1], D[0]; indexes run from the first number to the last, up or down, and
//                    may be negative. Several index groups run like nested loops, the last one fastest:
//                    M[0:1][0:1] is M[0][0], M[0][1], M[1][0], M[1][1].
//   {CLK,D[1:0]}2    the list in braces as many times over as the number says, once without a number. Lists may stand
//                    in lists.
// Index groups are written in the brackets of the net limiter, square or round; the other kind of bracket is part of
// the name, and with NoLimiter (or an unknown limiter) both kinds are.
//
// Blanks around items are dropped, and items that are empty name no net. An item that has none of the forms above
// ("D[x]", "D[1:0]_N", "N{A,B}", a range beyond 64 bits) is the name of one net, as it stands. A label in which braces
// or index brackets do not pair is one member as a whole, as it stands.
//
// What an expander costs depends on the length of its label, never on the number of members: a member is made when it
// is asked for. Holds a copy of the label; borrows nothing. One thread at a time.
class QUILLUTILS_EXPORT BusLabelExpander {
public:
    // Reads the label with the limiter that is in force for the process.
    explicit BusLabelExpander(std::string_view label);

    BusLabelExpander(std::string_view label, int limiter);
    ~BusLabelExpander();

    // The next member, or nothing after the last. The text stays usable until the next call on this expander.
    std::optional<std::string_view> Next();

    // Begins again with the first member.
    void Rewind() noexcept;

    // How many members the label has from first to last; the largest value when there are more than it can say.
    std::uint64_t CountMembers() const noexcept;

    BusLabelExpander(const BusLabelExpander&) = delete;
    BusLabelExpander& operator=(const BusLabelExpander&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill::BusContents
