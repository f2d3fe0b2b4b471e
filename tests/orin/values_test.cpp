#include <gtest/gtest.h>

#include "orin/orin.h"
#include "tests/support/allocation_counter.h"

namespace {

using Orin::EErrorCode;
using Orin::Index;
using Orin::String;
using Tests::AllocationsOf;

constinit String::Literal literal("laid down");
constinit const String constant(literal);
const String copiedAtLoad = constant + ", copied";  // while other modules may not be initialised yet

TEST(String, IsTextUpToTheFirstNul) {
    const String text("A0");
    EXPECT_TRUE(text == "A0" && text == String("A0"));
    EXPECT_TRUE(text != "a0" && text != String("A") && text != nullptr && text != "A00");
    EXPECT_TRUE(String(nullptr).IsEmpty() && String("").IsEmpty() && String() == "" && String() == nullptr);
    EXPECT_STREQ(String(), "");
    EXPECT_EQ(String(std::string_view("a\0b", 3)).View(), "a");
    EXPECT_TRUE(text + "!" == "A0!" && text + nullptr == "A0" && String() + "x" == "x");
    String self("abc");
    self = static_cast<const char*>(self) + 1;  // out of its own characters
    EXPECT_STREQ(self, "bc");
}

TEST(String, ConstantsAreThereBeforeAnyCodeRuns) {
    EXPECT_STREQ(copiedAtLoad, "laid down, copied");
    { const String copy = constant; }
    EXPECT_STREQ(constant, "laid down") << "a copy took the constant with it";
}

TEST(Values, EmptyOnesAndCopiesAllocateNothing) {
    const String text("a text that is longer than what fits into a small buffer");
    const Orin::ListT<Index> list{Index(1), Index(2)};
    const auto work = [&] {
        String empty, fromNothing(""), copy(text), literalCopy(constant), assigned;
        assigned = text;
        const String same = text + "";
        Orin::ListT<Index> emptyList, emptyListCopy(emptyList), listCopy(list), assignedList;
        assignedList = list;
        for (auto at = std::as_const(listCopy).GetIterator(); at.IsValid(); ++at)
            EXPECT_FALSE(at->IsEmpty());
        EXPECT_FALSE(emptyList.GetIterator().IsValid());
        Orin::ContainerT<const Orin::IGroup> handle, handleCopy(handle);
        Orin::MutableContainerT<Orin::IGroup> writable, writableCopy(writable);
        Orin::IteratorT<const Orin::IGroup> iterator, iteratorCopy(iterator);
        Orin::Result success, failure(EErrorCode::AccessDenied), failureCopy(failure);
        Orin::OrinPI unconnected;
        Orin::IUIDManager unfilled, unfilledCopy(unfilled);
    };
    EXPECT_EQ(AllocationsOf(work), 0U);
}

TEST(List, OnlyWriteAccessTakesTheRecordsApart) {
    Orin::ListT<int> list{1, 2, 3};
    Orin::ListT<int> copy = list;
    EXPECT_EQ(copy.begin(), list.begin()) << "copies share their records";
    EXPECT_EQ(std::as_const(copy).Front(), 1);
    EXPECT_EQ(copy.begin(), list.begin()) << "reading takes nothing apart";
    copy.Front() = 7;
    for (auto at = copy.GetIterator(); at.IsValid(); ++at)
        *at += 10;
    copy.Append(4);
    EXPECT_EQ(copy, (Orin::ListT<int>{17, 12, 13, 4}));
    EXPECT_EQ(list, (Orin::ListT<int>{1, 2, 3}));

    const int* const own = copy.begin();
    copy.Front() = 1;
    EXPECT_EQ(copy.begin(), own) << "records that are not shared are written in place";
    int* const record = copy.GetIterator();
    EXPECT_EQ(*record, 1);
    list.Clear();
    EXPECT_TRUE(list.IsEmpty() && !(list == copy));
}

TEST(Index, IsThreePartsWithTheKindOnTop) {
    constexpr Index index(0x4500000300000002ULL);
    EXPECT_TRUE(index.Low() == 2 && index.Middle() == 3 && index.Top() == 69);
    EXPECT_EQ(index.GetType(), Orin::EObjectType::Group);
    EXPECT_EQ(Index(Orin::EObjectType::Group, 3, 2), index);
    EXPECT_EQ(Index(Orin::EObjectType::Block, 0xFF000001, 0), Index(0x0500000100000000ULL)) << "the middle has 24 bits";
    EXPECT_EQ(static_cast<std::uint64_t>(index), 0x4500000300000002ULL);
    EXPECT_TRUE(Index().IsEmpty() && Index(0).IsEmpty() && !Index(1).IsEmpty());
    EXPECT_LT(Index(0x7FFFFFFFFFFFFFFFULL), Index(0x8000000000000000ULL)) << "ordered as an unsigned number";
}

TEST(BitContainer, HoldsEnumeratorsByPosition) {
    Orin::CompTypes types = Orin::ECompType::Hierarchical;
    types |= Orin::ECompType::Titled;
    EXPECT_EQ((Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn).Bits(), 0x102U);
    EXPECT_EQ(Orin::GroupTypes(Orin::EGroupType::GeneratedSheet).Bits(), 0x100U);
    EXPECT_TRUE(types.Contains(Orin::ECompType::Titled) && !types.Contains(Orin::ECompType::Border));
    types |= static_cast<Orin::ECompType>(32);
    types |= static_cast<Orin::ECompType>(-1);
    EXPECT_TRUE(types.Bits() == 0x8004U && !types.Contains(static_cast<Orin::ECompType>(32))) << "does not fit";
}

TEST(Result, SaysWhatFailed) {
    EXPECT_TRUE(Orin::Result() && Orin::Result().GetErrorCode() == 0);
    const Orin::Result failure(EErrorCode::AccessDenied, "sheet 1");
    EXPECT_TRUE(!failure && !failure.Succeeded() && failure.GetErrorCode() == 201);
    EXPECT_STREQ(failure.GetDescription(), "Another client holds the object: sheet 1");
    EXPECT_STREQ(Orin::Result(4711).GetDescription(), "Database error 4711");
}

TEST(Unconnected, EveryOperationSaysSo) {
    Orin::OrinPI db;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    for (const Orin::Result& result : {db.GetSnapshotByName(snapshot, "QUILL"), db.AddClientObserver(nullptr),
                                       db.RemoveClientObserver(nullptr), db.DetachSubClient()})
        EXPECT_EQ(result.GetErrorCode(), 110);
    EXPECT_EQ(db.AttachSubClient("nowhere", "client").GetErrorCode(), 111);

    const Orin::IUIDManager unfilled;
    Orin::ContainerT<const Orin::INet> net;
    EXPECT_EQ(unfilled.GetNet(net, Index(1)).GetErrorCode(), 110);
    EXPECT_FALSE(net);
    EXPECT_EQ(net.IsValid().GetErrorCode(), 200) << "an empty handle names nothing";
}

}  // namespace
