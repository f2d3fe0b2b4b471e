#include <cstdlib>
#include <map>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "orin/orin.h"

namespace {

unsigned allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size != 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using Orin::EErrorCode;
using Orin::Index;
using Orin::String;

// The number of allocations that `work` makes.
template <class Work>
unsigned AllocationsOf(const Work& work) {
    const unsigned before = allocations;
    work();
    return allocations - before;
}

constinit String::Literal literal("laid down");
constinit const String constant(literal);
const String copiedAtLoad = constant + ", copied";  // while other modules may not be initialised yet

TEST(String, ComparesBytesAndTakesNullForEmpty) {
    const String text("A0");
    EXPECT_TRUE(text == "A0" && text == String("A0"));
    EXPECT_TRUE(text != "a0" && text != String("A") && text != nullptr && text != "A00");
    EXPECT_TRUE(String(nullptr).IsEmpty() && String("").IsEmpty() && String() == "" && String() == nullptr);
    EXPECT_STREQ(String(), "") << "an empty text converts to a text";
    EXPECT_EQ(String(std::string_view("a\0b", 3)).View(), "a") << "ends where its C form ends";
    EXPECT_TRUE(String("\xC3\xA4") != "\xC3\xA5");
}

TEST(String, AppendsIntoANewText) {
    const String text("A");
    EXPECT_STREQ(text + "0", "A0");
    EXPECT_STREQ(text, "A");
    EXPECT_STREQ(String() + "x", "x");
    EXPECT_STREQ(text + nullptr, "A");
    String self("abc");
    self = static_cast<const char*>(self) + 1;  // out of its own characters
    EXPECT_STREQ(self, "bc");
}

TEST(String, ConstantsAreThereBeforeAnyCodeRuns) {
    EXPECT_STREQ(copiedAtLoad, "laid down, copied");
    { const String copy = constant; }
    EXPECT_STREQ(constant, "laid down") << "a copy took the constant with it";
    EXPECT_EQ(constant.Length(), 9U);
}

TEST(Values, EmptyOnesAndCopiesAllocateNothing) {
    const String text("a text that is longer than what fits into a small buffer");
    const Orin::ListT<Index> list{Index(1), Index(2)};
    EXPECT_EQ(AllocationsOf([&] {
                  String empty, fromNothing(""), copy(text), literalCopy(constant), assigned;
                  assigned = text;
                  assigned = empty;
                  const String same = text + "";
              }),
              0U);
    EXPECT_EQ(AllocationsOf([&] {
                  Orin::ListT<Index> empty, emptyCopy(empty), copy(list), assigned;
                  assigned = list;
                  for (const Index& index : copy)
                      EXPECT_FALSE(index.IsEmpty());
                  for (auto at = std::as_const(copy).GetIterator(); at.IsValid(); ++at)
                      EXPECT_FALSE(at->IsEmpty());
                  EXPECT_FALSE(empty.GetIterator().IsValid());
              }),
              0U);
    EXPECT_EQ(AllocationsOf([&] {
                  Orin::ContainerT<const Orin::IGroup> empty, copy(empty);
                  Orin::MutableContainerT<Orin::IGroup> writable, writableCopy(writable);
                  Orin::IteratorT<const Orin::IGroup> iterator, iteratorCopy(iterator);
                  Orin::Result success, failure(EErrorCode::AccessDenied), failureCopy(failure);
                  Orin::OrinPI unconnected;
                  Orin::IUIDManager unfilled, unfilledCopy(unfilled);
                  Orin::GroupInfo info, infoCopy(info);
              }),
              0U);
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
    EXPECT_EQ(index.Low(), 2U);
    EXPECT_EQ(index.Middle(), 3U);
    EXPECT_EQ(index.Top(), 69U);
    EXPECT_EQ(index.GetType(), Orin::EObjectType::Group);
    EXPECT_EQ(Index(Orin::EObjectType::Group, 3, 2), index);
    EXPECT_EQ(Index(Orin::EObjectType::Block, 0xFF000001, 0), Index(0x0500000100000000ULL)) << "the middle has 24 bits";
    EXPECT_EQ(static_cast<std::uint64_t>(index), 0x4500000300000002ULL);
    EXPECT_TRUE(index == std::uint64_t{0x4500000300000002ULL});
    EXPECT_TRUE(Index().IsEmpty() && Index(0).IsEmpty() && !Index(1).IsEmpty());
    EXPECT_LT(Index(0x7FFFFFFFFFFFFFFFULL), Index(0x8000000000000000ULL)) << "ordered as an unsigned number";
}

TEST(BitContainer, HoldsEnumeratorsByPosition) {
    Orin::CompTypes types = Orin::ECompType::Hierarchical;
    types |= Orin::ECompType::Titled;
    EXPECT_EQ(types.Bits(), 0x8004U);
    EXPECT_EQ((Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn).Bits(), 0x102U);
    EXPECT_EQ(Orin::GroupTypes(Orin::EGroupType::GeneratedSheet).Bits(), 0x100U);
    EXPECT_TRUE(types.Contains(Orin::ECompType::Titled) && !types.Contains(Orin::ECompType::Border));
    EXPECT_TRUE(types.Intersects(Orin::ECompType::Hierarchical) && !types.Intersects({}));
    for (int outside : {-1, 32, 64}) {
        types |= static_cast<Orin::ECompType>(outside);
        EXPECT_EQ(types.Bits(), 0x8004U) << outside;
        EXPECT_FALSE(types.Contains(static_cast<Orin::ECompType>(outside))) << outside;
    }
}

TEST(Result, SaysWhatFailed) {
    EXPECT_TRUE(Orin::Result() && Orin::Result().Succeeded() && Orin::Result().GetErrorCode() == 0);
    const Orin::Result failure(EErrorCode::AccessDenied, "sheet 1");
    EXPECT_FALSE(failure || failure.Succeeded());
    EXPECT_EQ(failure.GetErrorCode(), 201);
    EXPECT_STREQ(failure.GetDescription(), "Another client holds the object: sheet 1");
    EXPECT_STREQ(Orin::Result(4711).GetDescription(), "Database error 4711");
}

TEST(Unconnected, EveryOperationSaysSo) {
    Orin::OrinPI db;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    EXPECT_EQ(db.GetSnapshotByName(snapshot, "QUILL").GetErrorCode(), 110);
    EXPECT_EQ(db.AddClientObserver(nullptr).GetErrorCode(), 110);
    EXPECT_EQ(db.RemoveClientObserver(nullptr).GetErrorCode(), 110);
    EXPECT_EQ(db.DetachSubClient().GetErrorCode(), 110);
    EXPECT_EQ(db.AttachSubClient("nowhere", "client").GetErrorCode(), 111);

    const Orin::IUIDManager unfilled;
    Orin::ContainerT<const Orin::INet> net;
    EXPECT_EQ(unfilled.GetNet(net, Index(1)).GetErrorCode(), 110);
    EXPECT_FALSE(net);
    EXPECT_EQ(net.IsValid().GetErrorCode(), 200) << "an empty handle names nothing";
}

}  // namespace
