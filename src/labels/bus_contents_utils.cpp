#include "labels/bus_contents_utils.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "labels/bus_label_expander.h"
#include "labels/detail/bus_contents_resolver.h"
#include "labels/detail/label_runs.h"
#include "labels/detail/limiter_brackets.h"
#include "platform/interface_manager.h"
#include "platform/project_data.h"
#include "text/ascii.h"
#include "text/number.h"
#include "text/trim.h"

namespace Quill::BusContents::Utils {

namespace {

using detail::BusContentsResolver;
using detail::IsClosing;
using detail::IsOpening;
using detail::LabelRuns;
using detail::Repeats;
using detail::Run;
using detail::Signs;

constexpr std::size_t Unlimited = std::numeric_limits<std::size_t>::max();

constexpr bool IsIndexCharacter(char c) {
    return Text::IsDigit(c) || IsOpening(c) || IsClosing(c) || c == '.';
}
constexpr bool IsStemCharacter(char c) {
    return Text::IsLetter(c) || c == '_' || c == '|' || c == '~' || c == '.';
}

// The project's settings, borrowed from the project-data service while this object lives.
class ProjectSettings {
public:
    ProjectSettings()
        : m_factory(InterfaceManager::instance().getFactory(IProjectData::InterfaceName)),
          m_object(m_factory != nullptr ? m_factory->internalCreate() : nullptr) {}
    ~ProjectSettings() {
        if (m_factory != nullptr) m_factory->internalRelease(m_object);
    }
    ProjectSettings(const ProjectSettings&) = delete;
    ProjectSettings& operator=(const ProjectSettings&) = delete;

    // Null when there is no service or no open project.
    const IProjectSettings* Get() const {
        const auto* const data = dynamic_cast<const IProjectData*>(m_object);
        return data != nullptr ? data->getSettings() : nullptr;
    }

private:
    InterfaceFactory* m_factory;
    Interface* m_object;
};

std::string Resolve(std::string_view name, const std::map<std::string, std::string>& contents) {
    // Most labels are no bus names; they need no look-up table.
    const bool defined = std::any_of(contents.begin(), contents.end(),
                                     [&](const auto& definition) { return Text::EqualNoCase(definition.first, name); });
    if (!defined) return std::string(detail::TrimmedName(name));
    return BusContentsResolver(contents, BusContentsResolver::Circles::LeaveName, Unlimited).Run(name).text;
}

std::string ResolveInProject(std::string_view name) {
    const ProjectSettings project;
    const IProjectSettings* const settings = project.Get();
    return settings != nullptr ? Resolve(name, settings->getBusContents()) : std::string(name);
}

constexpr std::string_view TextOrEmpty(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

bool CanBeCompressed(std::string_view net) {
    const auto digit = std::find_if(net.begin(), net.end(), Text::IsDigit);
    return std::all_of(digit, net.end(), IsIndexCharacter);
}

std::size_t FindBracket(std::string_view net) {
    const auto bracket = std::find_if(net.begin(), net.end(), IsOpening);
    return bracket == net.end() ? std::string_view::npos : static_cast<std::size_t>(bracket - net.begin());
}

void AppendComma(std::string& label) {
    if (!label.empty()) label += ',';
}

// Writes a run that has a number; without brackets its numbers stand back to back.
void AppendNumbered(std::string& label, const Run& run, detail::LimiterBrackets brackets, bool bracketSingles) {
    const bool range = run.first != run.last;
    const bool bracketed = !brackets.None() && (range || bracketSingles);
    label += run.stem;
    if (bracketed) label += brackets.Open();
    Text::AppendNumber(label, run.first);
    if (range) {
        if (bracketed) label += ':';
        Text::AppendNumber(label, run.last);
    }
    if (bracketed) label += brackets.Close();
}

// Whether the label begins with a list in braces, behind which only its number stands before the end or a ",".
bool IsBundle(std::string_view label) {
    if (label.empty() || label.front() != '{') return false;
    std::size_t depth = 0;
    std::size_t position = 0;
    do {
        if (position == label.size()) return false;
        if (label[position] == '{') ++depth;
        if (label[position] == '}') --depth;
        ++position;
    } while (depth > 0);
    while (position < label.size() && Text::IsDigit(label[position]))
        ++position;
    return position == label.size() || label[position] == ',';
}

bool NamesExactly(const std::string& label, const std::list<std::string>& members, const std::string& limiterText) {
    if (!label.empty() && label.front() == '$') return members.size() == 1 && members.front() == label;
    const std::string resolved = ResolveInProject(label);
    const NetLimiterScope scope(limiterText);
    BusLabelExpander expander(resolved, scope.Limiter());
    if (expander.CountMembers() != members.size()) return false;
    return std::all_of(members.begin(), members.end(),
                       [&](const std::string& member) { return expander.Next() == member; });
}

// Takes the members of a changed bus apart as its old label does.
class MemberReader {
public:
    // Borrows the label.
    explicit MemberReader(std::string_view label) : m_label(label), m_bundle(IsBundle(label)) {
        std::size_t begin = 0;
        while (begin < label.size()) {
            const std::size_t end = std::min(label.find_first_of(",{}", begin), label.size());
            m_items.push_back(Text::Trim(label.substr(begin, end - begin)));
            begin = end + 1;
        }
        std::sort(m_items.begin(), m_items.end());
    }

    bool Bundle() const { return m_bundle; }

    // False when the member cannot be taken apart.
    bool Read(std::string_view member, LabelRuns& runs) {
        const std::size_t stem = m_bundle ? member.size() : StemLength(member);
        const std::string_view rest = member.substr(stem);
        if (!IsIndexPart(rest)) {
            runs.Add({member});
            return true;
        }
        return AddIndexPart(runs, member.substr(0, stem), rest, Signs::Accepted);
    }

private:
    static bool IsIndexPart(std::string_view text) {
        if (text.empty()) return false;
        // A "-" that no digit follows is part of a name, as in "RESET-N".
        if (text.front() == '-') return text.size() > 1 && Text::IsDigit(text[1]);
        return Text::IsDigit(text.front()) || IsOpening(text.front());
    }

    std::size_t StemLength(std::string_view member) {
        const std::size_t bracket = FindBracket(member);
        if (bracket != std::string_view::npos && LabelBegins(member.substr(0, bracket))) return bracket;
        return static_cast<std::size_t>(std::find_if_not(member.begin(), member.end(), IsStemCharacter) -
                                        member.begin());
    }

    // Whether the label or one of its items begins with `stem`.
    bool LabelBegins(std::string_view stem) {
        const auto begins = [&](std::string_view text) { return text.substr(0, stem.size()) == stem; };
        if (begins(m_label)) return true;
        // Texts that begin with the stem are not less than it and sort directly behind it.
        const auto item = std::lower_bound(m_items.begin(), m_items.end(), stem);
        return item != m_items.end() && begins(*item);
    }

    std::string_view m_label;
    bool m_bundle;
    std::vector<std::string_view> m_items;  // sorted
};

}  // namespace

int getNetLimiter() {
    const ProjectSettings project;
    const IProjectSettings* const settings = project.Get();
    return settings != nullptr ? NetLimiterFromText(settings->getNetLimiter()) : UnknownLimiter;
}

std::string resolve_bus_contents(const char* name) {
    return ResolveInProject(TextOrEmpty(name));
}

std::string resolve_bus_contents(const char* name, const std::map<std::string, std::string>& contents) {
    return Resolve(TextOrEmpty(name), contents);
}

ResolvedContents resolve_bus_contents_checked(const std::string& name,
                                              const std::map<std::string, std::string>& contents,
                                              std::size_t maximumLength) {
    return BusContentsResolver(contents, BusContentsResolver::Circles::Report, maximumLength).Run(name);
}

bool examineNet(const std::string& net) {
    return CanBeCompressed(net);
}

void splitNetName(const std::string& net, std::string& stem, std::string& index) {
    const std::size_t bracket = FindBracket(net);
    std::string head = net.substr(0, bracket);  // the outputs may be `net` itself
    if (bracket != std::string::npos) index = net.substr(bracket);
    stem = std::move(head);
}

std::string BuildBusLabel(std::vector<std::string>& members, bool bracketSingles) {
    LabelRuns runs(Repeats::Apart);
    std::vector<const std::string*> unparsed;
    for (const std::string& member : members) {
        if (runs.AddLikeLast(member)) continue;
        const std::string_view net = member;
        const std::size_t bracket = FindBracket(net);
        if (bracket == std::string_view::npos || net.find('$') != std::string_view::npos || !CanBeCompressed(net)) {
            unparsed.push_back(&member);
        } else if (!AddIndexPart(runs, net.substr(0, bracket), net.substr(bracket), Signs::Refused)) {
            return {};
        }
    }
    std::string label;
    for (const Run& run : runs.Runs()) {
        // Asked once a run: the project is the only one to know when the answer changes.
        const detail::LimiterBrackets brackets = detail::BracketsOf(getNetLimiter());
        AppendComma(label);
        if (run.numbered) {
            AppendNumbered(label, run, brackets, bracketSingles);
        } else {
            label += run.stem;
        }
    }
    for (const std::string* net : unparsed) {
        AppendComma(label);
        label += *net;
    }
    return label;
}

std::string BuildBusLabel(const std::string& oldLabel, std::list<std::string>& members, bool bracketSingles,
                          const std::string& limiterText) {
    if (NamesExactly(oldLabel, members, limiterText)) return oldLabel;
    MemberReader reader(oldLabel);
    LabelRuns runs(reader.Bundle() ? Repeats::Together : Repeats::Apart);
    for (const std::string& member : members) {
        if (!runs.AddLikeLast(member) && !reader.Read(member, runs)) return {};
    }
    std::string label;
    for (const Run& run : runs.Runs()) {
        AppendComma(label);
        if (run.numbered) {
            // Square brackets, whatever the limiter: labels of changed buses have always been stored like that.
            AppendNumbered(label, run, detail::BracketsOf(SquareLimiter), bracketSingles);
        } else if (run.count > 1) {
            label.append("{").append(run.stem).append("}");
            Text::AppendNumber(label, std::uint64_t{run.count});
        } else {
            label += run.stem;
        }
    }
    return label;
}

}  // namespace Quill::BusContents::Utils
