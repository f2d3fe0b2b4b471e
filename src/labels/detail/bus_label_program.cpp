#include "labels/detail/bus_label_program.h"

#include <algorithm>
#include <optional>

#include "labels/detail/limiter_brackets.h"
#include "text/ascii.h"
#include "text/number.h"
#include "text/trim.h"

namespace Quill::BusContents::detail {

namespace {

constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();

constexpr std::uint64_t AddSaturated(std::uint64_t a, std::uint64_t b) {
    return a > Most - b ? Most : a + b;
}
constexpr std::uint64_t MultiplySaturated(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > Most / b ? Most : a * b;
}

std::uint64_t CountIndexes(const IndexGroup& group) {
    if (!group.range) return 1;
    const auto first = static_cast<std::uint64_t>(group.first);
    const auto last = static_cast<std::uint64_t>(group.last);
    // Unsigned, the difference is right even where the signed one would overflow.
    return AddSaturated(group.first < group.last ? last - first : first - last, 1);
}

bool IsSignedNumber(std::string_view text) {
    if (!text.empty() && text.front() == '-') text.remove_prefix(1);
    return !text.empty() && std::all_of(text.begin(), text.end(), Text::IsDigit);
}

// Reads an index group with its brackets: "[3]" or "[3:0]".
std::optional<IndexGroup> ReadGroup(std::string_view text) {
    IndexGroup group;
    group.text = text;
    const std::string_view content = text.substr(1, text.size() - 2);
    const std::size_t colon = content.find(':');
    if (colon == std::string_view::npos) {
        if (!IsSignedNumber(content)) return std::nullopt;
        return group;
    }
    const std::string_view from = content.substr(0, colon);
    const std::string_view to = content.substr(colon + 1);
    if (!IsSignedNumber(from) || !IsSignedNumber(to)) return std::nullopt;
    const auto first = Text::ParseInt64(from);
    const auto last = Text::ParseInt64(to);
    // A range that was cut off at the largest number would name other nets than the label does.
    if (!first.Ok() || !last.Ok()) return std::nullopt;
    group.range = true;
    group.first = first.value;
    group.last = last.value;
    return group;
}

class Compiler {
public:
    Compiler(std::string_view label, LimiterBrackets brackets) : m_label(label), m_brackets(brackets) {
        if (!brackets.None()) {
            m_program.open = brackets.Open();
            m_program.close = brackets.Close();
        }
    }

    LabelProgram Run() {
        m_lists.push_back({m_label.size()});
        if (PairBrackets()) {
            ReadLists();
        } else {
            AddName(m_label);
        }
        m_program.root = m_lists.front().first;
        m_program.members = m_lists.front().members;
        return std::move(m_program);
    }

private:
    struct Pair {
        std::size_t open;
        std::size_t close;
    };

    // A list whose items are being read: the label itself, or what stands in a pair of braces.
    struct List {
        std::size_t end;  // position behind its last character
        std::uint64_t times = 1;
        std::size_t resume = 0;  // where reading goes on behind the braces and their number
        std::size_t first = NoNode;
        std::size_t last = NoNode;
        std::uint64_t members = 0;  // of one run through the list
    };

    // Finds the partner of every brace and index bracket; false when one has none.
    bool PairBrackets() {
        std::vector<std::size_t> waiting;
        for (std::size_t i = 0; i < m_label.size(); ++i) {
            const char c = m_label[i];
            const bool index = !m_brackets.None();
            if (c == '{' || (index && c == m_brackets.Open())) {
                waiting.push_back(m_pairs.size());
                m_pairs.push_back({i, 0});
            } else if (c == '}' || (index && c == m_brackets.Close())) {
                const char opening = c == '}' ? '{' : m_brackets.Open();
                if (waiting.empty() || m_label[m_pairs[waiting.back()].open] != opening) return false;
                m_pairs[waiting.back()].close = i;
                waiting.pop_back();
            }
        }
        return waiting.empty();
    }

    // The partner of the bracket at `position`, or nothing when an ordinary character stands there.
    std::optional<std::size_t> Partner(std::size_t position) {
        // Positions only ever grow, so the pairs are gone through once.
        while (m_pair < m_pairs.size() && m_pairs[m_pair].open < position)
            ++m_pair;
        if (m_pair == m_pairs.size() || m_pairs[m_pair].open != position) return std::nullopt;
        return m_pairs[m_pair].close;
    }

    void ReadLists() {
        std::size_t position = 0;
        while (true) {
            const std::size_t end = m_lists.back().end;
            if (position >= end) {
                if (m_lists.size() == 1) return;
                position = CloseList();
                continue;
            }
            while (position < end && Text::BlankCharacters.find(m_label[position]) != std::string_view::npos)
                ++position;
            if (position < end && m_label[position] == '{' && OpenList(position)) {
                ++position;
                continue;
            }
            const std::size_t itemEnd = FindItemEnd(position, end);
            AddItem(Text::Trim(m_label.substr(position, itemEnd - position)));
            position = itemEnd + 1;
        }
    }

    // Begins the list in the braces that open at `position`. False when more than a number follows them.
    bool OpenList(std::size_t position) {
        const std::size_t end = m_lists.back().end;
        const std::size_t close = *Partner(position);
        std::size_t behind = close + 1;
        while (behind < end && Text::IsDigit(m_label[behind]))
            ++behind;
        List list{close};
        if (behind > close + 1) list.times = Text::ParseUInt64(m_label.substr(close + 1, behind - close - 1)).value;
        while (behind < end && Text::BlankCharacters.find(m_label[behind]) != std::string_view::npos)
            ++behind;
        if (behind < end && m_label[behind] != ',') return false;
        list.resume = behind + 1;
        m_lists.push_back(list);
        return true;
    }

    // Ends the innermost list and hands its nodes to the one around it.
    std::size_t CloseList() {
        List list = m_lists.back();
        m_lists.pop_back();
        if (list.members == 0 || list.times == 0) return list.resume;
        if (list.times > 1) {
            LabelNode& only = m_program.nodes[list.first];
            if (list.first == list.last && only.child != NoNode) {
                only.times = MultiplySaturated(only.times, list.times);
            } else {
                LabelNode repetition;
                repetition.child = list.first;
                repetition.times = list.times;
                m_program.nodes.push_back(repetition);
                list.first = list.last = m_program.nodes.size() - 1;
            }
        }
        Append(list.first, list.last, MultiplySaturated(list.members, list.times));
        return list.resume;
    }

    std::size_t FindItemEnd(std::size_t position, std::size_t end) {
        while (position < end && m_label[position] != ',') {
            if (const auto partner = Partner(position)) position = *partner;
            ++position;
        }
        return position;
    }

    void AddItem(std::string_view item) {
        if (item.empty()) return;
        if (item.front() == '{' || !AddIndexed(item)) AddName(item);
    }

    void AddName(std::string_view name) {
        LabelNode node;
        node.text = name;
        m_program.nodes.push_back(node);
        Append(m_program.nodes.size() - 1, m_program.nodes.size() - 1, 1);
    }

    // False, with nothing added, when `item` is not a name followed by index groups with a range among them.
    bool AddIndexed(std::string_view item) {
        if (m_brackets.None()) return false;
        LabelNode node;
        node.text = item.substr(0, item.find(m_brackets.Open()));
        if (node.text.empty() || node.text.size() == item.size()) return false;
        node.firstGroup = m_program.groups.size();
        std::uint64_t members = 1;
        bool ranges = false;
        std::string_view rest = item.substr(node.text.size());
        while (!rest.empty() && rest.front() == m_brackets.Open()) {
            const std::size_t length = rest.find(m_brackets.Close()) + 1;  // brackets are known to pair
            const auto group = ReadGroup(rest.substr(0, length));
            if (!group) break;
            m_program.groups.push_back(*group);
            members = MultiplySaturated(members, CountIndexes(*group));
            ranges = ranges || group->range;
            rest.remove_prefix(length);
        }
        if (!rest.empty() || !ranges) {
            m_program.groups.resize(node.firstGroup);
            return false;
        }
        node.groupCount = m_program.groups.size() - node.firstGroup;
        m_program.nodes.push_back(node);
        Append(m_program.nodes.size() - 1, m_program.nodes.size() - 1, members);
        return true;
    }

    // Puts the chain of nodes from `first` to `last` at the end of the innermost list.
    void Append(std::size_t first, std::size_t last, std::uint64_t members) {
        List& list = m_lists.back();
        if (list.first == NoNode) {
            list.first = first;
        } else {
            m_program.nodes[list.last].next = first;
        }
        list.last = last;
        list.members = AddSaturated(list.members, members);
    }

    std::string_view m_label;
    LimiterBrackets m_brackets;
    std::vector<Pair> m_pairs;  // by opening position
    std::size_t m_pair = 0;
    std::vector<List> m_lists;  // outermost first
    LabelProgram m_program;
};

}  // namespace

LabelProgram CompileBusLabel(std::string_view label, int limiter) {
    return Compiler(label, BracketsOf(limiter)).Run();
}

}  // namespace Quill::BusContents::detail
