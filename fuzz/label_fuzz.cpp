// Any text as a bus label, as a net label and as the contents of buses.
#include <algorithm>
#include <list>
#include <map>

#include "fuzz/fuzz.h"
#include "labels/bus_contents_utils.h"
#include "labels/bus_label_expander.h"
#include "labels/label_utils.h"

namespace {

using namespace Quill;
using namespace Quill::BusContents;
using Fuzz::Require;

void CheckExpander(const std::string& label, int limiter) {
    constexpr std::uint64_t Enough = 2000;
    BusLabelExpander expander(label, limiter);
    const std::uint64_t count = expander.CountMembers();
    std::string first;
    std::uint64_t members = 0;
    while (members < Enough) {
        const std::optional<std::string_view> member = expander.Next();
        if (!member) break;
        Require(!member->empty());
        if (members++ == 0) first = *member;
    }
    Require(members == std::min(count, Enough));
    expander.Rewind();
    const std::optional<std::string_view> again = expander.Next();
    Require(again.has_value() == (count != 0) && again.value_or("") == first);
}

void CheckInversion(std::string label) {
    static_cast<void>(LabelValidationUtils::IslabelValid(label));
    static_cast<void>(LabelValidationUtils::IsNetLabelValid(label));
    Require(LabelInversionUtils::Set(label, true) && LabelInversionUtils::Get(label));
    Require(!LabelInversionUtils::IsPartial(label));
    Require(LabelInversionUtils::Set(label, false) && label.find('~') == std::string::npos);
}

// The first line names a bus, the others are "bus=contents".
void CheckContents(const std::vector<std::string>& lines) {
    std::map<std::string, std::string> contents;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::size_t equals = std::min(lines[i].find('='), lines[i].size());
        contents[lines[i].substr(0, equals)] = lines[i].substr(std::min(equals + 1, lines[i].size()));
    }
    const BusContents::Utils::ResolvedContents resolved =
        BusContents::Utils::resolve_bus_contents_checked(lines[0], contents, 10000);
    if (resolved.status == BusContents::Utils::ResolveStatus::Ok)
        Require(BusContents::Utils::resolve_bus_contents(lines[0].c_str(), contents) == resolved.text ||
                lines[0].find('\0') != std::string::npos);
    Require((resolved.status == BusContents::Utils::ResolveStatus::Cycle) == !resolved.cycle.empty());
    for (std::size_t i = 0; i < resolved.cycle.size(); ++i)
        Require(contents.count(resolved.cycle[i]) != 0);
}

void CheckBuiltLabels(const std::vector<std::string>& lines, int limiter) {
    const char* const limiters[] = {"", "[]", "()", "?"};
    std::vector<std::string> members(lines.begin() + 1, lines.end());
    const std::vector<std::string> before = members;
    std::list<std::string> listed(before.begin(), before.end());
    for (const bool brackets : {false, true}) {
        static_cast<void>(BusContents::Utils::BuildBusLabel(members, brackets));
        static_cast<void>(BusContents::Utils::BuildBusLabel(lines[0], listed, brackets, limiters[limiter + 1]));
    }
    Require(members == before && std::equal(listed.begin(), listed.end(), before.begin(), before.end()));
    for (const std::string& member : before) {
        std::string stem, index;
        BusContents::Utils::splitNetName(member, stem, index);
        Require(stem + index == member);
        static_cast<void>(BusContents::Utils::examineNet(member));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> lines = Fuzz::Lines(Fuzz::Text(data, size), 1);
    for (int limiter = UnknownLimiter; limiter <= RoundLimiter; ++limiter) {
        CheckExpander(lines[0], limiter);
        CheckBuiltLabels(lines, limiter);
    }
    CheckInversion(lines[0]);
    CheckContents(lines);
    return 0;
}
