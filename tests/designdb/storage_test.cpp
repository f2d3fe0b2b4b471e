// The containers below the graph, and what a want of memory and injected faults leave behind.
#include <algorithm>
#include <functional>
#include <random>

#include "designdb/detail/chunked_sequence.h"
#include "designdb/detail/table.h"
#include "designdb/testing/fault_injector.h"
#include "tests/designdb/engine_design.h"
#include "tests/support/allocation_counter.h"

namespace Tests {

using namespace Orin;
using DesignDb::Slot;

namespace {

class AnyObserver final : public EventObserver {};

using Commits = SharedBlock;
using FaultInjector = SharedBlock;

// Numbers below a limit.
auto Random(unsigned seed) {
    return [engine = std::mt19937(seed)](std::size_t limit) mutable { return static_cast<unsigned>(engine() % limit); };
}

}  // namespace

TEST(ChunkedSequence, AgreesWithAVectorUnderRandomEditsOfItsCopies) {
    using Sequence = DesignDb::ChunkedSequence<std::uint32_t>;
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        auto below = Random(seed);
        const bool sorted = seed % 2 == 0;
        std::vector<std::pair<Sequence, std::vector<std::uint32_t>>> all(3);
        for (unsigned step = 1; step < 6000; ++step) {
            auto& [sequence, model] = all[below(3)];
            const unsigned value = sorted ? below(100000) + 1 : step;
            const auto place = std::lower_bound(model.begin(), model.end(), value);
            const unsigned what = below(step % 3000 < 2000 ? 10 : 4);  // grows, then shrinks
            if (what == 0 && step % 7 == 0) {
                all[below(3)] = {sequence, model};
            } else if (what < 4) {
                if (model.empty()) continue;
                const std::size_t at = below(model.size());
                EXPECT_EQ(sequence.Find(model[at]), at);
                sorted ? sequence.EraseSorted(model[at]) : sequence.Erase(at);
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(at));
            } else if (sorted) {
                ASSERT_EQ(sequence.ContainsSorted(value), place != model.end() && *place == value);
                const auto above = std::upper_bound(model.begin(), model.end(), value);
                ASSERT_EQ(sequence.Above(value), above != model.end() ? *above : 0);
                if (place != model.end() && *place == value) continue;
                sequence.InsertSorted(value);
                model.insert(place, value);
            } else {
                const std::size_t at = what < 7 ? model.size() : below(model.size() + 1);
                sequence.Insert(at, value);
                model.insert(model.begin() + static_cast<std::ptrdiff_t>(at), value);
            }
            if (step % 100 != 0) continue;
            for (const auto& [s, m] : all) {
                std::vector<std::uint32_t> now;
                s.ForEach([&now](std::uint32_t v) { now.push_back(v); });
                ASSERT_EQ(now, m);
                ASSERT_EQ(s.Size(), m.size());
                EXPECT_EQ(s.Find(0), Sequence::NotFound);
                if (!m.empty()) {
                    EXPECT_EQ(s[m.size() / 2], m[m.size() / 2]);
                }
            }
        }
    }
}

TEST(Table, AgreesWithAVectorUnderRandomEditsOfItsCopies) {
    struct Record {
        Index index;
        unsigned value = 0;
    };
    auto below = Random(1);
    using Model = std::vector<unsigned>;  // by slot, 0 where there is none
    std::vector<std::pair<DesignDb::Table<Record>, Model>> all(2, {{}, Model(1)});
    for (unsigned step = 1; step < 20000; ++step) {
        auto& [table, model] = all[below(2)];
        const Slot slot = below(model.size());
        const unsigned what = below(100);
        if (what == 0) {
            all[below(2)] = {table, model};
        } else if (what < 40) {
            if (below(50) == 0) {
                table.ReserveThrough(table.NextSlot() + 300);
                model.resize(model.size() + 301);
            }
            const Slot next = table.Reserve();
            ASSERT_EQ(next, model.size());
            table.Prepare(next);
            table.Put(next, {Index(next), step});
            model.push_back(step);
        } else if (model[slot] != 0) {
            ASSERT_EQ(table.Find(slot)->value, model[slot]);
            if (what < 70) {
                table.Write(slot).value = model[slot] = step;
            } else {
                EXPECT_EQ(table.Take(slot).value, model[slot]);
                model[slot] = 0;
            }
        } else {
            ASSERT_EQ(table.Find(slot), nullptr);
        }
        if (step % 1000 != 0) continue;
        for (const auto& [t, m] : all) {
            Slot at = 0;
            std::size_t count = 0;
            for (Slot s = 1; s < m.size(); ++s) {
                if (m[s] == 0) continue;
                at = t.Above(at);
                ++count;
                ASSERT_EQ(at, s);
                ASSERT_EQ(t.Find(s)->value, m[s]);
            }
            EXPECT_EQ(t.Above(at), 0U);
            EXPECT_EQ(t.Count(), count);
        }
    }
}

TEST_F(Commits, ThatCannotBeKeptChangeNothing) {
    AnyObserver observer;
    ASSERT_TRUE(editor.MakeSavePoint("full") && editor.DeleteComp(comp));
    const Strings before = Facts(client);
    DesignDb::Testing::FaultInjector faults;
    for (const bool observed : {false, true}) {
        ASSERT_TRUE(!observed || client.snapshot->AddEventObserver(&observer));
        faults.Inject({"Store::Commit", {}, 1, true});
        EXPECT_EQ(editor.SetLabel(net, "x").GetErrorCode(), 102);
        EXPECT_EQ(editor.DeleteBlock(block).GetErrorCode(), 102);
        EXPECT_EQ(editor.RestoreSavePoint("full").GetErrorCode(), 102);
        EXPECT_EQ(Facts(client), before);
        // Edits of a transaction are no commits; all of them go with it.
        ASSERT_TRUE(Begin());
        EXPECT_TRUE(editor.DeleteBlock(block) && editor.RestoreSavePoint("full"));
        EXPECT_EQ(client.snapshot->CommitTransaction().GetErrorCode(), 102);
        EXPECT_EQ(RollBack().GetErrorCode(), 211);
        EXPECT_EQ(Facts(client), before);
        faults.Clear();
    }
    EXPECT_EQ(faults.Calls("Store::Commit"), 8U);
    faults.Inject({"Store::Add"});
    faults.Inject({"Store::Remove"});
    EXPECT_EQ(editor.MakeSavePoint("more").GetErrorCode(), 102);
    EXPECT_EQ(database.RemoveSnapshot("full").GetErrorCode(), 102);
    ListT<String> names;
    ASSERT_TRUE(database.ListSnapshots(names));
    EXPECT_EQ(names, (ListT<String>{"QUILL", "full"}));
    faults.Inject({"OrinPI::AttachSubClient"});
    EXPECT_EQ(client.connection->AttachSubClient(database.ProjectName(), "sub").GetErrorCode(), 102);
    EXPECT_EQ(client.connection->DetachSubClient().GetErrorCode(), 110);
    ASSERT_TRUE(client.snapshot->RemoveEventObserver(&observer));
}

// Every edit is tried with its first allocation failing, then its second and so on until it needs no more.
TEST(WantOfMemory, LeavesTheDesignAsItWasOrTheEditDone) {
    for (const bool observed : {false, true})
        for (const bool inTransaction : {false, true}) {
            SCOPED_TRACE(observed ? "observed" : "not observed");
            SCOPED_TRACE(inTransaction ? "in a transaction" : "alone");
            DesignDb::Database database = NewDatabase();
            TestClient client(database, "one");
            DesignDb::Editor& editor = client.editor;
            AnyObserver observer;
            ASSERT_TRUE(!observed || client.snapshot->AddEventObserver(&observer));
            Index block, comp, pin, net, net2, bus, group, line, made;
            const Index foreign(0xC800000000000001);
            const String text("text"), name("name");
            const DesignDb::CompSpec another{"U2"};
            const DesignDb::CompSpec asked{"U3", {}, {}, {}, {}, {}, {}, foreign};
            const std::function<Result()> edits[] = {
                [&] { return editor.AddBlock({text}, block); },
                [&] { return editor.AddComp(block, {text}, comp); },
                [&] { return editor.AddComp(block, another, made); },
                [&] { return editor.AddComp(block, asked, made); },
                [&] { return editor.AddPin(comp, {text}, pin); },
                [&] { return editor.AddNet(block, {text}, net); },
                [&] { return editor.AddNet(block, {text}, net2); },
                [&] { return editor.AddBus(block, {text}, bus); },
                [&] { return editor.AddGroup(block, {text}, group); },
                [&] { return editor.AddMember(group, comp); },
                [&] { return editor.AddMember(group, foreign, 0); },
                [&] { return editor.MoveMember(group, comp, 0); },
                [&] { return editor.ConnectPin(net, pin); },
                [&] { return editor.ConnectPin(net2, pin); },
                [&] { return editor.ConnectNet(bus, net); },
                [&] { return editor.SetAttribute(comp, name, text); },
                [&] { return editor.SetAttribute({}, name, text); },
                [&] { return editor.SetLabel(comp, name); },
                [&] { return editor.AddLine(group, {}, line); },
                [&] { return editor.SetCompData(group, comp, {}); },
                [&] { return editor.RemoveMember(group, comp); },
                [&] { return editor.DeleteComp(foreign); },
                [&] { return inTransaction ? Result() : editor.MakeSavePoint(text); },
                [&] { return editor.DeleteGroup(group); },
                [&] { return inTransaction ? Result() : editor.RestoreSavePoint(text); },
                [&] { return editor.DeleteNet(net2); },
                [&] { return editor.DeleteBlock(block); }};
            for (std::size_t i = 0; i < std::size(edits); ++i) {
                SCOPED_TRACE("edit " + std::to_string(i));
                for (unsigned allocation = 0;; ++allocation) {
                    ASSERT_LT(allocation, 2000U);
                    const Strings before = Facts(client);
                    ASSERT_TRUE(!inTransaction || client.snapshot->BeginTransaction(ETransactionType::Edit));
                    FailAllocation(allocation);
                    const Result result = edits[i]();
                    const bool failed = AllocationFailed();
                    if (!result) {
                        ASSERT_EQ(result.GetErrorCode(), 101);
                        ASSERT_EQ(Facts(client), before);
                    }
                    if (inTransaction && !result) {
                        ASSERT_TRUE(client.snapshot->RollbackTransaction());
                    } else if (inTransaction) {
                        // Taking it back may want for memory too; then it goes on where it stopped.
                        for (unsigned n = 0; i + 1 != std::size(edits) && n < 3; ++n) {
                            FailAllocation(n);
                            const Result back = client.snapshot->RollbackTransaction();
                            AllocationFailed();
                            if (back) break;
                            ASSERT_EQ(back.GetErrorCode(), 101);
                        }
                        static_cast<void>(client.snapshot->RollbackTransaction());
                        ASSERT_EQ(Facts(client), before);
                        ASSERT_TRUE(edits[i]());
                    }
                    if (result) break;
                    ASSERT_TRUE(failed);
                }
            }
            EXPECT_EQ(Facts(client), Strings{"design attribute 0 name=text"});
            EXPECT_TRUE(!observed || client.snapshot->RemoveEventObserver(&observer));
        }
}

TEST_F(FaultInjector, FailsAndCountsByNameObjectAndCall) {
    Index blocks[2] = {block};
    ASSERT_TRUE(editor.AddBlock({"b"}, blocks[1]));
    for (const Index& b : blocks)
        ASSERT_TRUE(editor.SetAttribute(b, "a", "1"));
    const ContainerT<const IBlock> handles[] = {client.Block(blocks[0]), client.Block(blocks[1])};
    const auto read = [&](int which) {
        String value;
        return handles[which]->GetAttribute("a", value).GetErrorCode();
    };
    DesignDb::Testing::FaultInjector faults;
    faults.Inject({"IBlock::GetAttribute", {}, 2});
    faults.Inject({"IBlock::GetAttribute", {}, 3, false, EErrorCode::AccessDenied});
    faults.Inject({"IBlock::GetAttribute", blocks[1], 2, true, EErrorCode::NoValue});
    std::vector<int> codes;
    for (const int which : {0, 0, 0, 0, 1, 1, 1})
        codes.push_back(read(which));
    EXPECT_EQ(codes, (std::vector<int>{0, 102, 201, 0, 0, 205, 205}));
    EXPECT_EQ(faults.Calls("IBlock::GetAttribute"), 7U);
    EXPECT_EQ(faults.Calls("IBlock::SetAttribute"), 0U);
    EXPECT_EQ(faults.Failed().size(), 4U);
    faults.Clear();
    EXPECT_EQ(read(1), 0);
    // A write that fails writes nothing; the design can be named like any object.
    MutableContainerT<ISnapshot> writable;
    Index design;
    String value;
    ASSERT_TRUE(LockerT<ISnapshot>::Lock(client.snapshot, writable) && writable->GetIndex(design));
    faults.Inject({"ISnapshot::SetAttribute", design});
    EXPECT_EQ(writable->SetAttribute("a", "1").GetErrorCode(), 102);
    EXPECT_EQ(writable->GetAttribute("a", value).GetErrorCode(), 202);
    EXPECT_TRUE(writable->SetAttribute("a", "1"));
}

}  // namespace Tests
