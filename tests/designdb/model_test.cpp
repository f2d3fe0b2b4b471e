// The engine beside a naive model of it, under random commands from several clients.
#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <tuple>

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
        std::map<std::pair<int, std::string>, std::string> attributes;
        std::vector<Index> members, groups, pins;
        std::set<std::pair<unsigned, Index>> nets;  // of a bus, by order of adding
        Index child, definition, ripped, net;
        std::map<Index, unsigned> drawn;  // by view
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
    bool Has(const Index& index) { return Find(index) != nullptr; }

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
        const auto in = [&](const std::string& own, const Object& o) {
            for (const Index& group : o.groups)
                facts.push_back(own + " in " + Text(group));
        };
        const auto each = [&](EObjectType kind, const Index& owner, const std::function<void(Object&)>& visit) {
            for (Object& o : objects)
                if (o.kind == kind && o.owner == owner) visit(o);
        };
        attributes("design", design);
        each(EObjectType::Block, Index(), [&](Object& b) {
            const std::string block = "block " + Text(b.index);
            facts.push_back(block + " name " + b.name + " types " + std::to_string(b.types));
            attributes(block, b.attributes);
            each(EObjectType::Group, b.index, [&](Object& g) {
                const std::string own = "group " + Text(g.index);
                facts.push_back(block + " " + own + " name " + g.name + " type " + std::to_string(g.types));
                attributes(own, g.attributes);
                for (const Index& m : g.members)
                    facts.push_back(own + " member " + Text(m));
                for (const Index& m : g.members)
                    if (Find(m)->kind == EObjectType::Comp && Find(m)->drawn.contains(g.index))
                        facts.push_back(own + " draws " + Text(m) + " " + std::to_string(Find(m)->drawn[g.index]));
                each(EObjectType::Line, g.index, [&](Object& l) {
                    facts.push_back(own + " line " + Text(l.index) + " " + std::to_string(l.types));
                });
            });
            each(EObjectType::Comp, b.index, [&](Object& c) {
                const std::string own = "comp " + Text(c.index);
                facts.push_back(block + " " + own + " label " + c.label + " name " + c.name + " types " +
                                std::to_string(c.types));
                if (!c.child.IsEmpty()) facts.push_back(own + " child " + Text(c.child));
                if (!c.definition.IsEmpty()) facts.push_back(own + " definition " + Text(c.definition));
                attributes(own, c.attributes);
                in(own, c);
                if (!c.ripped.IsEmpty()) facts.push_back(own + " rips " + Text(c.ripped));
                for (const Index& p : c.pins) {
                    facts.push_back(own + " pin " + Text(p) + " label " + Find(p)->label);
                    if (!Find(p)->net.IsEmpty())
                        facts.push_back(own + " pin " + Text(p) + " net " + Text(Find(p)->net));
                }
            });
            each(EObjectType::Net, b.index, [&](Object& n) {
                const std::string own = "net " + Text(n.index);
                facts.push_back(block + " " + own + " label " + n.label);
                attributes(own, n.attributes);
                in(own, n);
                for (const Object& o : objects)
                    for (const auto& [order, net] : o.nets)
                        if (net == n.index) facts.push_back(own + " bus " + Text(o.index));
                for (const Object& o : objects)
                    if (o.net == n.index) facts.push_back(own + " pin " + Text(o.index));
            });
            each(EObjectType::Bus, b.index, [&](Object& u) {
                const std::string own = "bus " + Text(u.index);
                facts.push_back(block + " " + own + " label " + u.label);
                attributes(own, u.attributes);
                in(own, u);
                for (const auto& [order, net] : u.nets)
                    facts.push_back(own + " net " + Text(net));
            });
        });
        each(EObjectType::Config, Index(), [&](Object& c) {
            facts.push_back("config " + Text(c.index) + " name " + c.name);
            if (!c.child.IsEmpty()) facts.push_back("config " + Text(c.index) + " root " + Text(c.child));
        });
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
    // Ripping names the bus that is tapped now; which ripper it is and what that tapped before has to be looked for.
    void OnAfterChange(const Index& object, EEventsChange kind, bool) override {
        Look(kind == EEventsChange::RipBus               ? "rips"
             : object.GetType() == EObjectType::Snapshot ? "design"
                                                         : Text(object));
    }
    void OnAfterQuillDataChange(const Index&, const Index& object, EEventsQuillDataChange, bool) override {
        Look(Text(object));
    }
    void OnAfterConnectivityChange(const Index&, const Index& object, EEventsConnectivityChange, bool) override {
        Look(Text(object));
    }

private:
    void Look(const std::string& word) {
        const auto speaksOf = [word = " " + word + " "](const std::string& fact) {
            return (" " + fact + " ").find(word) != std::string::npos;
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
    unsigned Number(unsigned below) { return static_cast<unsigned>(m_random() % below); }
    // Any index that ever was, now and then; mostly a living one of the kind.
    Index Any(EObjectType kind) {
        std::vector<Index> living;
        for (const Model::Object& o : m_model.objects)
            if (o.kind == kind) living.push_back(o.index);
        if (living.empty() || Number(12) == 0) return m_all[Number(static_cast<unsigned>(m_all.size()))];
        return living[Number(static_cast<unsigned>(living.size()))];
    }
    Index AnyOf(std::initializer_list<EObjectType> kinds) {
        return Any(kinds.begin()[Number(static_cast<unsigned>(kinds.size()))]);
    }
    // A place in a list of that size, as iterators count.
    static std::ptrdiff_t At(unsigned place, std::size_t size) {
        return static_cast<std::ptrdiff_t>(std::min<std::size_t>(place, size));
    }
    std::string Word() { return std::string(1, static_cast<char>('a' + Number(5))); }

    // Whether locks and transactions let the client edit the object, alone or with what is inside it.
    bool May(const Index& object, bool whole = false) {
        if (m_owner >= 0 && m_owner != static_cast<int>(m_client)) return false;
        return IsFree(object, whole);
    }
    // The same for what is drawn on a group's view, which a lock of the group's attributes alone leaves free.
    bool MayDraw(const Index& group) {
        if (m_owner >= 0 && m_owner != static_cast<int>(m_client)) return false;
        return std::none_of(m_held.begin(), m_held.end(), [&](const Held& h) {
            return h.client != m_client && h.whole && m_model.IsInside(group, h.object);
        });
    }
    bool IsFree(const Index& object, bool whole) {
        return std::none_of(m_held.begin(), m_held.end(), [&](const Held& h) {
            if (h.client == m_client) return false;
            if (h.object == object || (h.whole && m_model.IsInside(object, h.object))) return true;
            return whole && std::find(h.containers.begin(), h.containers.end(), object) != h.containers.end();
        });
    }

    // Runs one edit in the engine; `allowed` is the model's opinion. True when both did it.
    bool Agree(const Result& result, bool allowed) {
        EXPECT_EQ(result.Succeeded(), allowed) << m_what << ": " << result.GetDescription();
        return result.Succeeded() && allowed;
    }
    void Added(const Index& index, EObjectType kind, const Index& owner, const std::string& name,
               const std::string& label, unsigned types = 0) {
        Model::Object o;
        o.index = index;
        o.kind = kind;
        o.owner = owner;
        o.name = name;
        o.label = label;
        o.types = types;
        m_model.objects.push_back(o);
        m_all.push_back(index);
    }

    void Step() {
        m_client = Number(3);
        TestClient& client = *m_clients[m_client];
        DesignDb::Editor& editor = client.editor;
        const std::string word = Word();
        const std::string other = Word();
        Index made;
        using enum EObjectType;
        switch (const unsigned command = Number(37)) {
            case 0:
            case 1:
                m_what = "add block";
                if (Agree(editor.AddBlock({word.c_str(), BlockTypes::FromBits(Number(4))}, made), May(Index())))
                    Added(made, Block, Index(), word, "",
                          static_cast<unsigned>(client.Block(made) ? BitsOf(client, made) : 0));
                break;
            case 2:
            case 3:
            case 4:
            case 5: {
                m_what = "add component";
                const Index block = Any(Block);
                const Index child = Number(3) == 0 ? Any(Block) : Index();
                const bool fits = m_model.Find(block, Block) != nullptr &&
                                  (child.IsEmpty() || m_model.Find(child, Block) != nullptr) && May(block);
                if (!Agree(editor.AddComp(block, {word.c_str(), other.c_str(), ECompType::Part, {}, {}, child}, made),
                           fits))
                    break;
                Added(made, Comp, block, other, word, 1);
                m_model.objects.back().child = child;
                break;
            }
            case 6:
            case 7:
            case 8: {
                m_what = "add net or bus";
                const Index block = Any(Block);
                const EObjectType kind = command != 8 ? Net : Bus;
                const Result result = kind == Net ? editor.AddNet(block, {word.c_str()}, made)
                                                  : editor.AddBus(block, {word.c_str()}, made);
                if (Agree(result, m_model.Find(block, Block) != nullptr && May(block)))
                    Added(made, kind, block, "", word);
                break;
            }
            case 9:
            case 10: {
                m_what = "add group";
                const Index block = Any(Block);
                if (m_model.Find(block, Group) != nullptr) break;  // groups inside groups are not played here
                if (Agree(editor.AddGroup(block, {word.c_str()}, made),
                          m_model.Find(block, Block) != nullptr && May(block)))
                    Added(made, Group, block, word, "", 2);
                break;
            }
            case 11:
            case 12: {
                m_what = "add pin";
                const Index comp = Any(Comp);
                Model::Object* const o = m_model.Find(comp, Comp);
                if (!Agree(editor.AddPin(comp, {word.c_str()}, made), o != nullptr && May(comp))) break;
                o->pins.push_back(made);
                Added(made, Pin, comp, "", word);
                break;
            }
            case 13: {
                m_what = "add line";
                const Index group = Any(Group);
                LineDataQuill line;
                line.objectId = Number(100);
                if (m_model.Find(group, Comp) != nullptr) break;  // the view of a symbol
                if (Agree(editor.AddLine(group, line, made), m_model.Find(group, Group) != nullptr && MayDraw(group)))
                    Added(made, Line, group, "", "", line.objectId);
                break;
            }
            case 14: {
                m_what = "add configuration";
                const Index block = Any(Block);
                const bool taken =
                    std::any_of(m_model.objects.begin(), m_model.objects.end(),
                                [&](const Model::Object& o) { return o.kind == Config && o.name == word; });
                const bool fits = (block.IsEmpty() || m_model.Find(block, Block) != nullptr) && !taken && May(Index());
                if (!Agree(editor.AddConfig({word.c_str(), block}, made), fits)) break;
                Added(made, Config, Index(), word, "");
                m_model.objects.back().child = block;
                break;
            }
            case 15:
            case 16:
            case 17: {
                m_what = "add member";
                const Index group = Any(Group);
                const Index object = AnyOf({Comp, Comp, Net, Bus, Group});
                Model::Object* const g = m_model.Find(group, Group);
                Model::Object* const o = m_model.Find(object);
                const bool fits =
                    g != nullptr && o != nullptr && g != o && o->owner == g->owner && !o->owner.IsEmpty() &&
                    std::find(g->members.begin(), g->members.end(), object) == g->members.end() && May(group);
                const unsigned at = Number(4);
                if (!Agree(editor.AddMember(group, object, at), fits)) break;
                g->members.insert(g->members.begin() + At(at, g->members.size()), object);
                if (o->kind != Group) o->groups.push_back(group);
                break;
            }
            case 18:
            case 19: {
                m_what = "remove or move member";
                const Index group = Any(Group);
                Model::Object* const g = m_model.Find(group, Group);
                const Index object = g != nullptr && !g->members.empty()
                                         ? g->members[Number(static_cast<unsigned>(g->members.size()))]
                                         : Any(Comp);
                const bool member =
                    g != nullptr && std::find(g->members.begin(), g->members.end(), object) != g->members.end();
                const unsigned at = Number(4);
                const bool move = command == 19;
                const Result result = move ? editor.MoveMember(group, object, at) : editor.RemoveMember(group, object);
                if (!Agree(result, member && May(group))) break;
                std::erase(g->members, object);
                if (move) {
                    g->members.insert(g->members.begin() + At(at, g->members.size()), object);
                } else {
                    std::erase(m_model.Find(object)->groups, group);
                }
                break;
            }
            case 20: {
                m_what = "connect pin";
                const Index net = Any(Net);
                const Index pin = Any(Pin);
                Model::Object* const n = m_model.Find(net, Net);
                Model::Object* const p = m_model.Find(pin, Pin);
                const bool fits = n != nullptr && p != nullptr && m_model.Find(p->owner)->owner == n->owner &&
                                  p->net != net && May(net) && May(pin) && (p->net.IsEmpty() || May(p->net));
                if (Agree(editor.ConnectPin(net, pin), fits)) p->net = net;
                break;
            }
            case 21: {
                m_what = "disconnect pin";
                const Index pin = Any(Pin);
                Model::Object* const p = m_model.Find(pin, Pin);
                if (Agree(editor.DisconnectPin(pin), p != nullptr && !p->net.IsEmpty() && May(pin) && May(p->net)))
                    p->net = Index();
                break;
            }
            case 22: {
                m_what = "connect net";
                const Index bus = Any(Bus);
                const Index net = Any(Net);
                Model::Object* const b = m_model.Find(bus, Bus);
                Model::Object* const n = m_model.Find(net, Net);
                const bool fits = b != nullptr && n != nullptr && b->owner == n->owner &&
                                  !b->nets.contains({n->index.Low(), net}) && May(bus) && May(net);
                if (Agree(editor.ConnectNet(bus, net), fits)) b->nets.insert({net.Low(), net});
                break;
            }
            case 23: {
                m_what = "rip bus";
                const Index comp = Any(Comp);
                const Index bus = Any(Bus);
                Model::Object* const c = m_model.Find(comp, Comp);
                Model::Object* const b = m_model.Find(bus, Bus);
                if (bus.IsEmpty()) break;
                if (Agree(editor.RipBus(comp, bus),
                          c != nullptr && b != nullptr && b->owner == c->owner && May(comp) && May(bus)))
                    c->ripped = bus;
                break;
            }
            case 24: {
                m_what = "set label";
                const Index object = AnyOf({Comp, Pin, Net, Bus, Group});
                Model::Object* const o = m_model.Find(object);
                const bool fits = o != nullptr &&
                                  (o->kind == Comp || o->kind == Pin || o->kind == Net || o->kind == Bus) &&
                                  May(object);
                if (Agree(editor.SetLabel(object, word.c_str()), fits)) o->label = word;
                break;
            }
            case 25: {
                m_what = "set name";
                const Index object = AnyOf({Block, Comp, Group, Net});
                Model::Object* const o = m_model.Find(object);
                if (o != nullptr && o->kind == Config) break;
                const bool fits =
                    o != nullptr && (o->kind == Block || o->kind == Comp || o->kind == Group) && May(object);
                if (Agree(editor.SetName(object, word.c_str()), fits)) o->name = word;
                break;
            }
            case 26:
            case 27: {
                m_what = "set attribute";
                const Index object = AnyOf({Block, Comp, Pin, Net, Bus, Group});
                Model::Object* const o = m_model.Find(object);
                const int type = static_cast<int>(Number(3));
                const bool fits = (object.IsEmpty() || (o != nullptr && o->kind != Line)) && May(object);
                if (o != nullptr && o->kind == Config) break;
                if (!Agree(editor.SetAttribute(object, word.c_str(), other.c_str(), static_cast<EAttributeType>(type)),
                           fits))
                    break;
                (o != nullptr ? o->attributes : m_model.design)[{o != nullptr && o->kind == Comp ? type : 0, word}] =
                    other;
                break;
            }
            case 28: {
                m_what = "remove attribute";
                const Index object = AnyOf({Block, Comp, Net, Group});
                Model::Object* const o = m_model.Find(object);
                if (o != nullptr && (o->kind == Config || o->kind == Line)) break;
                auto* const all = object.IsEmpty() ? &m_model.design : o != nullptr ? &o->attributes : nullptr;
                const bool fits = all != nullptr && all->contains({0, word}) && May(object);
                if (Agree(editor.RemoveAttribute(object, word.c_str()), fits)) all->erase({0, word});
                break;
            }
            case 29: {
                m_what = "draw component";
                const Index group = Any(Group);
                const Index comp = Any(Comp);
                Model::Object* const g = m_model.Find(group, Group);
                Model::Object* const c = m_model.Find(comp, Comp);
                CompDataQuill data;
                data.objectId = Number(100);
                if (m_model.Find(group, Comp) != nullptr) break;
                const bool fits = g != nullptr && c != nullptr && g->owner == c->owner && MayDraw(group);
                if (Agree(editor.SetCompData(group, comp, data), fits)) c->drawn[group] = data.objectId;
                break;
            }
            case 30: {
                m_what = "delete";
                Delete(editor);
                break;
            }
            case 31: {
                m_what = "transaction";
                Transaction(client);
                break;
            }
            case 34: {
                m_what = "make save point";
                if (Agree(editor.MakeSavePoint(word.c_str()), m_owner < 0 && !m_saved.contains(word)))
                    m_saved[word] = m_model;
                break;
            }
            case 35: {
                m_what = "restore save point";
                const bool free =
                    std::all_of(m_held.begin(), m_held.end(), [&](const Held& h) { return h.client == m_client; });
                if (Agree(editor.RestoreSavePoint(word.c_str()), m_saved.contains(word) && May(Index()) && free))
                    m_model = m_saved[word];
                break;
            }
            case 36: {
                m_what = "remove save point";
                if (Number(4) == 0 && Agree(m_database.RemoveSnapshot(word.c_str()), m_saved.contains(word)))
                    m_saved.erase(word);
                break;
            }
            default: {
                m_what = "lock " + std::to_string(command);
                Lock(client);
                break;
            }
        }
    }

    static unsigned BitsOf(const TestClient& client, const Index& block) {
        BlockTypes types;
        EXPECT_TRUE(client.Block(block)->GetType(types));
        return types.Bits();
    }

    void Delete(DesignDb::Editor& editor) {
        using enum EObjectType;
        struct Way {
            EObjectType kind;
            Result (DesignDb::Editor::*remove)(const Index&);
        };
        static constexpr Way Ways[] = {
            {Block, &DesignDb::Editor::DeleteBlock}, {Comp, &DesignDb::Editor::DeleteComp},
            {Pin, &DesignDb::Editor::DeletePin},     {Net, &DesignDb::Editor::DeleteNet},
            {Bus, &DesignDb::Editor::DeleteBus},     {Group, &DesignDb::Editor::DeleteGroup},
            {Line, &DesignDb::Editor::DeleteItem},   {Config, &DesignDb::Editor::DeleteConfig},
        };
        const Way& way = Ways[Number(std::size(Ways))];
        const Index index = Any(way.kind);
        Model::Object* const o = m_model.Find(index, way.kind);
        // A line lies in its group's view, which locks of the group cover.
        if (Agree((editor.*way.remove)(index), o != nullptr && May(index, true))) m_model.Delete(index);
    }

    void Transaction(TestClient& client) {
        const bool own = m_owner == static_cast<int>(m_client);
        bool active = false;
        EXPECT_TRUE(client.snapshot->IsTransactionActive(active));
        EXPECT_EQ(active, own);
        switch (Number(3)) {
            case 0:
                if (!Agree(client.snapshot->BeginTransaction(ETransactionType::Edit), m_owner < 0)) break;
                m_owner = static_cast<int>(m_client);
                m_before = m_model;
                break;
            case 1:
                if (Agree(client.snapshot->CommitTransaction(), own)) m_owner = -1;
                break;
            default:
                if (!Agree(client.snapshot->RollbackTransaction(), own)) break;
                m_owner = -1;
                m_model = m_before;
                break;
        }
    }

    template <class T>
    void Hold(const ContainerT<const T>& handle, const Index& index, bool whole) {
        MutableContainerT<T> writable;
        const bool free = IsFree(index, whole);
        Result result = whole ? LockerT<T>::Lock(handle, writable) : Result(EErrorCode::InvalidArgument);
        if constexpr (requires { LockerT<T>::ShallowLock(handle, writable); })
            if (!whole) result = LockerT<T>::ShallowLock(handle, writable);
        if (Agree(result, free && static_cast<bool>(handle)))
            m_held.push_back(
                {m_client, index, whole, m_model.Containers(index), [writable]() mutable { writable.Release(); }});
    }

    void Lock(TestClient& client) {
        using enum EObjectType;
        if (!m_held.empty() && Number(2) == 0) {
            m_held.erase(m_held.begin() + At(Number(static_cast<unsigned>(m_held.size())), m_held.size()));
            return;
        }
        if (m_held.size() > 3) return;
        const bool whole = Number(2) == 0;
        switch (Number(3)) {
            case 0: {
                const Index index = Any(Block);
                if (m_model.Find(index, Block) != nullptr) Hold(client.Block(index), index, true);
                break;
            }
            case 1: {
                const Index index = Any(Comp);
                if (m_model.Find(index, Comp) != nullptr) Hold(client.Comp(index), index, whole);
                break;
            }
            default: {
                const Index index = Any(Group);
                if (m_model.Find(index, Group) != nullptr) Hold(client.Group(index), index, whole);
                break;
            }
        }
    }

    std::mt19937 m_random;
    DesignDb::Database m_database;
    std::vector<std::unique_ptr<TestClient>> m_clients;
    std::vector<std::unique_ptr<Mirror>> m_mirrors;
    std::vector<Held> m_held;
    std::vector<Index> m_all;  // every index that ever was, and the empty one
    Model m_model, m_before;
    std::map<std::string, Model> m_saved;
    std::size_t m_client = 0;
    int m_owner = -1;  // of the transaction
    std::string m_what;
};

}  // namespace

TEST(DesignDb, AgreesWithANaiveModelUnderRandomCommandsOfThreeClients) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        Game game(seed);
        game.Play(150);
        if (testing::Test::HasFailure()) return;
    }
}

}  // namespace Tests
