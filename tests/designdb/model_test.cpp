// The engine beside a naive model of it, under random commands from several clients.
#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "tests/designdb/engine_design.h"

namespace Tests {

using namespace Orin;

namespace {

// Everything by value, everything searched for: slow and plain.
struct Model {
    struct Object {
        Index index;
        EObjectType kind = EObjectType::None;
        Index owner;  // block of comps, nets, buses, groups; component of pins; group of lines
        std::string name, label;
        unsigned types = 0;
        std::map<std::pair<int, std::string>, std::string> attributes{};
        std::vector<Index> members{}, groups{}, pins{};
        std::set<std::pair<unsigned, Index>> nets{};  // of a bus, by order of adding
        Index child{}, definition{}, ripped{}, net{};
        std::map<Index, unsigned> drawn{};  // by view
    };

    std::vector<Object> objects;  // in the order of adding
    std::map<std::pair<int, std::string>, std::string> design;

    Object* Find(const Index& index) {
        for (Object& o : objects)
            if (o.index == index) return &o;
        return nullptr;
    }
    Object* Find(const Index& index, EObjectType kind) {
        Object* const found = Find(index);
        return found != nullptr && found->kind == kind ? found : nullptr;
    }

    void Delete(const Index& index) {
        std::vector<Index> inside;
        for (const Object& o : objects)
            if (o.owner == index) inside.push_back(o.index);
        for (const Index& i : inside)
            Delete(i);
        for (Object& o : objects) {
            std::erase(o.members, index);
            std::erase(o.groups, index);
            std::erase(o.pins, index);
            std::erase_if(o.nets, [&](const auto& entry) { return entry.second == index; });
            for (Index* const reference : {&o.child, &o.definition, &o.ripped, &o.net})
                if (*reference == index) *reference = Index();
            o.drawn.erase(index);
        }
        std::erase_if(objects, [&](const Object& o) { return o.index == index; });
    }

    // Whether `inner` is `outer` or lies inside it.
    bool IsInside(Index inner, const Index& outer) {
        if (outer.IsEmpty()) return true;
        while (inner != outer) {
            const Object* const o = Find(inner);
            if (o == nullptr || o->owner.IsEmpty()) return false;
            inner = o->owner;
        }
        return true;
    }

    std::vector<Index> Containers(const Index& index) {
        std::vector<Index> containers;
        for (const Object* o = Find(Find(index)->owner); o != nullptr; o = Find(o->owner))
            containers.push_back(o->index);
        return containers;
    }

    std::vector<std::string> Facts() {
        std::vector<std::string> facts;
        const auto attributes = [&](const std::string& owner, const auto& all) {
            for (const auto& [key, value] : all)
                facts.push_back(owner + " attribute " + std::to_string(key.first) + " " + key.second + "=" + value);
        };
        const auto each = [&](EObjectType kind, const Index& owner, const std::function<void(Object&)>& visit) {
            for (Object& o : objects)
                if (o.kind == kind && o.owner == owner) visit(o);
        };
        const auto refer = [&](const std::string& own, const char* as, const Index& to) {
            if (!to.IsEmpty()) facts.push_back(own + as + Text(to));
        };
        // What every object has; gives the name under which the rest is told.
        const auto begin = [&](const std::string& word, const Object& o, const std::string& said) {
            const std::string own = word + Text(o.index);
            facts.push_back((o.owner.IsEmpty() ? "" : "block " + Text(o.owner) + " ") + own + said);
            attributes(own, o.attributes);
            for (const Index& group : o.groups)
                refer(own, " in ", group);
            return own;
        };
        attributes("design", design);
        each(EObjectType::Block, Index(), [&](Object& b) {
            begin("block ", b, " name " + b.name + " types " + std::to_string(b.types));
            each(EObjectType::Group, b.index, [&](Object& g) {
                const std::string own = begin("group ", g, " name " + g.name + " type " + std::to_string(g.types));
                for (const Index& m : g.members)
                    refer(own, " member ", m);
                for (const Index& m : g.members)
                    if (Find(m)->kind == EObjectType::Comp && Find(m)->drawn.contains(g.index))
                        facts.push_back(own + " draws " + Text(m) + " " + std::to_string(Find(m)->drawn[g.index]));
                each(EObjectType::Line, g.index, [&](Object& l) {
                    facts.push_back(own + " line " + Text(l.index) + " " + std::to_string(l.types));
                });
            });
            each(EObjectType::Comp, b.index, [&](Object& c) {
                const std::string own =
                    begin("comp ", c, " label " + c.label + " name " + c.name + " types " + std::to_string(c.types));
                refer(own, " child ", c.child);
                refer(own, " definition ", c.definition);
                refer(own, " rips ", c.ripped);
                for (const Index& p : c.pins) {
                    facts.push_back(own + " pin " + Text(p) + " label " + Find(p)->label);
                    refer(own + " pin " + Text(p), " net ", Find(p)->net);
                }
            });
            each(EObjectType::Net, b.index, [&](Object& n) {
                const std::string own = begin("net ", n, " label " + n.label);
                for (const Object& o : objects)
                    if (o.nets.contains({n.index.Low(), n.index})) refer(own, " bus ", o.index);
                for (const Object& o : objects)
                    if (o.net == n.index) refer(own, " pin ", o.index);
            });
            each(EObjectType::Bus, b.index, [&](Object& u) {
                const std::string own = begin("bus ", u, " label " + u.label);
                for (const auto& [order, net] : u.nets)
                    refer(own, " net ", net);
            });
        });
        each(EObjectType::Config, Index(),
             [&](Object& c) { refer(begin("config ", c, " name " + c.name), " root ", c.child); });
        return facts;
    }
};

// A lock goes on standing where it was taken, also when its object is deleted, since a rollback may bring that back.
struct Held {
    std::size_t client;
    Index object;
    bool whole;
    std::vector<Index> containers;
    std::function<void()> release;
};

// Knows a design by its events alone: what is said of an object is looked at again when an event names that object, and
// at no other time.
class Mirror final : public EventObserver {
public:
    explicit Mirror(const TestClient& client) : m_client(client) {}

    std::vector<std::string> Sorted() const { return {m_facts.begin(), m_facts.end()}; }

    void OnAfterAdd(const Index&, const Index& object, EEventsAdd, bool) override { Look(Text(object)); }
    void OnAfterDelete(const Index&, const Index& object, EEventsDelete, bool) override { Look(Text(object)); }
    void OnAfterQuillDataChange(const Index&, const Index& o, EEventsQuillDataChange, bool) override { Look(Text(o)); }
    void OnAfterConnectivityChange(const Index&, const Index& o, EEventsConnectivityChange, bool) override {
        Look(Text(o));
    }
    // Ripping names the bus that is tapped now; which ripper it is and what that tapped before has to be looked for.
    void OnAfterChange(const Index& object, EEventsChange kind, bool) override {
        const bool design = object.GetType() == EObjectType::Snapshot;
        Look(kind == EEventsChange::RipBus ? "rips" : design ? "design" : Text(object));
    }

private:
    void Look(const std::string& word) {
        const auto speaksOf = [word = " " + word + " "](const std::string& fact) {
            return (" " + fact + " ").find(word) != fact.npos;
        };
        std::erase_if(m_facts, speaksOf);
        for (std::string& fact : Facts(m_client))
            if (speaksOf(fact)) m_facts.insert(std::move(fact));
    }

    const TestClient& m_client;
    std::multiset<std::string> m_facts;
};

class Game {
public:
    explicit Game(unsigned seed) : m_random(seed), m_database(NewDatabase()) {
        for (const char* const name : {"a", "b", "c"}) {
            m_clients.push_back(std::make_unique<TestClient>(m_database, name));
            // Every other game goes without observers, which is another way through the engine.
            if (seed % 2 == 0) continue;
            m_mirrors.push_back(std::make_unique<Mirror>(*m_clients.back()));
            EXPECT_TRUE(m_clients.back()->snapshot->AddEventObserver(m_mirrors.back().get()));
        }
        m_all.push_back(Index());
    }
    ~Game() {
        m_held.clear();
        m_clients.clear();
    }

    void Play(int steps) {
        for (int step = 0; step < steps; ++step) {
            SCOPED_TRACE(step);
            Step();
            std::vector<std::string> facts = m_model.Facts();
            ASSERT_EQ(Facts(*m_clients[Number(3)]), facts) << m_what;
            std::sort(facts.begin(), facts.end());
            for (const auto& mirror : m_mirrors)
                ASSERT_EQ(mirror->Sorted(), facts) << m_what;
        }
        for (auto& [name, model] : m_saved)
            ASSERT_EQ(Facts(TestClient(m_database, "reader", name.c_str())), model.Facts());
    }

private:
    using enum EObjectType;

    unsigned Number(std::size_t below) { return static_cast<unsigned>(m_random() % below); }
    // Any index that ever was, now and then; mostly a living one of the kind.
    Index Any(EObjectType kind) {
        std::vector<Index> living;
        for (const Model::Object& o : m_model.objects)
            if (o.kind == kind) living.push_back(o.index);
        return living.empty() || Number(12) == 0 ? m_all[Number(m_all.size())] : living[Number(living.size())];
    }
    // With what the model knows of it, if that is of the kind.
    using Choice = std::pair<Index, Model::Object*>;
    Choice Pick(EObjectType kind) {
        const Index index = Any(kind);
        return {index, m_model.Find(index, kind)};
    }
    // The same for an object of one of the kinds, known to the model whatever its kind.
    Choice PickOf(std::initializer_list<EObjectType> kinds) {
        const Index index = Any(kinds.begin()[Number(kinds.size())]);
        return {index, m_model.Find(index)};
    }
    static bool IsAmong(EObjectType kind, std::initializer_list<EObjectType> kinds) {
        return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
    }
    // A place in a list, which is at most at its end.
    static auto At(std::vector<Index>& list, unsigned place) {
        return list.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(place, list.size()));
    }
    std::string Word() { return std::string(1, static_cast<char>('a' + Number(5))); }
    TestClient& Client() { return *m_clients[m_client]; }

    // Whether locks and transactions let the client edit the object, alone or with what is inside it.
    bool May(const Index& object, bool whole = false) { return HasTurn() && IsFree(object, whole); }
    // The same for what is drawn on a group's view, which a lock of the group's attributes alone leaves free.
    bool MayDraw(const Index& group) {
        return HasTurn() && std::none_of(m_held.begin(), m_held.end(), [&](const Held& h) {
                   return h.client != m_client && h.whole && m_model.IsInside(group, h.object);
               });
    }
    bool HasTurn() const { return m_owner < 0 || m_owner == static_cast<int>(m_client); }
    bool IsFree(const Index& object, bool whole) {
        return std::none_of(m_held.begin(), m_held.end(), [&](const Held& h) {
            if (h.client == m_client) return false;
            if (h.object == object || (h.whole && m_model.IsInside(object, h.object))) return true;
            return whole && std::find(h.containers.begin(), h.containers.end(), object) != h.containers.end();
        });
    }

    // Of one edit in the engine; `allowed` is the model's opinion. True when both did it.
    bool Agree(const Result& result, bool allowed) {
        EXPECT_EQ(result.Succeeded(), allowed) << m_what << ": " << result.GetDescription();
        return result.Succeeded() && allowed;
    }
    Model::Object& Added(EObjectType kind, const Index& owner, const std::string& name, const std::string& label,
                         unsigned types = 0) {
        EXPECT_EQ(std::count(m_all.begin(), m_all.end(), m_made), 0) << "an index is given once";
        m_all.push_back(m_made);
        return m_model.objects.emplace_back(Model::Object{m_made, kind, owner, name, label, types});
    }

    void Step() {
        static constexpr struct {
            unsigned weight;
            const char* what;
            void (Game::*play)();
        } Commands[] = {{2, "add block", &Game::AddBlock},
                        {4, "add component", &Game::AddComp},
                        {3, "add net or bus", &Game::AddNetOrBus},
                        {2, "add group", &Game::AddGroup},
                        {2, "add pin", &Game::AddPin},
                        {1, "add line", &Game::AddLine},
                        {1, "add configuration", &Game::AddConfig},
                        {3, "add member", &Game::AddMember},
                        {2, "remove or move member", &Game::RemoveOrMoveMember},
                        {1, "connect pin", &Game::ConnectPin},
                        {1, "disconnect pin", &Game::DisconnectPin},
                        {1, "connect net", &Game::ConnectNet},
                        {1, "rip bus", &Game::RipBus},
                        {1, "set label", &Game::SetLabel},
                        {1, "set name", &Game::SetName},
                        {2, "set attribute", &Game::SetAttribute},
                        {1, "remove attribute", &Game::RemoveAttribute},
                        {1, "draw component", &Game::DrawComp},
                        {1, "delete", &Game::Delete},
                        {1, "transaction", &Game::Transaction},
                        {2, "lock", &Game::Lock},
                        {3, "save point", &Game::SavePoint}};
        m_client = Number(m_clients.size());
        m_editor = &Client().editor;
        m_word = Word();
        m_other = Word();
        const auto* command = Commands;
        for (unsigned at = Number(37); at >= command->weight; ++command)
            at -= command->weight;
        m_what = command->what;
        (this->*command->play)();
    }

    void AddBlock() {
        if (!Agree(m_editor->AddBlock({m_word.c_str(), BlockTypes::FromBits(Number(4))}, m_made), May(Index()))) return;
        BlockTypes types;
        EXPECT_TRUE(Client().Block(m_made)->GetType(types));
        Added(Block, Index(), m_word, "", types.Bits());
    }
    void AddComp() {
        const auto [block, b] = Pick(Block);
        const Index child = Number(3) == 0 ? Any(Block) : Index();
        const bool fits = b != nullptr && (child.IsEmpty() || m_model.Find(child, Block) != nullptr) && May(block);
        const DesignDb::CompSpec spec{m_word.c_str(), m_other.c_str(), ECompType::Part, {}, {}, child};
        if (Agree(m_editor->AddComp(block, spec, m_made), fits)) Added(Comp, block, m_other, m_word, 1).child = child;
    }
    void AddNetOrBus() {
        const auto [block, b] = Pick(Block);
        const bool net = Number(3) != 0;
        const Result result =
            net ? m_editor->AddNet(block, {m_word.c_str()}, m_made) : m_editor->AddBus(block, {m_word.c_str()}, m_made);
        if (Agree(result, b != nullptr && May(block))) Added(net ? Net : Bus, block, "", m_word);
    }
    void AddGroup() {
        const auto [block, b] = Pick(Block);
        if (m_model.Find(block, Group) != nullptr) return;  // groups inside groups are not played here
        if (Agree(m_editor->AddGroup(block, {m_word.c_str()}, m_made), b != nullptr && May(block)))
            Added(Group, block, m_word, "", 2);
    }
    void AddPin() {
        const auto [comp, c] = Pick(Comp);
        if (!Agree(m_editor->AddPin(comp, {m_word.c_str()}, m_made), c != nullptr && May(comp))) return;
        c->pins.push_back(m_made);
        Added(Pin, comp, "", m_word);
    }
    void AddLine() {
        const auto [group, g] = Pick(Group);
        LineDataQuill line;
        line.objectId = Number(100);
        if (m_model.Find(group, Comp) != nullptr) return;  // the view of a symbol
        if (Agree(m_editor->AddLine(group, line, m_made), g != nullptr && MayDraw(group)))
            Added(Line, group, "", "", line.objectId);
    }
    void AddConfig() {
        const auto [block, b] = Pick(Block);
        const bool taken = std::any_of(m_model.objects.begin(), m_model.objects.end(),
                                       [&](const Model::Object& o) { return o.kind == Config && o.name == m_word; });
        const bool fits = (block.IsEmpty() || b != nullptr) && !taken && May(Index());
        if (Agree(m_editor->AddConfig({m_word.c_str(), block}, m_made), fits))
            Added(Config, Index(), m_word, "").child = block;
    }

    void AddMember() {
        const auto [group, g] = Pick(Group);
        const auto [object, o] = PickOf({Comp, Comp, Net, Bus, Group});
        const bool fits = g != nullptr && o != nullptr && g != o && o->owner == g->owner && !o->owner.IsEmpty() &&
                          std::find(g->members.begin(), g->members.end(), object) == g->members.end() && May(group);
        const unsigned at = Number(4);
        if (!Agree(m_editor->AddMember(group, object, at), fits)) return;
        g->members.insert(At(g->members, at), object);
        if (o->kind != Group) o->groups.push_back(group);
    }
    void RemoveOrMoveMember() {
        const auto [group, g] = Pick(Group);
        const bool full = g != nullptr && !g->members.empty();
        const Index object = full ? g->members[Number(g->members.size())] : Any(Comp);
        const unsigned at = Number(4);
        const bool move = Number(2) == 0;
        const Result result = move ? m_editor->MoveMember(group, object, at) : m_editor->RemoveMember(group, object);
        if (!Agree(result, full && May(group))) return;
        std::erase(g->members, object);
        if (move) {
            g->members.insert(At(g->members, at), object);
        } else {
            std::erase(m_model.Find(object)->groups, group);
        }
    }
    void ConnectPin() {
        const auto [net, n] = Pick(Net);
        const auto [pin, p] = Pick(Pin);
        const bool fits = n != nullptr && p != nullptr && m_model.Find(p->owner)->owner == n->owner && p->net != net &&
                          May(net) && May(pin) && (p->net.IsEmpty() || May(p->net));
        if (Agree(m_editor->ConnectPin(net, pin), fits)) p->net = net;
    }
    void DisconnectPin() {
        const auto [pin, p] = Pick(Pin);
        const bool fits = p != nullptr && !p->net.IsEmpty() && May(pin) && May(p->net);
        if (Agree(m_editor->DisconnectPin(pin), fits)) p->net = Index();
    }
    void ConnectNet() {
        const auto [bus, b] = Pick(Bus);
        const auto [net, n] = Pick(Net);
        const bool fits = b != nullptr && n != nullptr && b->owner == n->owner && !b->nets.contains({net.Low(), net}) &&
                          May(bus) && May(net);
        if (Agree(m_editor->ConnectNet(bus, net), fits)) b->nets.insert({net.Low(), net});
    }
    void RipBus() {
        const auto [comp, c] = Pick(Comp);
        const auto [bus, b] = Pick(Bus);
        if (bus.IsEmpty()) return;
        const bool fits = c != nullptr && b != nullptr && b->owner == c->owner && May(comp) && May(bus);
        if (Agree(m_editor->RipBus(comp, bus), fits)) c->ripped = bus;
    }
    void SetLabel() {
        const auto [object, o] = PickOf({Comp, Pin, Net, Bus, Group});
        const bool fits = o != nullptr && IsAmong(o->kind, {Comp, Pin, Net, Bus}) && May(object);
        if (Agree(m_editor->SetLabel(object, m_word.c_str()), fits)) o->label = m_word;
    }
    void SetName() {
        const auto [object, o] = PickOf({Block, Comp, Group, Net});
        if (o != nullptr && o->kind == Config) return;
        const bool fits = o != nullptr && IsAmong(o->kind, {Block, Comp, Group}) && May(object);
        if (Agree(m_editor->SetName(object, m_word.c_str()), fits)) o->name = m_word;
    }
    void SetAttribute() {
        const auto [object, o] = PickOf({Block, Comp, Pin, Net, Bus, Group});
        const int type = static_cast<int>(Number(3));
        if (o != nullptr && o->kind == Config) return;
        const bool fits = (object.IsEmpty() || (o != nullptr && o->kind != Line)) && May(object);
        const auto asked = static_cast<EAttributeType>(type);
        if (!Agree(m_editor->SetAttribute(object, m_word.c_str(), m_other.c_str(), asked), fits)) return;
        (o != nullptr ? o->attributes : m_model.design)[{o != nullptr && o->kind == Comp ? type : 0, m_word}] = m_other;
    }
    void RemoveAttribute() {
        const auto [object, o] = PickOf({Block, Comp, Net, Group});
        if (o != nullptr && IsAmong(o->kind, {Config, Line})) return;
        auto* const all = object.IsEmpty() ? &m_model.design : o != nullptr ? &o->attributes : nullptr;
        const bool fits = all != nullptr && all->contains({0, m_word}) && May(object);
        if (Agree(m_editor->RemoveAttribute(object, m_word.c_str()), fits)) all->erase({0, m_word});
    }
    void DrawComp() {
        const auto [group, g] = Pick(Group);
        const auto [comp, c] = Pick(Comp);
        CompDataQuill data;
        data.objectId = Number(100);
        if (m_model.Find(group, Comp) != nullptr) return;
        const bool fits = g != nullptr && c != nullptr && g->owner == c->owner && MayDraw(group);
        if (Agree(m_editor->SetCompData(group, comp, data), fits)) c->drawn[group] = data.objectId;
    }

    void Delete() {
        static constexpr std::pair<EObjectType, Result (DesignDb::Editor::*)(const Index&)> Ways[] = {
            {Block, &DesignDb::Editor::DeleteBlock}, {Comp, &DesignDb::Editor::DeleteComp},
            {Pin, &DesignDb::Editor::DeletePin},     {Net, &DesignDb::Editor::DeleteNet},
            {Bus, &DesignDb::Editor::DeleteBus},     {Group, &DesignDb::Editor::DeleteGroup},
            {Line, &DesignDb::Editor::DeleteItem},   {Config, &DesignDb::Editor::DeleteConfig},
        };
        const auto& [kind, remove] = Ways[Number(std::size(Ways))];
        const auto [index, o] = Pick(kind);
        // A line lies in its group's view, which locks of the group cover.
        if (Agree((m_editor->*remove)(index), o != nullptr && May(index, true))) m_model.Delete(index);
    }

    void Transaction() {
        const ISnapshot& design = *Client().snapshot;
        const bool own = m_owner == static_cast<int>(m_client);
        bool active = false;
        EXPECT_TRUE(design.IsTransactionActive(active));
        EXPECT_EQ(active, own);
        const unsigned what = Number(3);
        if (what == 0) {
            if (!Agree(design.BeginTransaction(ETransactionType::Edit), m_owner < 0)) return;
            m_owner = static_cast<int>(m_client);
            m_before = m_model;
        } else if (Agree(what == 1 ? design.CommitTransaction() : design.RollbackTransaction(), own)) {
            m_owner = -1;
            if (what == 2) m_model = m_before;
        }
    }

    void SavePoint() {
        const bool known = m_saved.contains(m_word);
        switch (Number(3)) {
            case 0:
                if (Agree(m_editor->MakeSavePoint(m_word.c_str()), m_owner < 0 && !known)) m_saved[m_word] = m_model;
                break;
            case 1: {
                const bool free =
                    std::all_of(m_held.begin(), m_held.end(), [&](const Held& h) { return h.client == m_client; });
                if (Agree(m_editor->RestoreSavePoint(m_word.c_str()), known && HasTurn() && free))
                    m_model = m_saved[m_word];
                break;
            }
            default:
                if (Number(4) == 0 && Agree(m_database.RemoveSnapshot(m_word.c_str()), known)) m_saved.erase(m_word);
        }
    }

    template <class T>
    void Hold(const ContainerT<const T>& handle, const Index& index, bool whole) {
        MutableContainerT<T> writable;
        const bool free = IsFree(index, whole);
        Result result = whole ? LockerT<T>::Lock(handle, writable) : Result(EErrorCode::InvalidArgument);
        if constexpr (requires { LockerT<T>::ShallowLock(handle, writable); })
            if (!whole) result = LockerT<T>::ShallowLock(handle, writable);
        if (!Agree(result, free && static_cast<bool>(handle))) return;
        m_held.push_back(
            {m_client, index, whole, m_model.Containers(index), [writable]() mutable { writable.Release(); }});
    }

    void Lock() {
        if (!m_held.empty() && Number(2) == 0) {
            m_held.erase(m_held.begin() + static_cast<std::ptrdiff_t>(Number(m_held.size())));
            return;
        }
        if (m_held.size() > 3) return;
        const bool whole = Number(2) == 0;
        const auto [index, o] = PickOf({Block, Comp, Group});
        if (o == nullptr) return;
        if (o->kind == Block) Hold(Client().Block(index), index, true);
        if (o->kind == Comp) Hold(Client().Comp(index), index, whole);
        if (o->kind == Group) Hold(Client().Group(index), index, whole);
    }

    std::mt19937 m_random;
    DesignDb::Database m_database;
    std::vector<std::unique_ptr<TestClient>> m_clients;
    std::vector<std::unique_ptr<Mirror>> m_mirrors;
    std::vector<Held> m_held;
    std::vector<Index> m_all;  // every index that ever was, and the empty one
    Model m_model, m_before;
    std::map<std::string, Model> m_saved;
    // Of the step that is played:
    std::size_t m_client = 0;
    DesignDb::Editor* m_editor = nullptr;
    Index m_made;
    std::string m_what, m_word, m_other;

    int m_owner = -1;  // of the transaction
};

}  // namespace

// Sanitizers find in a few games what there is to find, and take twenty times as long. Other systems would play the
// same games.
#if defined(QUILL_SANITIZED) || defined(_WIN32) || defined(__i386__)
constexpr unsigned Games = 60;
#else
constexpr unsigned Games = 400;
#endif

TEST(DesignDb, AgreesWithANaiveModelUnderRandomCommandsOfThreeClients) {
    for (unsigned seed = 0; seed < Games; ++seed) {
        SCOPED_TRACE(seed);
        Game game(seed);
        game.Play(150);
        if (testing::Test::HasFailure()) return;
    }
}

}  // namespace Tests
