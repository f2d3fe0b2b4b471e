// Who may lock and edit what while others hold locks and transactions.
#include <functional>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// With a second component, and a place of the first in the hierarchy.
struct Locking : SharedBlock {
    Index comp2, config, path;

    Locking() {
        ContainerT<const IConfig> board;
        ContainerT<const IPath> root;
        EXPECT_TRUE(editor.AddComp(block, {"U2"}, comp2) && editor.AddConfig({"board", block}, config));
        EXPECT_TRUE(client.snapshot->GetDefaultConfig(board, "board") && board->GetRoot(root));
        EXPECT_TRUE(root->GetIndex(path));
    }

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
    // The locks that the table of conflicts knows, in its order.
    std::vector<std::function<Held()>> Locks(const TestClient& by) const {
        ContainerT<const IBlockViewQuill> view;
        ContainerT<const ICompViewQuill> symbol;
        ContainerT<const IPath> place;
        ContainerT<const IComp> occurrence;
        EXPECT_TRUE(IBlockViewQuill::Init(view, *by.Block(block), *by.Group(group)));
        EXPECT_TRUE(ICompViewQuill::Init(symbol, *by.Comp(comp)));
        EXPECT_TRUE(by.objects.GetPath(place, path) && place->GetCompInPath(occurrence, comp));
        return {[&by] { return Take(by.snapshot); },
                [this, &by] { return Take(by.Block(block)); },
                [this, &by] { return Take(by.Group(group)); },
                [this, &by] { return Take(by.Group(group), &LockerT<IGroup>::ShallowLock); },
                [view] { return Take(view); },
                [this, &by] { return Take(by.Comp(comp)); },
                [this, &by] { return Take(by.Comp(comp), &LockerT<IComp>::ShallowLock); },
                [occurrence] { return Take(occurrence); },
                [symbol] { return Take(symbol); }};
    }
};

}  // namespace

TEST_F(Locking, ConflictsBetweenClientsAndNeverWithinOne) {
    // Rows: what one holds. Columns, in the same order: whether two can have it.
    static constexpr const char* Table[] = {
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
    const auto ours = Locks(client), theirs = Locks(other);
    for (std::size_t held = 0; held < std::size(Table); ++held)
        for (std::size_t wanted = 0; wanted < std::size(Table); ++wanted) {
            SCOPED_TRACE("held " + std::to_string(held) + ", wanted " + std::to_string(wanted));
            const Held first = ours[held]();
            ASSERT_EQ(first.code, 0);
            EXPECT_EQ(ours[wanted]().code, 0);
            EXPECT_EQ(theirs[wanted]().code, Table[held][wanted] == '+' ? 0 : 201);
        }
}

TEST_F(Locking, WriteHandlesWriteWhatTheirLockCoversAndOnlyWhileTheyHoldIt) {
    // A write handle whose client was closed, and one whose object another client's transaction shuts.
    MutableContainerT<IComp> writable;
    ASSERT_TRUE(LockerT<IComp>::ShallowLock(client.Comp(comp), writable));
    IComp& object = *writable;
    EXPECT_TRUE(object.SetAttribute("a", "1", EAttributeType::User));
    ASSERT_TRUE(other.snapshot->BeginTransaction(ETransactionType::Edit));
    EXPECT_EQ(object.SetAttribute("a", "2", EAttributeType::User).GetErrorCode(), 201);
    EXPECT_EQ(editor.SetLabel(comp2, "x").GetErrorCode(), 201);
    EXPECT_EQ(Begin().GetErrorCode(), 201);
    ASSERT_TRUE(other.snapshot->CommitTransaction());
    // The editor needs no lock, but respects those of others: own attributes, the object, what contains it.
    EXPECT_EQ(other.editor.SetLabel(comp, "x").GetErrorCode(), 201);
    EXPECT_EQ(other.editor.DeleteBlock(block).GetErrorCode(), 201);
    EXPECT_TRUE(other.editor.SetLabel(comp2, "x"));
    const ContainerT<const IComp> keep = writable;
    writable.Release();
    EXPECT_EQ(object.SetAttribute("a", "3", EAttributeType::User).GetErrorCode(), 203);
    MutableContainerT<IBlock> whole;
    ASSERT_TRUE(LockerT<IBlock>::Lock(client.Block(block), whole));
    EXPECT_TRUE(object.SetAttribute("a", "4", EAttributeType::User));
}

TEST_F(Locking, IsRefusedAtAPlaceThatIsGone) {
    ContainerT<const IPath> place;
    ContainerT<const IComp> occurrence;
    ASSERT_TRUE(client.objects.GetPath(place, path) && place->GetCompInPath(occurrence, comp));
    MutableContainerT<IComp> writable, late;
    ASSERT_TRUE(LockerT<IComp>::Lock(occurrence, writable));
    ASSERT_TRUE(editor.SetRoot(config, {}));
    EXPECT_EQ(writable->SetAttribute("a", "1", EAttributeType::User).GetErrorCode(), 200);
    EXPECT_EQ(LockerT<IComp>::Lock(occurrence, late).GetErrorCode(), 200);
    ASSERT_TRUE(editor.SetRoot(config, block));
    EXPECT_TRUE(writable->SetAttribute("a", "1", EAttributeType::User));
    EXPECT_TRUE(LockerT<IComp>::Lock(occurrence, late));
}

TEST_F(Locking, GoesWithTheConnectionAndSoDoesItsTransaction) {
    const Strings before = Facts(other);
    MutableContainerT<IBlock> writable;
    ASSERT_TRUE(LockerT<IBlock>::Lock(client.Block(block), writable));
    ASSERT_TRUE(Begin());
    ASSERT_TRUE(writable->SetAttribute("a", "1"));
    ASSERT_TRUE(editor.DeleteComp(comp));
    const ContainerT<const IBlock> handle = client.Block(block);
    client.connection.reset();

    EXPECT_EQ(Facts(other), before);
    ASSERT_TRUE(other.snapshot->BeginTransaction(ETransactionType::Edit));
    MutableContainerT<IBlock> theirs;
    EXPECT_TRUE(LockerT<IBlock>::Lock(other.Block(block), theirs));
    EXPECT_TRUE(theirs->SetAttribute("a", "2"));
    EXPECT_TRUE(other.snapshot->CommitTransaction());
    // What is left of the closed client reads, but neither writes nor locks, and gives nothing up twice.
    String value;
    EXPECT_TRUE(handle->GetAttribute("a", value));
    EXPECT_EQ(writable->SetAttribute("a", "3").GetErrorCode(), 110);
    EXPECT_EQ(Begin().GetErrorCode(), 110);
    MutableContainerT<IBlock> late;
    EXPECT_EQ(LockerT<IBlock>::Lock(handle, late).GetErrorCode(), 110);
    writable.Release();
    TestClient three(database, "three");
    EXPECT_EQ(LockerT<IBlock>::Lock(three.Block(block), late).GetErrorCode(), 201);
}

}  // namespace Tests
