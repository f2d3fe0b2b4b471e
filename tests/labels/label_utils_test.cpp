#include "labels/label_utils.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace {

using Quill::LabelInversionUtils;
using Quill::LabelValidationUtils;

TEST(LabelInversionUtils, ReadsAndSetsTheMark) {
    const std::tuple<std::string, bool, bool, std::string> cases[] = {
        {"", false, false, ""},    {"RESET", false, false, "RESET"}, {"~RESET", true, false, "RESET"},
        {"~~X", true, false, "X"}, {"~A~B", true, false, "AB"},      {"A~B~C", false, true, "ABC"},
    };
    for (const auto& [label, whole, partial, wanted] : cases) {
        EXPECT_EQ(LabelInversionUtils::Get(label), whole) << label;
        EXPECT_EQ(LabelInversionUtils::IsPartial(label), partial) << label;
        std::string plain = label, inverted = label;
        EXPECT_TRUE(LabelInversionUtils::Set(plain, false) && LabelInversionUtils::Set(inverted, true));
        EXPECT_EQ(plain, wanted);
        EXPECT_EQ(inverted, "~" + wanted);
    }
}

TEST(LabelValidationUtils, RefuseWhatTheirKindOfLabelMayNotHold) {
    const std::string forbidden = "@$'\";\\<>{}*";
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const std::string label = std::string("A") + c + "1";
        EXPECT_EQ(LabelValidationUtils::IsNetLabelValid(label), forbidden.find(c) == std::string::npos) << byte;
        EXPECT_EQ(LabelValidationUtils::IslabelValid(label), c != '\\') << byte;
    }
    EXPECT_FALSE(LabelValidationUtils::IsNetLabelValid("|")) << "alone";
    EXPECT_TRUE(LabelValidationUtils::IslabelValid("|") && LabelValidationUtils::IsNetLabelValid("||"));
    EXPECT_TRUE(LabelValidationUtils::IslabelValid("") && LabelValidationUtils::IsNetLabelValid(""));
}

}  // namespace
