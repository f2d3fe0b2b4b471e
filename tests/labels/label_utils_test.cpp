#include "labels/label_utils.h"

#include <gtest/gtest.h>

namespace {

using Quill::LabelInversionUtils;
using Quill::LabelValidationUtils;

TEST(LabelInversionUtils, ReadsAndSetsTheMark) {
    struct Case {
        std::string label;
        bool whole, partial;
        std::string plain;
    };
    const Case cases[] = {
        {"", false, false, ""},    {"RESET", false, false, "RESET"}, {"~RESET", true, false, "RESET"},
        {"~~X", true, false, "X"}, {"~A~B", true, false, "AB"},      {"A~B~C", false, true, "ABC"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(LabelInversionUtils::Get(c.label), c.whole);
        EXPECT_EQ(LabelInversionUtils::IsPartial(c.label), c.partial);
        std::string plain = c.label, inverted = c.label;
        EXPECT_TRUE(LabelInversionUtils::Set(plain, false) && LabelInversionUtils::Set(inverted, true));
        EXPECT_EQ(plain, c.plain);
        EXPECT_EQ(inverted, "~" + c.plain);
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
