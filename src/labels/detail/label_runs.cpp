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

// Reads a net that is `stem` and one index in brackets of either kind. Numbers that may not fit are left to others.
bool ReadPlainIndex(std::string_view net, std::string_view stem, std::int32_t& number) {
    constexpr std::size_t MostDigits = 9;  // what 32 bits hold, whatever the digits are
    const std::size_t begin = stem.size() + 1;
    if (net.size() < begin + 2 || net.size() > begin + MostDigits + 1) return false;
    if (!IsOpening(net[begin - 1]) || !IsClosing(net.back())) return false;
    for (const char c : net.substr(begin, net.size() - begin - 1)) {
        if (!Text::IsDigit(c)) return false;
        number = number * 10 + (c - '0');
    }
    return net.compare(0, stem.size(), stem) == 0;
}

// Whether `net` is `last`, a net with one plain index, but for the last digit. Neighbours mostly are; this costs less
// than reading the number.
bool DiffersInLastDigit(std::string_view net, std::string_view last) {
    if (last.empty() || net.size() != last.size() || net.back() != last.back()) return false;
    const std::size_t digit = net.size() - 2;
    return Text::IsDigit(net[digit]) && net.compare(0, digit, last, 0, digit) == 0;
}

void Extend(Run& run, std::int32_t number) {
    run.last = number;
    ++run.count;
}

}  // namespace

void LabelRuns::Add(const StemNumber& net) {
    m_lastNet = {};
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
    if (m_runs.empty() || !m_runs.back().numbered) return false;
    Run& run = m_runs.back();
    std::int32_t number = 0;
    if (DiffersInLastDigit(net, m_lastNet)) {
        number = run.last + (net[net.size() - 2] - m_lastNet[m_lastNet.size() - 2]);
    } else if (!ReadPlainIndex(net, run.stem, number)) {
        return false;
    }
    m_lastNet = net;
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
