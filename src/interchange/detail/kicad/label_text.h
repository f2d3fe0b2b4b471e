// Label texts of KiCad schematics in the label grammar of this library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Quill::Interchange::Kicad {

// Bus aliases: from a name to its members as the file has them.
using BusAliases = std::map<std::string, std::vector<std::string>, std::less<>>;

enum class LabelKind {
    Plain,   // names one net
    Vector,  // D[7..0]
    Group,   // P{A D[7..0] ALIAS}
};

// Why a bus label comes out as it was read.
enum class LabelProblem {
    None,
    NoMembers,      // an empty group
    Unwritable,     // a member that the grammar here cannot tell from something else, as "A[" in a list
    AliasInItself,  // an alias that is a member of itself, at whatever remove
    TooLarge,       // beyond the limits below
};

// A label that would name more nets, or whose list would be longer, is not translated. Real buses stay far below; files
// that were made to exhaust memory do not.
inline constexpr std::size_t MostLabelMembers = 65'536;
inline constexpr std::size_t LongestMemberList = 65'536;  // bytes

// What all lists of one import may cost together, in items looked at and bytes written; each function below takes its
// share off, one label no more than four times the length above. When it is used up, the next groups count as too
// large.
struct LabelBudget {
    std::size_t left = std::size_t{1} << 26;
};

// What kind of label KiCad takes the text for. A range of one ("D[3..3]") is no vector, braces that hold an escape
// ("{slash}") or follow "~", "_", "^", "$" or "@" make no group.
LabelKind ClassifyLabel(std::string_view text);

// The buses whose members have a bracket form: which numbers stand behind which stem.
//
// Adding costs the length of the label and of the aliases in it; the members of a vector are never gone through.
class KnownBuses {
public:
    // Takes in the vectors of a bus label in KiCad's form: "D[7..0]", "P{D[7..0] ALIAS}". A plain label, and one that
    // cannot be translated, adds nothing.
    void Add(std::string_view text, const BusAliases& aliases, LabelBudget& budget);

    // The bracket form of a translated label that is a member of one of the buses, "D[3]" for "D3"; any other text as
    // it is, "D03" too. Where several stems fit ("D1" and "D" for "D12") the shortest one holds.
    std::string WithBrackets(std::string_view label) const;

    // The members from stem + lowest to stem + highest.
    void AddRange(std::string_view stem, std::uint64_t lowest, std::uint64_t highest);

private:
    // By stem: disjoint ranges, from the lowest number to the highest.
    std::map<std::string, std::map<std::uint64_t, std::uint64_t>, std::less<>> m_ranges;
};

struct TranslatedLabel {
    std::string text;
    LabelKind kind = LabelKind::Plain;
    LabelProblem problem = LabelProblem::None;  // of a bus label; with one, `text` is the text as read
};

// The label in the grammar of this library, for the net limiter "[]".
//
//   D[7..0]          D[7:0]; a range that does not end the label, or has no stem, is written out: D7P,D6P,...
//   P{A D[7..0]}     P.A,P.D[7:0]; aliases are written out in their place, nothing is prefixed without "P"
//   D3               D[3] when that is a member of one of `buses`, also within groups
//   ~{RESET}         ~RESET
//   A{slash}B        A/B; {comma}, {backslash} and {brace} stay, and a plain comma or backslash becomes its escape,
//                    since a list of nets or a level of the hierarchy is not what KiCad means by it
//   CK_{p} X^{2} ${V} as they are
//
// Braces that do not pair leave the text as it is. As in KiCad an alias counts only as an item of a group, and one
// that is named by an alias is a net; what follows the closing brace of a group has no meaning. Groups within aliases
// put their prefixes behind one another. The time taken grows with the text and the result, within the limits above.
TranslatedLabel TranslateLabel(std::string_view text, const BusAliases& aliases, const KnownBuses& buses,
                               LabelBudget& budget);

// The aliases as bus contents (see resolve_bus_contents): each name with its members as translated labels. No member
// is resolved any further there, so there are no circles: one that bears the name of an alias is put in braces, which
// keep it the name of a net. An alias that cannot be written (see LabelProblem) is left out.
std::map<std::string, std::string> TranslateAliases(const BusAliases& aliases, const KnownBuses& buses,
                                                    LabelBudget& budget);

}  // namespace Quill::Interchange::Kicad
