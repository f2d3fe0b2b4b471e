// Replaces bus names by their contents, down to the nets.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "labels/bus_contents_utils.h"

namespace Quill::BusContents::detail {

// `name` without the blanks around it; a name of blanks alone stays as it is.
std::string_view TrimmedName(std::string_view name) noexcept;

// Resolves one name through contents that must outlive it. Every definition is resolved once: where it is met again,
// its part of the result is copied. So no time is lost on definitions that many others share.
class BusContentsResolver {
public:
    using Contents = std::map<std::string, std::string>;

    // What becomes of a circle of two or more buses.
    enum class Circles {
        LeaveName,  // the name that closes it stays as it is, like a bus that lists itself
        Report,
    };

    BusContentsResolver(const Contents& contents, Circles circles, std::size_t maximumLength);

    Utils::ResolvedContents Run(std::string_view name);

private:
    struct Definition {
        const Contents::value_type* entry;
        bool open = false;  // being resolved just now
        bool done = false;
        std::size_t begin = 0;  // its part of the result, once it is done
        std::size_t end = 0;
    };

    // A definition whose items are being resolved.
    struct Level {
        Definition* definition;
        std::size_t next;  // position of the next item in the contents; beyond their end when there is none
    };

    Definition* Find(std::string_view name);
    void Open(Definition& definition);
    bool ResolveItem(std::string_view item);
    bool Append(std::string_view text);
    bool AppendDone(const Definition& definition);
    void ReportCircle(const Definition& closing);

    std::unordered_map<std::string, Definition> m_definitions;  // by name in small letters
    std::string m_key;
    std::vector<Level> m_levels;  // outermost first
    Circles m_circles;
    std::size_t m_maximumLength;
    Utils::ResolvedContents m_result;
};

}  // namespace Quill::BusContents::detail
