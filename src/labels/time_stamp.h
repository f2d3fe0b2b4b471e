// Date stamps of blocks and symbols: which of two copies is the newer one.
#pragma once

#include <cstdint>
#include <string>

#include "orin/design_objects.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Static operations only; any thread may call. A stamp is a text in one of three forms:
//     ""                        no stamp
//     "1700000000"              raw: seconds since 1970 UTC, no ":" in it
//     "9:05:07_3-14-24"         formatted: hour:minute:second_month-day-year in UTC, months from 1, the year counted
//                               from 2000 (before it from 1900); hour and month without leading zeros
// It is kept as an internal property of a sheet group, or of a symbol among its system attributes.
class QUILLUTILS_EXPORT time_stamp {
public:
    enum mode : int { formatted = 0, raw = 1 };  // any value but 1 counts as formatted

    // The stamp of this moment, in whole seconds.
    static std::string current(mode m);
    // The stamp of that second.
    static std::string at(std::int32_t seconds, mode m);

    // Whether the text is neither empty nor holds a ":".
    static bool is_raw(const std::string& stamp);

    // `stamp` becomes the stored stamp, "" when there is none or it cannot be read. `name` is the plain name of the
    // attribute, "__BlkDate" where none is given. Always true.
    static bool read(const Orin::IGroup& group, const char* name, std::string& stamp);
    static bool read(const Orin::IGroup& group, std::string& stamp);
    static bool read(const Orin::IComp& comp, std::string& stamp);

    // Stores the stamp; "" or null removes it. False when the database refuses, also to remove what is not there.
    // The object is a write handle's.
    static bool write(Orin::IGroup& group, const char* name, const char* stamp);
    static bool write(Orin::IGroup& group, const char* stamp);
    static bool write(Orin::IComp& comp, const char* stamp);

    // Whether `a` is earlier than `b`, by year, month, day, hour, minute, second; null counts as "", which is earlier
    // than every date. Stored designs rely on this order, so it keeps its oddities: raw stamps count months from 0 and
    // formatted ones from 1, so that a formatted stamp is a month later than the raw one of its moment; two-digit years
    // are 2000 to 2099; and a damaged stamp has what its pieces give, 0 for a piece without digits.
    static bool is_less(const char* a, const char* b);
    static bool comparator_func(const std::string& a, const std::string& b);
};

}  // namespace Quill::Utils
