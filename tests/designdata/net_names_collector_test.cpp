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
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{"A"});
    EXPECT_EQ(collector.GetExistingNames(sheetIndex), Names{});
    AddNet("");
    EXPECT_EQ(collector.GetExistingNames(blockIndex), (Names{"", "A"}));
    EXPECT_TRUE(editor.SetLabel(first, "B"));
    EXPECT_EQ(collector.GetExistingNames(blockIndex), (Names{"", "B"}));
    EXPECT_TRUE(editor.DeleteNet(first));
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{""});
    collector.DetachObserver();
    AddNet("C");
    EXPECT_EQ(collector.GetExistingNames(blockIndex), Names{""});
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

TEST_F(NetNames, AFailedAttachIsLogged) {
    static std::string s_message;
    zolt::Logging::SetSink([](const std::string& message) { s_message = message; });
    collector.AttachObserver({});
    zolt::Logging::SetSink({});
    EXPECT_EQ(s_message.rfind("Cannot attach NetsNamesCollector observer to Orin: ", 0), 0U);
    EXPECT_GT(s_message.size(), 51U);
    EXPECT_FALSE(collector.Reload());
}

}  // namespace
