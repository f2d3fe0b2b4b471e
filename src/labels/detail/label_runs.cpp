#include "labels/detail/label_runs.h"

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::BusContents::detail {

void LabelRuns::Add(const StemNumber& net) {
    if (!m_runs.empty() && Grows(m_runs.back(), net)) {
        m_runs.back().last = net.number;
        ++m_runs.back().count;
    } else {
        m_runs.push_back({net.stem, net.number, net.number, net.numbered});
    }
}

bool LabelRuns::Grows(const Run& run, const StemNumber& net) const {
    if (run.stem != net.stem) return false;
    if (!run.numbered) return m_repeats == Repeats::Together && !net.numbered;
    // A run that begins with -1 does not grow, even if that number was written. One that has begun may go down to it,
    // and an empty number text then counts as -1.
    const std::int64_t step = std::int64_t{net.number} - run.last;
    return run.first != NoNumber && (step == 1 || step == -1);
}

bool AddIndexPart(LabelRuns& runs, std::string_view stem, std::string_view index, Signs signs) {
    bool added = false;
    std::size_t position = 0;
    while (position < index.size()) {
        std::size_t begin = position;
        while (begin < index.size() && !Text::IsDigit(index[begin]))
            ++begin;
        if (begin == index.size()) break;
        if (signs == Signs::Accepted && begin > position && index[begin - 1] == '-') --begin;
        const auto number = Text::ParseInt32(index.substr(begin));
        runs.Add({stem, number.value, true});
        added = true;
        position = begin + number.length;
        if (position < index.size() && (index[position] == ']' || index[position] == ')')) ++position;
    }
    if (!added) runs.Add({stem});
    return !added || position == index.size();
}

}  // namespace Quill::BusContents::detail
