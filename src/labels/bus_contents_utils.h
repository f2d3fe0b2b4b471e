// Bus labels and the contents of named buses: compact labels out of member nets, and nets out of bus names.
#pragma once

#include <cstddef>
#include <limits>
#include <list>
#include <map>
#include <string>
#include <vector>

#include "labels/net_limiter.h"
#include "quillutils_export.h"

// Stateless but for the limiter in force (labels/net_limiter.h). Any thread, where nothing else is said. What concerns
// the project is read from the project-data service (platform/project_data.h) anew on every call and given back at
// once; what that service throws passes through. No function throws for a bad name.
namespace Quill::BusContents::Utils {

// The bracket style of the project's bus indexes: NoLimiter, SquareLimiter or RoundLimiter; UnknownLimiter when the
// project has another one, or there is no project.
QUILLUTILS_EXPORT int getNetLimiter();

// What bus `name` stands for in the project, by the form below. Without a project `name` as it is, blanks included.
// A null name counts as an empty one.
QUILLUTILS_EXPORT std::string resolve_bus_contents(const char* name);

// What bus `name` stands for: a comma-separated list in which every item that is itself a bus is replaced by its
// contents, and so on. The case of letters does not count; of keys that differ in nothing else the first one holds.
// A name that is no key comes out without the blanks around it, but a name of blanks alone as it is. Items are looked
// up with their blanks: " A" is not the bus "A". An empty item comes out empty and keeps its comma.
//
// A bus may list itself; that item stays as it is. Contents in which two or more buses list each other in a circle
// must not be given, and are not reported: see the checked form. The time taken grows with the contents and the
// result, whatever the depth of the definitions; the result can be exponentially longer than the contents.
QUILLUTILS_EXPORT std::string resolve_bus_contents(const char* name,
                                                   const std::map<std::string, std::string>& contents);

// What became of a checked resolution.
enum class ResolveStatus {
    Ok,
    Cycle,    // buses that list each other in a circle
    TooLong,  // the result would be longer than was allowed
};

// What a checked resolution gives.
struct ResolvedContents {
    ResolveStatus status = ResolveStatus::Ok;
    std::string text;                // the contents; empty unless the status is Ok
    std::vector<std::string> cycle;  // with Cycle: keys, each of which lists the next one and the last the first
};

// The same for contents that a user may have written: reports what the plain form must not be given. Where a circle
// and an overlong result meet, the one that comes first in reading order is reported.
QUILLUTILS_EXPORT ResolvedContents
resolve_bus_contents_checked(const std::string& name, const std::map<std::string, std::string>& contents,
                             std::size_t maximumLength = std::numeric_limits<std::size_t>::max());

// Whether the net can be a member of a label with ranges: from its first digit on it holds nothing but digits,
// "[", "]", "(", ")" and "." - so a name without a digit can.
QUILLUTILS_EXPORT bool examineNet(const std::string& net);

// Splits before the first "[" or "(": the text before it goes to `stem`, the rest with the bracket to `index`. A name
// without a bracket goes to `stem` whole, and `index` stays as it is.
QUILLUTILS_EXPORT void splitNetName(const std::string& net, std::string& stem, std::string& index);

// The compact label of a list of nets, in the project's brackets. `members` is left as it is.
//
// Nets keep their order; neighbours with one stem, whose numbers are 1 apart, become a range, also where the
// direction turns (3, 4, 3 gives 3). Nets with a "$", without a bracket or failing examineNet come last, as they are.
// A range is "A[0:3]" or "A(0:3)"; with any other limiter the two numbers stand back to back, "A03". A single net
// is "A[7]" or "A(7)" when `bracketSingles`, else "A7". A net with several numbers counts once for each, one with
// empty brackets gives its stem, and counts as number -1 where it follows a number. Numbers are of 32 bits and
// saturate. When anything follows the last number of an index part (and one closing bracket), as in "A[3].", the result
// is empty.
QUILLUTILS_EXPORT std::string BuildBusLabel(std::vector<std::string>& members, bool bracketSingles);

// The label of a bus whose members may have changed: `oldLabel` itself when it still names exactly `members`, read in
// the brackets that `limiterText` ("", "[]", "()") stands for, else a new label. `members` is left as it is. A text
// that stands for no limiter leaves the one in force. One call at a time in the process, since the limiter is put in
// force for all of it meanwhile; the function does not see to that.
//
// An old label is resolved through the project's bus contents before it is read; one that begins with "$" is a single
// net. In a new label the stem of a member is what stands before its bracket when an item of the old label begins
// with that too; otherwise its first letters and "_", "|", "~", ".". What follows the stem is an index part when it
// begins with a bracket, a digit, or a "-" and a digit; a member that has none is all stem and stands alone. Ranges
// form as above but are always written "A[0:3]". When the old label is a bundle, "{...}k", members are never taken
// apart, and k equal neighbours are written "{A}k". The result is empty where that of the first form would be.
QUILLUTILS_EXPORT std::string BuildBusLabel(const std::string& oldLabel, std::list<std::string>& members,
                                            bool bracketSingles, const std::string& limiterText);

}  // namespace Quill::BusContents::Utils
