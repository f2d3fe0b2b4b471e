#include "labels/detail/label_runs.h"

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::BusContents::detail {

namespace {

// Whether a run with numbers goes on with `number`. A run that begins with -1 does not, even if that number was
// written. One that has begun may go down to it, and an empty number text then counts as -1.
bool GoesOn(const Run& run, std::int32_t number) {
    const std::int64_t step = std::int64_t{number} - run.last;
    return run.first != NoNumber && (step == 1 || step == -1);
}

void Extend(Run& run, std::int32_t number) {
    run.last = number;
    ++run.count;
}

}  // namespace

void LabelRuns::Add(const StemNumber& net) {
    if (!m_runs.empty() && Grows(m_runs.back(), net)) {
        Extend(m_runs.back(), net.number);
    } else {
        m_runs.push_back({net.stem, net.number, net.number, net.numbered});
    }
}

bool LabelRuns::Grows(const Run& run, const StemNumber& net) const {
    if (run.stem != net.stem) return false;
    if (!run.numbered) return m_repeats == Repeats::Together && !net.numbered;
    return GoesOn(run, net.number);
}

bool LabelRuns::AddLikeLast(std::string_view net) {
    constexpr std::size_t MostDigits = 9;  // what 32 bits hold, whatever the digits are
    if (m_runs.empty() || !m_runs.back().numbered) return false;
    Run& run = m_runs.back();
    const std::size_t stem = run.stem.size();
    if (net.size() < stem + 3 || net.size() > stem + 2 + MostDigits) return false;
    if (!IsOpening(net[stem]) || !IsClosing(net.back())) return false;
    std::int32_t number = 0;
    for (std::size_t i = stem + 1; i + 1 < net.size(); ++i) {
        if (!Text::IsDigit(net[i])) return false;
        number = number * 10 + (net[i] - '0');
    }
    if (net.compare(0, stem, run.stem) != 0) return false;
    if (GoesOn(run, number)) {
        Extend(run, number);
    } else {
        m_runs.push_back({run.stem, number, number, true});
    }
    return true;
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
        if (position < index.size() && IsClosing(index[position])) ++position;
    }
    if (!added) runs.Add({stem});
    return !added || position == index.size();
}

}  // namespace Quill::BusContents::detail
