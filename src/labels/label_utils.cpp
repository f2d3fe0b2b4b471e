#include "labels/label_utils.h"

#include <algorithm>

namespace Quill {

namespace {

constexpr char InversionMark = '~';
constexpr char ForbiddenInNets[] = "@$'\";\\<>{}*";
constexpr char ReservedNetLabel[] = "|";

}  // namespace

bool LabelInversionUtils::Get(const std::string& label) {
    return !label.empty() && label.front() == InversionMark;
}

bool LabelInversionUtils::IsPartial(const std::string& label) {
    return !Get(label) && label.find(InversionMark) != std::string::npos;
}

bool LabelInversionUtils::Set(std::string& label, bool inverted) {
    label.erase(std::remove(label.begin(), label.end(), InversionMark), label.end());
    if (inverted) label.insert(label.begin(), InversionMark);
    return true;
}

bool LabelValidationUtils::IslabelValid(const std::string& label) {
    return label.find('\\') == std::string::npos;
}

bool LabelValidationUtils::IsNetLabelValid(const std::string& label) {
    return label != ReservedNetLabel && label.find_first_of(ForbiddenInNets) == std::string::npos;
}

}  // namespace Quill
