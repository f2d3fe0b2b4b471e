// Damaged files, for what reads files of any content.
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace Tests {

// The text with one to four changes at random: parts cut off, taken out, doubled or written over, one of the pieces put
// in, a byte or bit changed. A text that keeps its size is written over only.
inline std::string Damaged(std::string text, std::mt19937& random, const std::vector<std::string>& pieces,
                           bool keepsSize = false) {
    const auto below = [&random](std::size_t bound) { return random() % std::max<std::size_t>(bound, 1); };
    for (std::size_t edits = 1 + below(4); edits > 0; --edits) {
        std::size_t at = below(text.size());
        for (int tries = 0; text[at] == 0 && tries < 200; ++tries)
            at = below(text.size());  // the pages of a database hold more air than rows
        const std::size_t length = below(below(8) == 0 ? 400 : 12);
        const std::string changes[] = {"",
                                       text.substr(below(text.size()), length),
                                       pieces[below(pieces.size())],
                                       std::string(1, static_cast<char>(random())),
                                       std::string(1, static_cast<char>(text[at] ^ 1 << below(8))),
                                       std::string(length, below(2) == 0 ? '\0' : '\xFF')};
        const std::string& change = changes[below(std::size(changes))];
        if (keepsSize)
            text.replace(at, change.size(), change, 0, text.size() - at);
        else if (below(8) == 0)
            text.resize(at);
        else
            text.replace(at, below(2) == 0 ? length : 0, change);
    }
    return text;
}

}  // namespace Tests
