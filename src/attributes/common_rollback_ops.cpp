#include "attributes/common_rollback_ops.h"

#include <cstddef>

#include "labels/time_stamp.h"
#include "properties/property_mangler.h"
#include "text/calendar.h"
#include "text/number.h"

namespace Quill::Utils {

namespace {

Orin::String CommentName() {
    return CPropertyMangler::Mangle("SVPT_COMMENT", DataModel::PropertyType::Internal);
}

}  // namespace

Orin::Result CommonRollbackOps::SetComment(Orin::ContainerT<const Orin::ISnapshot> snapshot,
                                           const std::string& comment) {
    Orin::MutableContainerT<Orin::ISnapshot> writable;
    const Orin::Result locked = Orin::LockerT<Orin::ISnapshot>::Lock(snapshot, writable);
    return locked ? writable->SetAttribute(CommentName(), comment.c_str()) : locked;
}

Orin::Result CommonRollbackOps::SetComment(Orin::OrinPI& db, const std::string& snapshotName,
                                           const std::string& comment) {
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    const Orin::Result found = db.GetSnapshotByName(snapshot, snapshotName.c_str());
    return found ? SetComment(snapshot, comment) : found;
}

Orin::Result CommonRollbackOps::GetComment(Orin::ContainerT<const Orin::ISnapshot> snapshot, std::string& comment) {
    if (!snapshot) return snapshot.IsValid();
    Orin::String value;
    Orin::Result read = snapshot->GetAttribute(CommentName(), value);
    if (read) comment = value.View();
    return read;
}

Orin::Result CommonRollbackOps::GetComment(Orin::OrinPI& db, const std::string& snapshotName, std::string& comment) {
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    const Orin::Result found = db.GetSnapshotByName(snapshot, snapshotName.c_str());
    return found ? GetComment(snapshot, comment) : found;
}

std::string CommonRollbackOps::FormatSvptDate(const std::string& date) {
    if (!time_stamp::is_raw(date)) return date;
    const std::optional<std::tm> fields = Text::LocalFields(Text::ParseInt32(date).value);
    return fields ? Text::FormatFields(*fields, "%Y-%m-%d %H:%M:%S") : date;
}

std::string CommonRollbackOps::FormatRollbackMenu(const std::string& date, const std::string& comment) {
    constexpr std::size_t ShownBytes = 20;
    std::string text = FormatSvptDate(date);
    if (comment.empty()) return text;
    text.append(" (\"").append(comment, 0, ShownBytes);
    if (comment.size() > ShownBytes) text += "...";
    return text.append("\")");
}

}  // namespace Quill::Utils
