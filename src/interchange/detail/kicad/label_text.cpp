#include "interchange/detail/kicad/label_text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

struct LabelEscape {
    std::string_view text;
    std::string_view becomes;
};

constexpr std::array<LabelEscape, 14> LabelEscapes{{
    {"{dblquote}", "\""},
    {"{quote}", "'"},
    {"{lt}", "<"},
    {"{gt}", ">"},
    {"{backslash}", "{backslash}"},
    {"{slash}", "/"},
    {"{bar}", "|"},
    {"{comma}", "{comma}"},
    {"{colon}", ":"},
    {"{space}", " "},
    {"{dollar}", "$"},
    {"{tab}", "\t"},
    {"{return}", "\n"},
    {"{brace}", "{brace}"},
}};

constexpr std::string_view OverbarSubSuperscript = "~_^";
constexpr std::string_view Variable = "$@";

bool Follows(std::string_view text, std::size_t position, std::string_view marks) {
    return position > 0 && marks.find(text[position - 1]) != std::string_view::npos;
}

// Whether the brace at `position` belongs to the mark before it, as in "~{X}".
bool IsMarkBrace(std::string_view text, std::size_t position) {
    return Follows(text, position, OverbarSubSuperscript) || Follows(text, position, Variable);
}

// The escape at `position`, or null.
const LabelEscape* EscapeAt(std::string_view text, std::size_t position) {
    if (text[position] != '{' || IsMarkBrace(text, position)) return nullptr;
    const std::string_view rest = text.substr(position);
    for (const LabelEscape& escape : LabelEscapes) {
        if (rest.substr(0, escape.text.size()) == escape.text) return &escape;
    }
    return nullptr;
}

// How many bytes the character at `position` takes: an escape is one character.
std::size_t CharacterLength(std::string_view text, std::size_t position) {
    const LabelEscape* escape = EscapeAt(text, position);
    return escape ? escape->text.size() : 1;
}

// The label of one net; nothing when braces do not pair.
std::optional<std::string> TranslatePlain(std::string_view text) {
    enum class Brace { Kept, Dropped, Raw };
    std::string result;
    std::vector<Brace> open;
    std::size_t raw = 0;  // how many of them are Raw: all between them stays as it is
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '{') {
            const LabelEscape* escape = raw == 0 ? EscapeAt(text, i) : nullptr;
            if (escape) {
                result += escape->becomes;
                i += escape->text.size() - 1;
                continue;
            }
            Brace brace = Brace::Kept;
            if (raw > 0 || Follows(text, i, Variable)) {
                brace = Brace::Raw;
                ++raw;
            } else if (Follows(text, i, "~") && i + 1 < text.size() && text[i + 1] != '}') {
                brace = Brace::Dropped;
            }
            open.push_back(brace);
            if (brace != Brace::Dropped) result += c;
        } else if (c == '}') {
            if (open.empty()) return std::nullopt;
            if (open.back() == Brace::Raw) --raw;
            if (open.back() != Brace::Dropped) result += c;
            open.pop_back();
        } else if (c == ',' && raw == 0) {
            result += "{comma}";
        } else if (c == '\\' && raw == 0) {
            result += "{backslash}";
        } else {
            result += c;
        }
    }
    if (!open.empty()) return std::nullopt;
    return result;
}

struct VectorParts {
    std::string_view stem;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::string_view suffix;
};

// Reads digits at `position`, which moves behind them; nothing when there are none or too many.
std::optional<std::uint64_t> ReadIndex(std::string_view text, std::size_t& position) {
    if (position >= text.size() || !Text::IsDigit(text[position])) return std::nullopt;
    const auto number = Text::ParseUInt64(text.substr(position));
    if (!number.Ok()) return std::nullopt;
    position += number.length;
    return number.value;
}

std::optional<VectorParts> ParseVector(std::string_view text) {
    VectorParts parts;
    std::size_t nesting = 0;
    std::size_t i = 0;
    for (; i < text.size() && text[i] != '['; i += CharacterLength(text, i)) {
        const char c = text[i];
        if (c == ' ' || c == ']') return std::nullopt;
        if (c == '{' && !EscapeAt(text, i)) {
            if (!IsMarkBrace(text, i)) return std::nullopt;
            ++nesting;
        } else if (c == '}' && nesting-- == 0) {
            return std::nullopt;
        }
    }
    if (i >= text.size()) return std::nullopt;
    parts.stem = text.substr(0, i++);
    const auto first = ReadIndex(text, i);
    if (!first || text.substr(i, 2) != "..") return std::nullopt;
    i += 2;
    const auto last = ReadIndex(text, i);
    if (!last || text.substr(i, 1) != "]" || *first == *last) return std::nullopt;
    parts.first = *first;
    parts.last = *last;
    parts.suffix = text.substr(i + 1);
    // Nothing else may follow: the halves of differential pairs, and the ends of marks.
    if (parts.suffix.find_first_not_of("+-PN}") != std::string_view::npos) return std::nullopt;
    const auto closed = static_cast<std::size_t>(std::count(parts.suffix.begin(), parts.suffix.end(), '}'));
    if (closed != nesting) return std::nullopt;
    return parts;
}

struct GroupParts {
    std::string_view prefix;
    std::string_view body;
};

std::optional<GroupParts> ParseGroup(std::string_view text) {
    GroupParts parts;
    std::size_t nesting = 0;
    std::size_t i = 0;
    for (; i < text.size(); i += CharacterLength(text, i)) {
        const char c = text[i];
        if (c == '{' && !EscapeAt(text, i)) {
            if (!IsMarkBrace(text, i)) break;
            ++nesting;
        } else if ((c == '}' && nesting-- == 0) || c == ' ' || c == '[' || c == ']') {
            return std::nullopt;
        }
    }
    if (i >= text.size() || nesting != 0) return std::nullopt;
    parts.prefix = text.substr(0, i++);
    for (std::size_t begin = i; i < text.size(); i += CharacterLength(text, i)) {
        if (text[i] == '{' && !EscapeAt(text, i)) {
            if (!IsMarkBrace(text, i)) return std::nullopt;
            ++nesting;
        } else if (text[i] == '}' && nesting-- == 0) {
            parts.body = text.substr(begin, i - begin);
            return parts;
        }
    }
    return std::nullopt;
}

// Takes what a label names, in order.
class MemberSink {
public:
    virtual LabelProblem Net(std::string&& name) = 0;
    // The nets stem + number + suffix.
    virtual LabelProblem Vector(std::string&& stem, std::uint64_t first, std::uint64_t last, std::string&& suffix) = 0;

    MemberSink() = default;
    MemberSink(const MemberSink&) = delete;
    MemberSink& operator=(const MemberSink&) = delete;

protected:
    ~MemberSink() = default;
};

// Goes through what a label or an alias names, writing out aliases.
class MemberWalk {
public:
    MemberWalk(const BusAliases& aliases, MemberSink& sink, LabelBudget& budget)
        : m_aliases(aliases), m_sink(sink), m_budget(budget) {}

    LabelProblem Label(std::string_view text) { return Finish(Visit(text, {})); }
    LabelProblem Alias(BusAliases::const_iterator alias) { return Finish(OpenAlias(alias, {})); }

private:
    // A list that is being gone through: the body of a group, or the members of an alias.
    struct List {
        std::string prefix;
        std::string_view body;
        BusAliases::const_iterator alias;
        bool isAlias = false;
        std::size_t next = 0;  // position in the body, or place among the members
    };

    LabelProblem Finish(LabelProblem problem) {
        while (problem == LabelProblem::None && !m_lists.empty())
            problem = Step();
        return problem;
    }

    bool Spend(std::size_t cost) {
        // Far more than a list within the limits takes: one label must not use up what is there for all.
        constexpr std::size_t MostOfOneLabel = 4 * LongestMemberList;
        m_spent += cost;
        if (m_spent > MostOfOneLabel || cost > m_budget.left) return false;
        m_budget.left -= cost;
        return true;
    }

    LabelProblem Step() {
        List& list = m_lists.back();
        if (list.isAlias) {
            const std::vector<std::string>& members = list.alias->second;
            if (list.next == members.size()) {
                m_open.erase(&list.alias->first);
                m_lists.pop_back();
                return LabelProblem::None;
            }
            const std::string& member = members[list.next++];
            // A copy of the prefix, since the list may move when another one is opened inside it.
            return member.empty() ? LabelProblem::None : Visit(member, std::string(list.prefix));
        }
        std::size_t end = list.next;
        while (end < list.body.size() && list.body[end] != ' ' && list.body[end] != ',')
            end += CharacterLength(list.body, end);
        const std::string_view item = list.body.substr(list.next, end - list.next);
        if (end >= list.body.size() && item.empty()) {
            m_lists.pop_back();
            return LabelProblem::None;
        }
        list.next = std::min(end + 1, list.body.size());
        if (item.empty()) return LabelProblem::None;
        std::string prefix = list.prefix;
        const auto alias = m_aliases.find(item);
        return alias != m_aliases.end() ? OpenAlias(alias, std::move(prefix)) : Visit(item, std::move(prefix));
    }

    LabelProblem OpenAlias(BusAliases::const_iterator alias, std::string&& prefix) {
        if (!Spend(prefix.size() + 1)) return LabelProblem::TooLarge;
        if (!m_open.insert(&alias->first).second) return LabelProblem::AliasInItself;
        m_lists.push_back({std::move(prefix), {}, alias, true});
        return LabelProblem::None;
    }

    LabelProblem Visit(std::string_view text, std::string&& prefix) {
        if (!Spend(prefix.size() + text.size() + 1)) return LabelProblem::TooLarge;
        if (const auto vector = ParseVector(text)) return VisitVector(*vector, std::move(prefix));
        if (const auto group = ParseGroup(text)) {
            const auto own = TranslatePlain(group->prefix);
            if (!own) return LabelProblem::Unwritable;
            if (!own->empty()) prefix += *own + '.';
            m_lists.push_back({std::move(prefix), group->body, {}});
            return LabelProblem::None;
        }
        auto name = TranslatePlain(text);
        if (!name) return LabelProblem::Unwritable;
        return m_sink.Net(std::move(prefix += *name));
    }

    LabelProblem VisitVector(const VectorParts& vector, std::string&& prefix) {
        // Marks may begin before the number and end behind it, so both sides are translated as one text.
        const auto whole = TranslatePlain(std::string(vector.stem) + ']' + std::string(vector.suffix));
        if (!whole) return LabelProblem::Unwritable;
        const std::size_t number = whole->find(']');
        return m_sink.Vector(std::move(prefix += whole->substr(0, number)), vector.first, vector.last,
                             whole->substr(number + 1));
    }

    const BusAliases& m_aliases;
    MemberSink& m_sink;
    LabelBudget& m_budget;
    std::vector<List> m_lists;            // innermost last
    std::set<const std::string*> m_open;  // names of the aliases among them
    std::size_t m_spent = 0;
};

class RangeCollector final : public MemberSink {
public:
    LabelProblem Net(std::string&&) override { return LabelProblem::None; }
    LabelProblem Vector(std::string&& stem, std::uint64_t first, std::uint64_t last, std::string&& suffix) override {
        if (suffix.empty() && !stem.empty()) ranges.emplace_back(std::move(stem), std::minmax(first, last));
        return LabelProblem::None;
    }

    std::vector<std::pair<std::string, std::pair<std::uint64_t, std::uint64_t>>> ranges;
};

using AliasNames = std::set<std::string_view, Text::LessNoCase>;

class ListWriter final : public MemberSink {
public:
    // Items that bear one of the names in `aliases` are put in braces.
    ListWriter(const KnownBuses& buses, LabelBudget& budget, const AliasNames& aliases)
        : m_buses(buses), m_budget(budget), m_aliases(aliases) {}

    std::string text;

    LabelProblem Net(std::string&& name) override {
        const auto opening = std::count(name.begin(), name.end(), '[');
        // An open bracket would take in the items behind it.
        if (OpensList(name) || opening != std::count(name.begin(), name.end(), ']')) return LabelProblem::Unwritable;
        return Append(m_buses.WithBrackets(name), 1);
    }

    LabelProblem Vector(std::string&& stem, std::uint64_t first, std::uint64_t last, std::string&& suffix) override {
        const std::uint64_t steps = first < last ? last - first : first - last;
        if (steps >= MostLabelMembers) return LabelProblem::TooLarge;
        if (OpensList(stem)) return LabelProblem::Unwritable;
        if (suffix.empty() && !stem.empty()) {
            std::string item = std::move(stem) + '[';
            Text::AppendNumber(item, first);
            item += ':';
            Text::AppendNumber(item, last);
            item += ']';
            return Append(item, steps + 1);
        }
        LabelProblem problem = LabelProblem::None;
        for (std::uint64_t i = 0; i <= steps && problem == LabelProblem::None; ++i) {
            std::string item = stem;
            Text::AppendNumber(item, first < last ? first + i : first - i);
            problem = Append(item + suffix, 1);
        }
        return problem;
    }

private:
    static bool OpensList(std::string_view item) { return !item.empty() && item.front() == '{'; }

    LabelProblem Append(const std::string& item, std::uint64_t members) {
        m_members += members;
        const std::size_t cost = item.size() + 3;
        if (m_members > MostLabelMembers || cost > LongestMemberList - text.size() || cost > m_budget.left) {
            return LabelProblem::TooLarge;
        }
        m_budget.left -= cost;
        if (!text.empty()) text += ',';
        text += m_aliases.count(item) != 0 ? '{' + item + '}' : item;
        return LabelProblem::None;
    }

    const KnownBuses& m_buses;
    LabelBudget& m_budget;
    const AliasNames& m_aliases;
    std::uint64_t m_members = 0;
};

}  // namespace

LabelKind ClassifyLabel(std::string_view text) {
    if (ParseVector(text)) return LabelKind::Vector;
    return ParseGroup(text) ? LabelKind::Group : LabelKind::Plain;
}

void KnownBuses::Add(std::string_view text, const BusAliases& aliases, LabelBudget& budget) {
    if (ClassifyLabel(text) == LabelKind::Plain) return;
    RangeCollector collector;
    if (MemberWalk(aliases, collector, budget).Label(text) != LabelProblem::None) return;
    for (const auto& [stem, range] : collector.ranges) {
        if (range.second - range.first < MostLabelMembers) AddRange(stem, range.first, range.second);
    }
}

void KnownBuses::AddRange(std::string_view stem, std::uint64_t lowest, std::uint64_t highest) {
    auto entry = m_ranges.find(stem);
    if (entry == m_ranges.end()) entry = m_ranges.try_emplace(std::string(stem)).first;
    auto& ranges = entry->second;
    // What overlaps the new range goes into it, so that a number lies in one range at most.
    auto at = ranges.upper_bound(highest);
    while (at != ranges.begin() && std::prev(at)->second >= lowest) {
        --at;
        lowest = std::min(lowest, at->first);
        highest = std::max(highest, at->second);
        at = ranges.erase(at);
    }
    ranges.emplace(lowest, highest);
}

std::string KnownBuses::WithBrackets(std::string_view label) const {
    constexpr std::size_t MostDigits = 20;
    std::size_t digits = 0;
    while (digits < MostDigits && digits + 1 < label.size() && Text::IsDigit(label[label.size() - digits - 1]))
        ++digits;
    for (; digits > 0; --digits) {
        const std::string_view index = label.substr(label.size() - digits);
        const std::string_view stem = label.substr(0, label.size() - digits);
        const auto number = Text::ParseUInt64(index);
        // "D03" is not the member 3 of D.
        if ((index.front() == '0' && digits > 1) || !number.Ok()) continue;
        const auto ranges = m_ranges.find(stem);
        if (ranges == m_ranges.end()) continue;
        const auto behind = ranges->second.upper_bound(number.value);
        if (behind == ranges->second.begin() || std::prev(behind)->second < number.value) continue;
        return std::string(stem) + '[' + std::string(index) + ']';
    }
    return std::string(label);
}

TranslatedLabel TranslateLabel(std::string_view text, const BusAliases& aliases, const KnownBuses& buses,
                               LabelBudget& budget) {
    TranslatedLabel result;
    result.kind = ClassifyLabel(text);
    if (result.kind == LabelKind::Plain) {
        const auto plain = TranslatePlain(text);
        result.text = plain ? buses.WithBrackets(*plain) : std::string(text);
        return result;
    }
    const AliasNames none;
    ListWriter writer(buses, budget, none);
    result.problem = MemberWalk(aliases, writer, budget).Label(text);
    if (result.problem == LabelProblem::None && writer.text.empty()) result.problem = LabelProblem::NoMembers;
    result.text = result.problem == LabelProblem::None ? std::move(writer.text) : std::string(text);
    return result;
}

std::map<std::string, std::string> TranslateAliases(const BusAliases& aliases, const KnownBuses& buses,
                                                    LabelBudget& budget) {
    AliasNames names;
    for (const auto& alias : aliases)
        names.insert(alias.first);
    std::map<std::string, std::string> contents;
    for (auto alias = aliases.begin(); alias != aliases.end(); ++alias) {
        ListWriter writer(buses, budget, names);
        if (MemberWalk(aliases, writer, budget).Alias(alias) != LabelProblem::None || writer.text.empty()) continue;
        contents.emplace(alias->first, std::move(writer.text));
    }
    return contents;
}

}  // namespace Quill::Interchange::Kicad
