#include "attributes/common_rollback_ops.h"

#include "tests/support/small_design.h"
#include "tests/support/time_zone.h"

namespace {

using Quill::Utils::CommonRollbackOps;

TEST(SavePointText, ShowsRawDatesInLocalTime) {
    const Tests::TwoHoursAhead zone;
    const std::pair<const char*, const char*> cases[] = {
        {"1710407107", "2024-03-14 11:05:07"},   {"never", "1970-01-01 02:00:00"},        // no number is second 0
        {"99999999999", "2038-01-19 05:14:07"},                                           // clamped
        {"-99999999999", "1901-12-13 22:45:52"}, {"9:05:07_3-14-24", "9:05:07_3-14-24"},  // formatted already
    };
    for (const auto& [date, want] : cases)
        EXPECT_EQ(CommonRollbackOps::FormatSvptDate(date), want);
}

TEST(SavePointText, PutsTheBeginningOfTheCommentBehindTheDate) {
    const auto& menu = CommonRollbackOps::FormatRollbackMenu;
    EXPECT_EQ(menu("", ""), "");
    EXPECT_EQ(menu("0:00:00_1-1-70", ""), "0:00:00_1-1-70");
    EXPECT_EQ(menu("0:00:00_1-1-70", "twenty bytes it has."), "0:00:00_1-1-70 (\"twenty bytes it has.\")");
    EXPECT_EQ(menu("", "twenty-one it is now!"), " (\"twenty-one it is now...\")");
    const Tests::TwoHoursAhead zone;
    EXPECT_EQ(menu("0", "before routing"), "1970-01-01 02:00:00 (\"before routing\")");
}

class SavePointComment : public Tests::SmallDesign {
protected:
    SavePointComment() {
        EXPECT_TRUE(database.AddSnapshot("before routing"));
        EXPECT_TRUE(client->GetSnapshotByName(savePoint, "before routing"));
    }

    Orin::ContainerT<const Orin::ISnapshot> savePoint;
    std::string comment = "what stood there";
};

TEST_F(SavePointComment, IsKeptWithItsSnapshot) {
    EXPECT_TRUE(CommonRollbackOps::SetComment(savePoint, "first"));
    EXPECT_EQ(Value(savePoint, "$$Internal_SVPT_COMMENT"), "first");
    EXPECT_TRUE(CommonRollbackOps::GetComment(*client, "before routing", comment) && comment == "first");
    EXPECT_TRUE(CommonRollbackOps::SetComment(*client, "before routing", ""));
    EXPECT_TRUE(CommonRollbackOps::GetComment(savePoint, comment) && comment.empty());
    comment = "what stood there";
    EXPECT_EQ(CommonRollbackOps::GetComment(snapshot, comment).GetErrorCode(), 202) << "the working snapshot has none";
    EXPECT_EQ(comment, "what stood there");
}

TEST_F(SavePointComment, CannotBeWrittenWhileAnotherClientHoldsTheSnapshot) {
    const auto other = database.Connect("other");
    Orin::ContainerT<const Orin::ISnapshot> theirs;
    Orin::MutableContainerT<Orin::ISnapshot> held;
    EXPECT_TRUE(CommonRollbackOps::SetComment(savePoint, "first"));
    EXPECT_TRUE(other->GetSnapshotByName(theirs, "before routing"));
    EXPECT_TRUE(Orin::LockerT<Orin::ISnapshot>::Lock(theirs, held)) << "the first comment's lock was given up";
    EXPECT_EQ(CommonRollbackOps::SetComment(savePoint, "second").GetErrorCode(), 201);
    EXPECT_EQ(CommonRollbackOps::SetComment(*client, "before routing", "second").GetErrorCode(), 201);
    EXPECT_TRUE(CommonRollbackOps::GetComment(savePoint, comment) && comment == "first");
}

TEST_F(SavePointComment, NeedsASnapshotThatIsThere) {
    EXPECT_EQ(CommonRollbackOps::SetComment(*client, "nowhere", "x").GetErrorCode(), 200);
    EXPECT_EQ(CommonRollbackOps::GetComment(*client, "nowhere", comment).GetErrorCode(), 200);
    EXPECT_EQ(CommonRollbackOps::SetComment({}, "x").GetErrorCode(), 200) << "an empty handle";
    EXPECT_EQ(CommonRollbackOps::GetComment({}, comment).GetErrorCode(), 200);
    EXPECT_EQ(comment, "what stood there");
}

}  // namespace
