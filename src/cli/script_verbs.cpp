// The commands of edit scripts.
#include <iterator>
#include <string_view>

#include "cli/script_run.h"
#include "interchange/words.h"

namespace Quill::Cli {

namespace {

using namespace Orin::DesignDb;
using Orin::EObjectType;
using Orin::Index;
using Kind = ScriptObject::Kind;

Orin::String AsString(const std::string& text) {
    return Orin::String(std::string_view(text));
}

// ---- Transactions, save points, locks ----

void Begin(ScriptRun& run, const ScriptStep&) {
    run.Require(run.Snapshot().BeginTransaction(Orin::ETransactionType::Edit));
}
void BeginImport(ScriptRun& run, const ScriptStep&) {
    run.Require(run.Snapshot().BeginTransaction(Orin::ETransactionType::Import));
}
void Commit(ScriptRun& run, const ScriptStep&) {
    run.Require(run.Snapshot().CommitTransaction());
}
void Rollback(ScriptRun& run, const ScriptStep&) {
    run.Require(run.Snapshot().RollbackTransaction());
}
void SavePoint(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().MakeSavePoint(AsString(step.texts[0])));
}
void Restore(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().RestoreSavePoint(AsString(step.texts[0])));
}

void Lock(ScriptRun& run, const ScriptStep& step) {
    Orin::ListT<Index> objects;
    for (const ScriptObject& object : step.objects)
        objects.Append(run.Find(object));
    Orin::RefPtr<Orin::LockToken> hold;
    run.Require(run.Editor().Lock(objects, hold));
    run.Hold(hold);
}
void Unlock(ScriptRun& run, const ScriptStep&) {
    run.ReleaseLocks();
}

// ---- Objects ----

// The object that contains one which is named from the block inwards.
ScriptObject Outer(const ScriptObject& object, Kind kind, std::size_t names) {
    return {kind, {object.names.begin(), object.names.begin() + static_cast<std::ptrdiff_t>(names)}, {}};
}

void Add(ScriptRun& run, const ScriptStep& step) {
    const ScriptObject& object = step.objects[0];
    if (object.kind == Kind::Design || object.kind == Kind::Index || object.kind == Kind::Variable)
        run.Fail("An object is added by its kind and name, not as " + object.Text());
    const auto block = [&] { return run.Find(Outer(object, Kind::Block, 1)); };
    const Orin::String name = AsString(object.names.back());
    Editor& editor = run.Editor();
    Index added;
    switch (object.kind) {
        case Kind::Block: {
            BlockSpec spec{name};
            spec.types = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
            run.Require(editor.AddBlock(spec, added));
            break;
        }
        case Kind::Sheet:
            run.Require(editor.AddGroup(block(), {name, Orin::EGroupType::Sheet}, added));
            break;
        case Kind::Cluster:
            run.Require(editor.AddGroup(block(), {name, Orin::EGroupType::Cluster}, added));
            break;
        case Kind::Comp:
            run.Require(editor.AddComp(block(), {name}, added));
            break;
        case Kind::Pin:
            run.Require(editor.AddPin(run.Find(Outer(object, Kind::Comp, 2)), {name}, added));
            break;
        case Kind::Net:
            run.Require(editor.AddNet(block(), {name}, added));
            break;
        case Kind::Bus:
            run.Require(editor.AddBus(block(), {name}, added));
            break;
        case Kind::Config:
            run.Require(editor.AddConfig({name, {}}, added));
            break;
        default: {  // a piece, named by its net and sheet
            const ScriptObject sheet{Kind::Sheet, {object.names[0], object.names[2]}, {}};
            run.Require(editor.AddNetQuill(run.Find(sheet), run.Find(Outer(object, Kind::Net, 2)), {}, added));
            break;
        }
    }
    run.Give(added);
}

struct Deletion {
    EObjectType type;
    Orin::Result (Editor::*remove)(const Index& object);
};

constexpr Deletion Deletions[] = {
    {EObjectType::Block, &Editor::DeleteBlock},   {EObjectType::Group, &Editor::DeleteGroup},
    {EObjectType::Comp, &Editor::DeleteComp},     {EObjectType::Pin, &Editor::DeletePin},
    {EObjectType::Net, &Editor::DeleteNet},       {EObjectType::Bus, &Editor::DeleteBus},
    {EObjectType::Config, &Editor::DeleteConfig}, {EObjectType::NetQuill, &Editor::DeleteItem},
    {EObjectType::Line, &Editor::DeleteItem},     {EObjectType::Rect, &Editor::DeleteItem},
    {EObjectType::Arc, &Editor::DeleteItem},      {EObjectType::Circle, &Editor::DeleteItem},
    {EObjectType::Text, &Editor::DeleteItem},
};

void Delete(ScriptRun& run, const ScriptStep& step) {
    const Index object = run.Find(step, 0);
    for (const Deletion& row : Deletions)
        if (row.type == object.GetType()) return run.Require((run.Editor().*row.remove)(object));
    run.Fail(step.objects[0].Text() + " is nothing that can be deleted");
}

void Rename(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().SetName(run.Find(step, 0), AsString(step.texts[0])));
}
void SetLabel(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().SetLabel(run.Find(step, 0), AsString(step.texts[0])));
}
void Set(ScriptRun& run, const ScriptStep& step) {
    run.Require(
        run.Editor().SetAttribute(run.Find(step, 0), AsString(step.texts[0]), AsString(step.texts[1]), step.family));
}
void Unset(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().RemoveAttribute(run.Find(step, 0), AsString(step.texts[0]), step.family));
}

// The set of the enumerators that the words stand for.
template <class E>
Orin::BitContainerT<E, 1> TypesOf(const ScriptRun& run, const std::vector<std::string>& words) {
    Orin::BitContainerT<E, 1> types;
    for (const std::string& word : words) {
        const std::optional<E> type = Interchange::ValueOf<E>(word);
        if (!type) run.Fail("There is no type " + word);
        types = types | *type;
    }
    return types;
}

void Type(ScriptRun& run, const ScriptStep& step) {
    const Index object = run.Find(step, 0);
    if (object.GetType() == EObjectType::Block) {
        run.Require(run.Editor().SetBlockTypes(object, TypesOf<Orin::EBlockType>(run, step.texts)));
    } else {
        run.Require(run.Editor().SetCompTypes(object, TypesOf<Orin::ECompType>(run, step.texts)));
    }
}
void Child(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().SetChildBlock(run.Find(step, 0), run.Find(step, 1)));
}
void Root(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().SetRoot(run.Find(step, 0), run.Find(step, 1)));
}

// ---- Connections and members ----

void Connect(ScriptRun& run, const ScriptStep& step) {
    const Index to = run.Find(step, 0);
    const Index what = run.Find(step, 1);
    run.Require(what.GetType() == EObjectType::Pin ? run.Editor().ConnectPin(to, what)
                                                   : run.Editor().ConnectNet(to, what));
}
void Disconnect(ScriptRun& run, const ScriptStep& step) {
    const Index from = run.Find(step, 0);
    run.Require(step.objects.size() == 1 ? run.Editor().DisconnectPin(from)
                                         : run.Editor().DisconnectNet(from, run.Find(step, 1)));
}
void Rip(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().RipBus(run.Find(step, 0), run.Find(step, 1)));
}
void Enter(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().AddMember(run.Find(step, 0), run.Find(step, 1)));
}
void Leave(ScriptRun& run, const ScriptStep& step) {
    run.Require(run.Editor().RemoveMember(run.Find(step, 0), run.Find(step, 1)));
}

// ---- Drawings ----

void Place(ScriptRun& run, const ScriptStep& step) {
    Orin::CompDataQuill data;
    data.position = step.points[0];
    run.Require(run.Editor().SetCompData(run.Find(step, 0), run.Find(step, 1), data));
}

// A piece of a net as a line from point to point.
void Draw(ScriptRun& run, const ScriptStep& step) {
    Orin::NetDataQuill data;
    for (const Orin::Point& point : step.points) {
        const Orin::ItemId id = data.segments.joints.Count() + 1;
        if (id > 1) data.segments.segments.Append({id - 1, id - 1, id});
        data.segments.joints.Append({id, point, {}});
    }
    run.Require(run.Editor().SetNetQuillData(run.Find(step, 0), data));
}

constexpr ScriptVerb Verbs[] = {
    {"", "begin", Begin},
    {"", "begin import", BeginImport},
    {"", "commit", Commit},
    {"", "rollback", Rollback},
    {"t", "savepoint", SavePoint},
    {"t", "restore", Restore},
    {"*", "lock", Lock},
    {"", "unlock", Unlock},
    {"o=", "add", Add},
    {"o", "delete", Delete},
    {"ot", "rename", Rename},
    {"ot", "label", SetLabel},
    {"ottf", "set", Set},
    {"otf", "unset", Unset},
    {"ow", "type", Type},
    {"oO", "child", Child},
    {"oo", "root", Root},
    {"oo", "connect", Connect},
    {"oO", "disconnect", Disconnect},
    {"oO", "rip", Rip},
    {"oo", "enter", Enter},
    {"oo", "leave", Leave},
    {"oox", "place", Place},
    {"op", "draw", Draw},
};

}  // namespace

std::span<const ScriptVerb> ScriptVerbs() {
    return Verbs;
}

}  // namespace Quill::Cli
