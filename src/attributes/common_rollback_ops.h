// Comments of save points, and how the rollback menu shows them.
#pragma once

#include <string>

#include "orin/orin_pi.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Static operations only. A save point is a snapshot; its comment is an attribute of the snapshot. A database failure
// is returned as it came, never thrown; an empty handle is an object that is not found.
class QUILLUTILS_EXPORT CommonRollbackOps {
public:
    // Locks the snapshot for the time of the call. When another client holds it, nothing is changed.
    static Orin::Result SetComment(Orin::ContainerT<const Orin::ISnapshot> snapshot, const std::string& comment);
    static Orin::Result SetComment(Orin::OrinPI& db, const std::string& snapshotName, const std::string& comment);

    // A snapshot without a comment fails; `comment` is then left as it was.
    static Orin::Result GetComment(Orin::ContainerT<const Orin::ISnapshot> snapshot, std::string& comment);
    static Orin::Result GetComment(Orin::OrinPI& db, const std::string& snapshotName, std::string& comment);

    // A raw stamp (labels/time_stamp.h) as local time, "2024-03-14 10:05:07", for the user thinks in local time
    // although stamps are compared in UTC. One that is no number shows the local time of second 0. Anything else is
    // given back unchanged.
    static std::string FormatSvptDate(const std::string& date);

    // The date as above, then the comment when there is one: `2024-03-14 10:05:07 ("before routing")`. Of a comment of
    // more than 20 bytes the first 20 are shown, and "...".
    static std::string FormatRollbackMenu(const std::string& date, const std::string& comment);
};

}  // namespace Quill::Utils
