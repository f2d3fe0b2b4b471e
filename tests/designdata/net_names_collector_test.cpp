#include "designdata/net_names_collector.h"

#include "designdb/testing/fault_injector.h"
#include "platform/logging.h"
#include "tests/support/small_design.h"

namespace {

using Names = std::set<std::string>;

class NetNames : public Tests::SmallDesign {
protected:
    Quill::NetsNamesCollector collector;

    Orin::Index AddNet(const char* label) {
        Orin::Index net;
        EXPECT_TRUE(editor.AddNet(blockIndex, {label}, net));
        return net;
    }
};

TEST_F(NetNames, FollowTheNetsOfEachBlock) {
    collector.DetachObserver();  // nothing to detach
    EXPECT_FALSE(collector.Reload());
    const Orin::Index first = AddNet("A");
    collector.AttachObserver(snapshot);
    EXPECT_EQ(collector.GetExistingNames(sheetIndex), Names{});
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{"A"});
    AddNet("");
    EXPECT_EQ(collector.GetExistingNames(blockIndex), (Names{"", "A"}));
    EXPECT_TRUE(editor.SetLabel(first, "B"));
    EXPECT_EQ(collector.GetExistingNames(blockIndex), (Names{"", "B"}));
    EXPECT_TRUE(editor.DeleteNet(first));
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{""});
    collector.DetachObserver();
    AddNet("C");
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{""});
    EXPECT_FALSE(collector.Reload());
    collector.AttachObserver(snapshot);
    EXPECT_EQ(collector.GetExistingNames(blockIndex), (Names{"", "C"}));
}

TEST_F(NetNames, AreReadAgainOnlyAfterAChangeThatMatters) {
    collector.AttachObserver(snapshot);
    collector.GetExistingNames(blockIndex);
    const Orin::DesignDb::Testing::FaultInjector calls;
    Orin::Index other;
    EXPECT_TRUE(editor.AddBus(blockIndex, {"B"}, other));
    EXPECT_TRUE(editor.DeleteBus(other));
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "a", "b"));
    collector.GetExistingNames(blockIndex);
    EXPECT_EQ(calls.Calls("ISnapshot::GetIterBlocks"), 0U);
    EXPECT_TRUE(editor.SetName(blockIndex, "renamed"));
    collector.GetExistingNames(blockIndex);
    EXPECT_EQ(calls.Calls("ISnapshot::GetIterBlocks"), 1U);
}

TEST_F(NetNames, LackWhatCannotBeReadForNow) {
    AddNet("A");
    collector.AttachObserver(snapshot);
    const std::pair<const char*, Names> cases[] = {
        {"ISnapshot::GetIterBlocks", {"A"}},  // the tables stay
        {"INet::GetLabel", {""}},
        {"IObject::GetIndex", {}},
    };
    for (const auto& [operation, during] : cases) {
        SCOPED_TRACE(operation);
        EXPECT_TRUE(collector.Reload());
        Orin::DesignDb::Testing::FaultInjector faults;
        faults.Inject({.operation = operation, .persistent = true, .code = Orin::EErrorCode::StoreFailed});
        EXPECT_EQ(collector.Reload(), during != Names{"A"});
        EXPECT_EQ(collector.GetExistingNames(blockIndex), during);
        EXPECT_FALSE(faults.Failed().empty());
    }
}

TEST_F(NetNames, AFailedAttachIsLoggedAndGetsAsFarAsItCan) {
    static std::string s_message;
    zolt::Logging::SetSink([](const std::string& message) { s_message = message; });
    const std::string said = "Cannot attach NetsNamesCollector observer to Orin: ";
    collector.AttachObserver({});
    EXPECT_EQ(s_message.substr(0, said.size()), said);
    EXPECT_GT(s_message.size(), said.size());
    Orin::DesignDb::Testing::FaultInjector faults;
    faults.Inject({.operation = "ISnapshot::AddEventObserver", .code = Orin::EErrorCode::StoreFailed});
    collector.AttachObserver(snapshot);
    EXPECT_EQ(s_message, said + std::string(Orin::Result(Orin::EErrorCode::StoreFailed).GetDescription().View()));
    EXPECT_TRUE(collector.Reload());
    zolt::Logging::SetSink({});
}

}  // namespace
