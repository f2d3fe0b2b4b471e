// Objects under their handles: deletion, undo, asked-for indexes, and components at places of the hierarchy.
#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

#define EXPECT_CODE(expression, code) EXPECT_EQ((expression).GetErrorCode(), static_cast<int>(EErrorCode::code))

struct OneBlock : SharedBlock {
    Index AddComp(const char* label, const Index& in, const Index& child = {}, const Index& index = {}) {
        Index added;
        EXPECT_TRUE(editor.AddComp(in, {label, {}, {}, {}, {}, child, {}, index}, added));
        return added;
    }
};

using ObjectHandles = OneBlock;
using AskedForIndexes = OneBlock;

std::string LabelOf(const IComp& comp) {
    String label;
    return comp.GetLabel(label) ? std::string(label.View()) : "?";
}

template <class T>
Strings Labels(IteratorT<T> iterator) {
    Strings labels;
    for (; iterator; ++iterator) {
        String label;
        EXPECT_TRUE(iterator->GetLabel(label));
        labels.emplace_back(label.View());
    }
    return labels;
}

}  // namespace

TEST_F(ObjectHandles, OfDeletedObjectsFailUntilTheDeletionIsTakenBack) {
    Index line;
    ASSERT_TRUE(editor.ConnectPin(net, pin) && editor.AddMember(group, comp) && editor.AddLine(group, {}, line));
    const ContainerT<const IBlock> b = client.Block(block);
    const ContainerT<const IComp> c = client.Comp(comp);
    const ContainerT<const IGroup> g = client.Group(group);
    ContainerT<const IBlockViewQuill> view;
    IteratorT<const IPin> pins;
    IteratorT<const ILineQuill> lines;
    ASSERT_TRUE(IBlockViewQuill::Init(view, *b, *g) && c->GetIterPins(pins) && view->GetIterLines(lines));
    const Strings before = Facts(client);

    ASSERT_TRUE(Begin());
    ASSERT_TRUE(editor.DeleteBlock(block));
    String text("kept");
    Index index;
    ListT<Index> members;
    ContainerT<const INet> itsNet;
    EXPECT_CODE(b.IsValid(), ObjectNotFound);
    EXPECT_CODE(b->GetName(text), ObjectNotFound);
    EXPECT_CODE(c->GetLabel(text), ObjectNotFound);
    EXPECT_CODE(g->GetListObjects(members), ObjectNotFound);
    EXPECT_CODE(view.IsValid(), ObjectNotFound);
    EXPECT_CODE((*pins).GetNet(itsNet), ObjectNotFound);
    EXPECT_CODE(lines->IsValid(), ObjectNotFound);
    EXPECT_STREQ(text, "kept");
    EXPECT_TRUE(c->GetIndex(index));
    EXPECT_EQ(index, comp);
    EXPECT_FALSE(++pins);
    EXPECT_FALSE(++lines);

    ASSERT_TRUE(RollBack());
    EXPECT_EQ(Facts(client), before);
    for (const IObject* object : std::initializer_list<const IObject*>{&*b, &*c, &*g, &*view})
        EXPECT_TRUE(object->IsValid());
    EXPECT_EQ(LabelOf(*c), "U1");
}

TEST_F(ObjectHandles, IterationsPassOverWhatIsDeletedBeforeThem) {
    const Index comps[] = {comp, AddComp("B", block), AddComp("C", block), AddComp("D", block)};
    IteratorT<const IComp> first;
    ASSERT_TRUE(client.Block(block)->GetIterComps(first, CompTypes()));
    IteratorT<const IComp> copy = first;
    for (const int deleted : {0, 1, 3})
        ASSERT_TRUE(editor.DeleteComp(comps[deleted]));
    EXPECT_EQ(LabelOf(*first), "?");
    ++first;
    EXPECT_EQ(LabelOf(*first), "C");
    EXPECT_FALSE(++first);
    EXPECT_FALSE(++first);
    EXPECT_EQ(Labels(++copy), Strings{"C"});
    int count = -1;
    EXPECT_TRUE(copy.GetCount(count));
    EXPECT_EQ(count, 1);
}

TEST_F(AskedForIndexes, LeadToTheirObjectsWhateverTheyLookLike) {
    const std::pair<const char*, Index> cases[] = {
        {"own kind, far beyond the last", Index(EObjectType::Comp, 0, 0xFFFFFFFF)},
        {"own kind, ahead of the last", Index(EObjectType::Comp, 0, 50)},
        {"own kind, in the gap left behind", Index(EObjectType::Comp, 0, 20)},
        {"own kind, with a middle part", Index(EObjectType::Comp, 7, 1)},
        {"top byte of a net that does not exist", Index(EObjectType::Net, 0, 3)},
        {"top byte 41", Index(EObjectType::BlockComp, 0, 3)},
        {"top byte 255", Index(0xFF00000000000001)},
        {"top byte 0", Index(1)},
    };
    Strings labels{"U1"};
    for (const auto& [why, index] : cases) {
        SCOPED_TRACE(why);
        EXPECT_EQ(AddComp(why, block, {}, index), index);
        EXPECT_CODE(editor.AddNet(block, {"clash", index}, net), AlreadyExists);
        labels.emplace_back(why);
    }
    for (const auto& [why, index] : cases) {
        ASSERT_TRUE(client.Comp(index)) << why;
        EXPECT_EQ(LabelOf(*client.Comp(index)), why);
        EXPECT_FALSE(client.Net(index));
    }
    // The database's own choices go around them.
    ASSERT_TRUE(editor.AddNet(block, {"X"}, net));
    EXPECT_EQ(net, Index(EObjectType::Net, 0, 4));
    IteratorT<const IComp> all;
    ASSERT_TRUE(client.Block(block)->GetIterComps(all, CompTypes()));
    EXPECT_EQ(Labels(std::move(all)), labels);
}

TEST_F(AskedForIndexes, MayBeUsedAgainWhenTheirObjectIsGone) {
    for (const Index wanted : {Index(EObjectType::Comp, 0, 5), Index(0xC800000000000009)}) {
        AddComp("old", block, {}, wanted);
        const ContainerT<const IComp> old = client.Comp(wanted);
        const Strings before = Facts(client);
        ASSERT_TRUE(Begin());
        ASSERT_TRUE(editor.DeleteComp(wanted));
        AddComp("new", block, {}, wanted);
        // A handle names its object, not whatever bears the index after it.
        EXPECT_CODE(old.IsValid(), ObjectNotFound);
        EXPECT_EQ(LabelOf(*client.Comp(wanted)), "new");
        MutableContainerT<IComp> writable;
        EXPECT_CODE(LockerT<IComp>::Lock(old, writable), ObjectNotFound);
        ASSERT_TRUE(LockerT<IComp>::Lock(client.Comp(wanted), writable));
        EXPECT_TRUE(writable->SetAttribute("a", "1", EAttributeType::User));
        ASSERT_TRUE(RollBack());
        EXPECT_EQ(LabelOf(*old), "old");
        EXPECT_EQ(Facts(client), before);
        ASSERT_TRUE(editor.DeleteComp(wanted));
    }
}

namespace {

// root: a -> middle: b -> leaf: c; a second use of middle in root: a2.
struct Hierarchy : OneBlock {
    Index middle, leaf, a, a2, b, c, config;
    ContainerT<const IPath> root, inMiddle, inLeaf;

    Hierarchy() {
        EXPECT_TRUE(editor.AddBlock({"middle"}, middle) && editor.AddBlock({"leaf"}, leaf));
        a = AddComp("a", block, middle);
        a2 = AddComp("a2", block, middle);
        b = AddComp("b", middle, leaf);
        c = AddComp("c", leaf);
        EXPECT_TRUE(editor.AddConfig({"board", block}, config));
        ContainerT<const IConfig> board;
        EXPECT_TRUE(client.snapshot->GetDefaultConfig(board, "board") && board->GetRoot(root));
        EXPECT_TRUE(root->GetChildPath(inMiddle, a) && inMiddle->GetChildPath(inLeaf, b));
    }

    static std::string Value(const IComp& comp, const char* name) {
        String value;
        return comp.GetAttribute(name, value, EAttributeType::User) ? std::string(value.View()) : "?";
    }
};

}  // namespace

TEST_F(Hierarchy, LeadsDownAndBackUp) {
    ListT<Index> way;
    ASSERT_TRUE(inLeaf->GetListHierarchyIndexes(way));
    EXPECT_EQ(way, (ListT<Index>{a, b}));
    ASSERT_TRUE(root->GetListHierarchyIndexes(way));
    EXPECT_TRUE(way.IsEmpty());

    ContainerT<const IComp> it;
    ASSERT_TRUE(inLeaf->GetCompInPath(it, c));
    Strings up;
    ContainerT<const IPath> path;
    while (it->GetPath(path)) {
        up.push_back(LabelOf(*it));
        if (!path->GetParentComp(it)) break;
    }
    EXPECT_EQ(up, (Strings{"c", "b", "a"}));
    EXPECT_CODE(root->GetParentComp(it), NoValue);
    EXPECT_CODE(client.Comp(c)->GetPath(path), NoValue);
    EXPECT_CODE(inLeaf->GetCompInPath(it, b), NotInHierarchy);
    EXPECT_CODE(root->GetChildPath(path, b), NotInHierarchy);

    Index index;
    ASSERT_TRUE(inLeaf->GetIndex(index) && client.objects.GetPath(path, index));
    ASSERT_TRUE(path->GetListHierarchyIndexes(way));
    EXPECT_EQ(way.Count(), 2U);
}

TEST_F(Hierarchy, PlacesEndWhenTheWayToThemDoesAndWhereABlockWouldContainItself) {
    ContainerT<const IPath> path;
    const Index loop = AddComp("loop", leaf, block);
    EXPECT_CODE(inLeaf->GetChildPath(path, loop), NotInHierarchy);

    Index index;
    ASSERT_TRUE(inLeaf->GetIndex(index));
    ContainerT<const IBlock> there;
    ASSERT_TRUE(editor.SetRoot(config, leaf));
    EXPECT_CODE(inLeaf.IsValid(), ObjectNotFound);
    EXPECT_CODE(inLeaf->GetBlock(there), ObjectNotFound);
    EXPECT_CODE(client.objects.GetPath(path, index), ObjectNotFound);
    EXPECT_CODE(editor.SetAttributeInPath(index, c, "n", "v"), ObjectNotFound);
    ASSERT_TRUE(editor.SetRoot(config, block));
    EXPECT_TRUE(inLeaf.IsValid());
    // Its own block stands above it now.
    ASSERT_TRUE(editor.SetChildBlock(b, block));
    EXPECT_CODE(inLeaf.IsValid(), ObjectNotFound);
    EXPECT_TRUE(inMiddle.IsValid());
    ASSERT_TRUE(editor.SetChildBlock(b, leaf));
    ASSERT_TRUE(editor.DeleteComp(a));
    EXPECT_CODE(inLeaf->GetBlock(there), ObjectNotFound);
}

TEST_F(Hierarchy, OccurrencesHaveAttributesOfTheirOwnAndFallBackToTheDefinition) {
    ContainerT<const IPath> second, inSecond;
    ContainerT<const IComp> one, two;
    ASSERT_TRUE(root->GetChildPath(second, a2) && second->GetChildPath(inSecond, b));
    ASSERT_TRUE(inLeaf->GetCompInPath(one, c) && inSecond->GetCompInPath(two, c));
    ASSERT_TRUE(editor.SetAttribute(c, "ref", "U?"));
    MutableContainerT<IComp> writable;
    ASSERT_TRUE(LockerT<IComp>::ShallowLock(one, writable));
    ASSERT_TRUE(writable->SetAttribute("ref", "U1", EAttributeType::User) &&
                writable->SetAttribute("own", "x", EAttributeType::User));
    EXPECT_EQ(Value(*one, "ref"), "U1");
    EXPECT_EQ(Value(*two, "ref"), "U?");
    EXPECT_EQ(Value(*client.Comp(c), "own"), "?");
    ListAttribute all;
    ASSERT_TRUE(one->GetAttributes(all));
    EXPECT_EQ(all, (ListAttribute{{"own", "x"}, {"ref", "U1"}}));
    ASSERT_TRUE(writable->RemoveAttribute("ref", EAttributeType::User));
    EXPECT_EQ(Value(*one, "ref"), "U?");
    // What only the definition has cannot be removed at a place.
    EXPECT_CODE(writable->RemoveAttribute("ref", EAttributeType::User), AttributeNotFound);
}

TEST_F(Hierarchy, RootComponentsAreListedOnceFilteredByType) {
    Index made;
    for (const auto& [name, top] : {std::pair("same root", block), {"no root", {}}, {"leaf", leaf}})
        ASSERT_TRUE(editor.AddConfig({name, top}, made));
    ASSERT_TRUE(editor.SetCompTypes(a2, CompTypes(ECompType::Hierarchical)));
    IteratorT<const IComp> comps;
    ASSERT_TRUE(client.snapshot->GetIterComps(comps, CompTypes()));
    EXPECT_EQ(Labels(std::move(comps)), (Strings{"U1", "a", "a2", "c"}));
    ASSERT_TRUE(client.snapshot->GetIterComps(comps, CompTypes(ECompType::Hierarchical)));
    EXPECT_EQ(Labels(std::move(comps)), Strings{"a2"});
}

}  // namespace Tests
