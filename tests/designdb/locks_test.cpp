// Who may lock and edit what while others hold locks and transactions.
#include <memory>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// A block with a group and a component with a place in the hierarchy.
struct Locking : testing::Test {
    DesignDb::Database database = NewDatabase();
    std::unique_ptr<TestClient> one = std::make_unique<TestClient>(database, "one");
    TestClient two{database, "two"};
    Index block, group, comp, other, path;

    Locking() {
        DesignDb::Editor& editor = one->editor;
        EXPECT_TRUE(editor.AddBlock({"block"}, block));
        EXPECT_TRUE(editor.AddGroup(block, {"1"}, group));
        EXPECT_TRUE(editor.AddComp(block, {"U1"}, comp));
        EXPECT_TRUE(editor.AddComp(block, {"U2"}, other));
        Index config;
        EXPECT_TRUE(editor.AddConfig({"board", block}, config));
        ContainerT<const IConfig> board;
        ContainerT<const IPath> root;
        EXPECT_TRUE(one->snapshot->GetDefaultConfig(board, "board"));
        EXPECT_TRUE(board->GetRoot(root));
        EXPECT_TRUE(root->GetIndex(path));
    }

    enum What { Design, Block, Group, GroupShallow, View, Comp, CompShallow, Occurrence, CompView, Count };

    // A lock, held until it is released, and the code with which it was had.
    struct Held {
        int code = 0;
        std::shared_ptr<void> handle;
    };
    template <class T>
    static Held Take(const ContainerT<const T>& from,
                     Result (*lock)(const ContainerT<const T>&, MutableContainerT<T>&) = &LockerT<T>::Lock) {
        auto handle = std::make_shared<MutableContainerT<T>>();
        return {lock(from, *handle).GetErrorCode(), handle};
    }
    Held TakeIt(TestClient& client, What what) const {
        ContainerT<const IBlockViewQuill> view;
        ContainerT<const ICompViewQuill> symbol;
        ContainerT<const IPath> place;
        ContainerT<const IComp> occurrence;
        EXPECT_TRUE(IBlockViewQuill::Init(view, *client.Block(block), *client.Group(group)));
        EXPECT_TRUE(ICompViewQuill::Init(symbol, *client.Comp(comp)));
        EXPECT_TRUE(client.objects.GetPath(place, path));
        EXPECT_TRUE(place->GetCompInPath(occurrence, comp));
        switch (what) {
            case Design:
                return Take(client.snapshot);
            case Block:
                return Take(client.Block(block));
            case Group:
                return Take(client.Group(group));
            case GroupShallow:
                return Take(client.Group(group), &LockerT<IGroup>::ShallowLock);
            case View:
                return Take(view);
            case Comp:
                return Take(client.Comp(comp));
            case CompShallow:
                return Take(client.Comp(comp), &LockerT<IComp>::ShallowLock);
            case Occurrence:
                return Take(occurrence);
            default:
                return Take(symbol);
        }
    }
};

}  // namespace

TEST_F(Locking, ConflictsBetweenClientsAndNeverWithinOne) {
    // Rows: what one holds. Columns, in the same order: whether two can have it.
    static constexpr const char* Table[Count] = {
        "---------",  // the design, and so everything
        "---------",  // the block, and all in it
        "-----++++",  // the group, and its view
        "----+++++",  // the group's own attributes, which leave its view free
        "---+-++++",  // the view: its group's own attributes stay free
        "--+++----",  // the component, wherever it stands, and its symbol's view
        "--+++--++",  // its own attributes
        "--+++-+-+",  // it at one place
        "--+++-++-",  // the symbol's view
    };
    for (int held = 0; held < Count; ++held)
        for (int wanted = 0; wanted < Count; ++wanted) {
            SCOPED_TRACE("held " + std::to_string(held) + ", wanted " + std::to_string(wanted));
            const Held first = TakeIt(*one, static_cast<What>(held));
            ASSERT_EQ(first.code, 0);
            EXPECT_EQ(TakeIt(*one, static_cast<What>(wanted)).code, 0);
            EXPECT_EQ(TakeIt(two, static_cast<What>(wanted)).code, Table[held][wanted] == '+' ? 0 : 201);
        }
}

TEST_F(Locking, AccessLastsUntilTheLastCopyIsGone) {
    MutableContainerT<IComp> first, again, shallow, refused;
    ASSERT_TRUE(LockerT<IComp>::Lock(one->Comp(comp), first));
    MutableContainerT<IComp> copy = first;
    ASSERT_TRUE(LockerT<IComp>::Lock(one->Comp(comp), again));
    ASSERT_TRUE(LockerT<IComp>::ShallowLock(one->Comp(comp), shallow));
    const auto denied = [&] { return LockerT<IComp>::Lock(two.Comp(comp), refused).GetErrorCode() == 201; };
    first.Release();
    EXPECT_TRUE(denied());
    again.Release();
    EXPECT_TRUE(denied());
    // Filling a handle again gives up what it held.
    ASSERT_TRUE(LockerT<IComp>::Lock(one->Comp(other), copy));
    EXPECT_TRUE(denied());
    shallow.Release();
    EXPECT_FALSE(denied());
    EXPECT_TRUE(refused->SetAttribute("a", "1", EAttributeType::User));
}

TEST_F(Locking, WriteHandlesWriteWhatTheirLockCoversAndOnlyWhileTheyHoldIt) {
    // A write handle whose client was closed, and one whose object another client's transaction shuts.
    MutableContainerT<IComp> writable;
    ASSERT_TRUE(LockerT<IComp>::ShallowLock(one->Comp(comp), writable));
    IComp& object = *writable;
    EXPECT_TRUE(object.SetAttribute("a", "1", EAttributeType::User));
    ASSERT_TRUE(two.snapshot->BeginTransaction(ETransactionType::Edit));
    EXPECT_EQ(object.SetAttribute("a", "2", EAttributeType::User).GetErrorCode(), 201);
    EXPECT_EQ(one->editor.SetLabel(other, "x").GetErrorCode(), 201);
    EXPECT_EQ(one->snapshot->BeginTransaction(ETransactionType::Edit).GetErrorCode(), 201);
    ASSERT_TRUE(two.snapshot->CommitTransaction());
    // The editor needs no lock, but respects those of others: own attributes, the object, what contains it.
    EXPECT_EQ(two.editor.SetLabel(comp, "x").GetErrorCode(), 201);
    EXPECT_EQ(two.editor.DeleteBlock(block).GetErrorCode(), 201);
    EXPECT_TRUE(two.editor.SetLabel(other, "x"));
    const ContainerT<const IComp> keep = writable;
    writable.Release();
    EXPECT_EQ(object.SetAttribute("a", "3", EAttributeType::User).GetErrorCode(), 203);
    MutableContainerT<IBlock> whole;
    ASSERT_TRUE(LockerT<IBlock>::Lock(one->Block(block), whole));
    EXPECT_TRUE(object.SetAttribute("a", "4", EAttributeType::User));
}

TEST_F(Locking, GoesWithTheConnectionAndSoDoesItsTransaction) {
    const std::vector<std::string> before = Facts(two);
    MutableContainerT<IBlock> writable;
    ASSERT_TRUE(LockerT<IBlock>::Lock(one->Block(block), writable));
    ASSERT_TRUE(one->snapshot->BeginTransaction(ETransactionType::Edit));
    ASSERT_TRUE(writable->SetAttribute("a", "1"));
    ASSERT_TRUE(one->editor.DeleteComp(comp));
    const ContainerT<const IBlock> handle = one->Block(block);
    one->connection.reset();

    EXPECT_EQ(Facts(two), before);
    ASSERT_TRUE(two.snapshot->BeginTransaction(ETransactionType::Edit));
    MutableContainerT<IBlock> theirs;
    EXPECT_TRUE(LockerT<IBlock>::Lock(two.Block(block), theirs));
    EXPECT_TRUE(theirs->SetAttribute("a", "2"));
    EXPECT_TRUE(two.snapshot->CommitTransaction());
    // What is left of the closed client reads, but neither writes nor locks, and gives nothing up twice.
    String value;
    EXPECT_TRUE(handle->GetAttribute("a", value));
    EXPECT_EQ(writable->SetAttribute("a", "3").GetErrorCode(), 110);
    EXPECT_EQ(one->snapshot->BeginTransaction(ETransactionType::Edit).GetErrorCode(), 110);
    MutableContainerT<IBlock> late;
    EXPECT_EQ(LockerT<IBlock>::Lock(handle, late).GetErrorCode(), 110);
    writable.Release();
    TestClient three(database, "three");
    EXPECT_EQ(LockerT<IBlock>::Lock(three.Block(block), late).GetErrorCode(), 201);
}

}  // namespace Tests
