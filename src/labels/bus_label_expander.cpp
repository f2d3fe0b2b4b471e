#include "labels/bus_label_expander.h"

#include <string>
#include <vector>

#include "labels/detail/bus_label_program.h"
#include "labels/net_limiter.h"
#include "text/number.h"

namespace Quill::BusContents {

using detail::IndexGroup;
using detail::LabelNode;
using detail::NoNode;

class BusLabelExpander::Impl {
public:
    Impl(std::string_view label, int limiter) : m_label(label), m_program(detail::CompileBusLabel(m_label, limiter)) {
        Rewind();
    }

    void Rewind() noexcept {
        m_node = NoNode;
        m_started = false;
        m_lastRange = nullptr;
        m_repetitions.clear();
    }

    std::uint64_t CountMembers() const noexcept { return m_program.members; }

    std::optional<std::string_view> Next() {
        if (StepLastDigit()) return m_member;
        if (m_node != NoNode && StepIndexes()) return m_member;
        if (!Advance()) return std::nullopt;
        const LabelNode& node = m_program.nodes[m_node];
        m_lastRange = nullptr;
        if (node.groupCount == 0) return node.text;
        const IndexGroup& lastGroup = m_program.groups[node.firstGroup + node.groupCount - 1];
        if (lastGroup.range) m_lastRange = &lastGroup;
        m_member = node.text;
        m_indexes.resize(node.groupCount);
        AppendGroups(0);
        return m_member;
    }

private:
    struct Repetition {
        std::size_t node;
        std::uint64_t left;  // runs through its list, with the one under way
    };

    // Where the index group that is written into the member stands in it.
    struct Index {
        std::int64_t value;
        std::size_t position;
    };

    // Goes to the next node that is a name. False, staying behind the last one, when there is none.
    bool Advance() {
        if (m_node == NoNode && m_started) return false;
        std::size_t node = m_started ? m_program.nodes[m_node].next : m_program.root;
        m_started = true;
        while (node == NoNode && !m_repetitions.empty()) {
            Repetition& repetition = m_repetitions.back();
            const LabelNode& repeated = m_program.nodes[repetition.node];
            if (--repetition.left > 0) {
                node = repeated.child;
            } else {
                node = repeated.next;
                m_repetitions.pop_back();
            }
        }
        while (node != NoNode && m_program.nodes[node].child != NoNode) {
            m_repetitions.push_back({node, m_program.nodes[node].times});
            node = m_program.nodes[node].child;
        }
        m_node = node;
        return node != NoNode;
    }

    // Makes the next member where it differs from the present one in the last digit only. False, with nothing changed,
    // when it may not. Nine of ten members are made here, without a number being written out.
    bool StepLastDigit() {
        if (m_lastRange == nullptr) return false;
        Index& index = m_indexes.back();
        if (index.value == m_lastRange->last) return false;
        const bool rising = m_lastRange->first < m_lastRange->last;
        char& digit = m_member[m_member.size() - 2];  // before the closing bracket
        // Away from zero upwards or down to it: elsewhere the sign or the number of digits may change.
        if (rising ? index.value < 0 || digit == '9' : index.value <= 0 || digit == '0') return false;
        const int step = rising ? 1 : -1;
        index.value += step;
        digit = static_cast<char>(digit + step);
        return true;
    }

    // Makes the next member of the present node. False, with the member unchanged, when the last has been made.
    bool StepIndexes() {
        const LabelNode& node = m_program.nodes[m_node];
        for (std::size_t i = node.groupCount; i-- > 0;) {
            const IndexGroup& group = m_program.groups[node.firstGroup + i];
            Index& index = m_indexes[i];
            if (!group.range || index.value == group.last) continue;
            index.value += group.first < group.last ? 1 : -1;
            m_member.resize(index.position);
            AppendIndex(index.value);
            AppendGroups(i + 1);
            return true;
        }
        return false;
    }

    // Writes the groups from `from` on, each at its first index.
    void AppendGroups(std::size_t from) {
        const LabelNode& node = m_program.nodes[m_node];
        for (std::size_t i = from; i < node.groupCount; ++i) {
            const IndexGroup& group = m_program.groups[node.firstGroup + i];
            m_indexes[i] = {group.first, m_member.size()};
            if (group.range) {
                AppendIndex(group.first);
            } else {
                m_member += group.text;
            }
        }
    }

    void AppendIndex(std::int64_t value) {
        m_member += m_program.open;
        Text::AppendNumber(m_member, value);
        m_member += m_program.close;
    }

    const std::string m_label;
    const detail::LabelProgram m_program;  // views into the label
    std::size_t m_node = NoNode;           // the name whose members are under way
    bool m_started = false;
    std::vector<Repetition> m_repetitions;    // under way, outermost first
    std::vector<Index> m_indexes;             // of the present node's groups
    const IndexGroup* m_lastRange = nullptr;  // the last of these groups, when it is a range
    std::string m_member;                     // the last member made from index groups
};

BusLabelExpander::BusLabelExpander(std::string_view label) : BusLabelExpander(label, CurrentNetLimiter()) {}

BusLabelExpander::BusLabelExpander(std::string_view label, int limiter)
    : m_impl(std::make_unique<Impl>(label, limiter)) {}

BusLabelExpander::~BusLabelExpander() = default;

std::optional<std::string_view> BusLabelExpander::Next() {
    return m_impl->Next();
}

void BusLabelExpander::Rewind() noexcept {
    m_impl->Rewind();
}

std::uint64_t BusLabelExpander::CountMembers() const noexcept {
    return m_impl->CountMembers();
}

}  // namespace Quill::BusContents
