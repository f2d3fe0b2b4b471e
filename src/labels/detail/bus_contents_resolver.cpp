#include "labels/detail/bus_contents_resolver.h"

#include <algorithm>
#include <utility>

#include "text/ascii.h"
#include "text/trim.h"

namespace Quill::BusContents::detail {

using Utils::ResolvedContents;
using Utils::ResolveStatus;

std::string_view TrimmedName(std::string_view name) noexcept {
    const std::string_view trimmed = Text::Trim(name);
    return trimmed.empty() ? name : trimmed;
}

BusContentsResolver::BusContentsResolver(const Contents& contents, Circles circles, std::size_t maximumLength)
    : m_circles(circles), m_maximumLength(maximumLength) {
    m_definitions.reserve(contents.size());
    // The first of several keys that differ in case only is the one that holds.
    for (const auto& entry : contents)
        m_definitions.try_emplace(Text::ToLower(entry.first), Definition{&entry});
}

ResolvedContents BusContentsResolver::Run(std::string_view name) {
    if (Definition* definition = Find(name)) {
        Open(*definition);
    } else {
        static_cast<void>(Append(TrimmedName(name)));
    }
    // The levels stand in for calls: users chain definitions deeper than a call stack goes.
    while (!m_levels.empty() && m_result.status == ResolveStatus::Ok) {
        Level& level = m_levels.back();
        const std::string_view contents = level.definition->entry->second;
        if (level.next > contents.size()) {
            level.definition->open = false;
            level.definition->done = true;
            level.definition->end = m_result.text.size();
            m_levels.pop_back();
            continue;
        }
        const std::size_t begin = level.next;
        const std::size_t end = std::min(contents.find(',', begin), contents.size());
        level.next = end + 1;
        if (begin > 0 && !Append(",")) break;
        if (!ResolveItem(contents.substr(begin, end - begin))) break;
    }
    if (m_result.status != ResolveStatus::Ok) m_result.text.clear();
    return std::move(m_result);
}

BusContentsResolver::Definition* BusContentsResolver::Find(std::string_view name) {
    m_key.assign(name);
    for (char& c : m_key)
        c = Text::ToLower(c);
    const auto found = m_definitions.find(m_key);
    return found == m_definitions.end() ? nullptr : &found->second;
}

void BusContentsResolver::Open(Definition& definition) {
    definition.open = true;
    definition.begin = m_result.text.size();
    m_levels.push_back({&definition, 0});
}

// False when resolving ends here; the result says why.
bool BusContentsResolver::ResolveItem(std::string_view item) {
    Definition* const definition = Find(item);
    if (definition == nullptr) return Append(TrimmedName(item));
    if (definition->done) return AppendDone(*definition);
    if (!definition->open) {
        Open(*definition);
        return true;
    }
    const bool listsItself = definition == m_levels.back().definition;
    if (listsItself || m_circles == Circles::LeaveName) return Append(item);
    ReportCircle(*definition);
    return false;
}

bool BusContentsResolver::Append(std::string_view text) {
    if (text.size() > m_maximumLength - m_result.text.size()) {
        m_result.status = ResolveStatus::TooLong;
        return false;
    }
    m_result.text += text;
    return true;
}

bool BusContentsResolver::AppendDone(const Definition& definition) {
    const std::size_t length = definition.end - definition.begin;
    if (length > m_maximumLength - m_result.text.size()) {
        m_result.status = ResolveStatus::TooLong;
        return false;
    }
    m_result.text.append(m_result.text, definition.begin, length);
    return true;
}

void BusContentsResolver::ReportCircle(const Definition& closing) {
    m_result.status = ResolveStatus::Cycle;
    const auto first = std::find_if(m_levels.begin(), m_levels.end(),
                                    [&](const Level& level) { return level.definition == &closing; });
    for (auto level = first; level != m_levels.end(); ++level) {
        m_result.cycle.push_back(level->definition->entry->first);
    }
}

}  // namespace Quill::BusContents::detail
