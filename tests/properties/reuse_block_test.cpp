#include "properties/reuse_block.h"

#include <string>

#include <gtest/gtest.h>

#include "designdb/testing/fault_injector.h"
#include "tests/support/small_design.h"

namespace {

using Orin::EAttributeType;
using Orin::DesignDb::Testing::FaultInjector;
using Quill::Utils::ReuseBlock;

constexpr const char* Mark = "$$Internal_ReuseBlock";
constexpr const char* DynamicMark = "$$Internal_DynamicReuse";
constexpr EAttributeType System = EAttributeType::System;

using Reuse = Tests::SmallDesign;

TEST_F(Reuse, MarkReadsTrueInAnyCase) {
    for (const auto& [text, marked] :
         {std::pair("TRUE", true), {"true", true}, {"True", true}, {"1", false}, {"TRUE ", false}, {"", false}}) {
        EXPECT_TRUE(editor.SetAttribute(compIndex, Mark, text, System));
        EXPECT_TRUE(editor.SetAttribute(blockIndex, Mark, text));
        EXPECT_EQ(ReuseBlock::IsReuseBlock(*comp), marked) << text;
        EXPECT_EQ(ReuseBlock::IsReuseBlock(*block), marked) << text;
    }
}

TEST_F(Reuse, MarkOfAComponentIsASystemAttributeUnderOneNameOnly) {
    EXPECT_TRUE(editor.SetAttribute(compIndex, "ReuseBlock", "TRUE", System));
    EXPECT_TRUE(editor.SetAttribute(compIndex, Mark, "TRUE", EAttributeType::User));
    EXPECT_FALSE(ReuseBlock::IsReuseBlock(*comp));
    ReuseBlock::SetIsReuseBlock(writableComp, true);
    EXPECT_EQ(Value(comp, Mark, System), "TRUE");
    FaultInjector calls;
    ReuseBlock::SetIsReuseBlock(writableComp, true);
    EXPECT_EQ(calls.Calls("IComp::SetAttribute"), 1U) << "a component's mark is always written";
    ReuseBlock::SetIsReuseBlock(writableComp, false);
    EXPECT_EQ(Value(comp, Mark, System), "none");
}

TEST_F(Reuse, DynamicMarkCountsWithAnyText) {
    std::string text = "what stood there";
    EXPECT_TRUE(!ReuseBlock::IsDynamicReuse(*comp, text) && text.empty()) << text;
    for (const char* stored : {"", "FALSE", "channel 2"}) {
        ReuseBlock::SetIsDynamicReuse(writableComp, true, stored);
        EXPECT_EQ(Value(comp, DynamicMark, System), stored);
        EXPECT_TRUE(ReuseBlock::IsDynamicReuse(*comp, text) && ReuseBlock::IsDynamicReuse(*comp));
        EXPECT_EQ(text, stored);
    }
    ReuseBlock::SetIsDynamicReuse(writableComp, false, "not used");
    EXPECT_EQ(Value(comp, DynamicMark, System), "none");
}

TEST_F(Reuse, MarkOfOlderDesignsIsReadOnBlocksButNeverTouched) {
    EXPECT_TRUE(editor.SetAttribute(blockIndex, "ReuseBlock", "TRUE"));
    EXPECT_TRUE(ReuseBlock::IsReuseBlock(*block));
    ReuseBlock::SetIsReuseBlock(writableBlock, false);
    EXPECT_TRUE(ReuseBlock::IsReuseBlock(*block)) << "clearing does not reach it";
    EXPECT_TRUE(editor.SetAttribute(blockIndex, Mark, "FALSE"));
    EXPECT_FALSE(ReuseBlock::IsReuseBlock(*block)) << "the present mark stands before it";
    ReuseBlock::SetIsReuseBlock(writableBlock, false);
    EXPECT_EQ(Value(block, Mark) + Value(block, "ReuseBlock"), "noneTRUE");

    FaultInjector calls;
    ReuseBlock::SetIsReuseBlock(writableBlock, true);
    ReuseBlock::SetIsReuseBlock(writableBlock, true);
    EXPECT_EQ(calls.Calls("IBlock::SetAttribute"), 1U) << "a mark that reads exactly TRUE is not written again";
    EXPECT_TRUE(editor.SetAttribute(blockIndex, Mark, "true"));
    ReuseBlock::SetIsReuseBlock(writableBlock, true);
    EXPECT_EQ(Value(block, Mark), "TRUE");
}

TEST_F(Reuse, IsTopLevelWhenAHierarchicalComponentOfARootBlockStandsForIt) {
    Orin::Index child, grandchild, other;
    EXPECT_TRUE(editor.AddConfig({"default", blockIndex}, other));
    EXPECT_TRUE(editor.AddBlock({"child"}, child) && editor.AddBlock({"grandchild"}, grandchild));
    const auto add = [&](const Orin::Index& parent, const Orin::Index& stands, Orin::ECompType type) {
        EXPECT_TRUE(editor.AddComp(parent, {.label = "X", .types = type, .childBlock = stands}, other));
    };
    add(blockIndex, {}, Orin::ECompType::Hierarchical);  // stands for nothing and is passed over
    add(blockIndex, child, Orin::ECompType::Part);
    EXPECT_FALSE(ReuseBlock::IsTopLevelReuseBlock(child, snapshot)) << "not a hierarchical component";
    add(blockIndex, child, Orin::ECompType::Hierarchical);
    add(child, grandchild, Orin::ECompType::Hierarchical);
    EXPECT_TRUE(ReuseBlock::IsTopLevelReuseBlock(child, snapshot)) << "no mark is needed";
    EXPECT_FALSE(ReuseBlock::IsTopLevelReuseBlock(grandchild, snapshot)) << "it stands further down";
    EXPECT_FALSE(ReuseBlock::IsTopLevelReuseBlock(blockIndex, snapshot)) << "the root block itself";
    EXPECT_FALSE(ReuseBlock::IsTopLevelReuseBlock({}, snapshot) || ReuseBlock::IsTopLevelReuseBlock(child, {}));
}

}  // namespace
