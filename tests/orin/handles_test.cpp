#include "orin/handles.h"

#include "tests/support/small_design.h"

namespace {

using Sheet = Orin::ContainerT<const Orin::IGroup>;
using WritableSheet = Orin::MutableContainerT<Orin::IGroup>;
using SheetLocker = Orin::LockerT<Orin::IGroup>;

// Sees the sheet through the eyes of another client, so that it can tell whether the sheet is locked.
class Handles : public Tests::SmallDesign {
protected:
    Handles() {
        Orin::ContainerT<const Orin::ISnapshot> theirSnapshot;
        Orin::ContainerT<const Orin::IBlock> theirBlock;
        EXPECT_TRUE(other->GetSnapshotByName(theirSnapshot, "QUILL"));
        EXPECT_TRUE(theirSnapshot->GetBlock(theirBlock, blockIndex) && theirBlock->GetGroup(theirs, sheetIndex));
        writableBlock.Release();
    }
    bool Locked() const {
        WritableSheet writable;
        return SheetLocker::Lock(theirs, writable).GetErrorCode() == 201;
    }

    std::unique_ptr<Orin::OrinPI> other = database.Connect("other");
    Sheet theirs;
};

TEST_F(Handles, CopiesShareOneWriteAccess) {
    WritableSheet copy = writableSheet;
    writableSheet.Release();
    EXPECT_TRUE(Locked()) << "the copy still writes";
    EXPECT_EQ(Sheet(copy).Get(), sheet.Get());
    copy = WritableSheet();
    EXPECT_FALSE(Locked());

    EXPECT_TRUE(SheetLocker::ShallowLock(sheet, copy) && SheetLocker::Lock(sheet, copy));
    copy.Release();
    EXPECT_FALSE(Locked()) << "refilling gave up what was held";
}

TEST_F(Handles, ALockThatFailsLeavesTheWriteHandleAsItWas) {
    WritableSheet writable = writableSheet;
    EXPECT_EQ(SheetLocker::Lock(theirs, writable).GetErrorCode(), 201);
    EXPECT_EQ(SheetLocker::Lock(Sheet(), writable).GetErrorCode(), 200);
    writableSheet.Release();
    EXPECT_TRUE(Locked() && writable.Get() == sheet.Get());
}

TEST_F(Handles, AnIterationIsAHandleToItsElementAndItsCopiesGoTheirOwnWay) {
    Orin::Index second, index;
    EXPECT_TRUE(editor.AddBlock({"second"}, second));
    Orin::IteratorT<const Orin::IBlock> blocks, none;
    int count = 7;
    EXPECT_TRUE(!none && !++none && none.GetCount(count) && count == 0);
    EXPECT_TRUE(snapshot->GetIterBlocks(blocks) && blocks.GetCount(count) && count == 2);
    Orin::IteratorT<const Orin::IBlock> copy = blocks;
    ++blocks;
    EXPECT_TRUE(blocks->GetIndex(index) && index == second);
    EXPECT_TRUE(copy->GetIndex(index) && index == blockIndex);
    const Orin::ContainerT<const Orin::IBlock> element = blocks;
    EXPECT_TRUE(!++blocks && !blocks.IsValid() && !++blocks) << "beyond the end";
    EXPECT_TRUE(element->GetIndex(index) && index == second) << "a handle outlives the iteration it was taken from";
    EXPECT_TRUE((++copy)->GetIndex(index) && index == second);
}

}  // namespace
