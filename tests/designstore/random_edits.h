// Edits of every kind, at random.
#pragma once

#include <functional>
#include <random>

#include "tests/designstore/stored_design.h"

namespace Tests {

// Edits a design; what an edit refuses is of no interest, since the objects are any that ever were.
class RandomEdits {
public:
    RandomEdits(Design& design, unsigned seed);

    void Edit(int count) {
        for (; count > 0; --count)
            m_edits[Below(m_edits.size())]();
    }

private:
    using Indexes = std::vector<Orin::Index>;

    unsigned Below(std::size_t limit) { return static_cast<unsigned>(m_random() % limit); }
    Orin::Index Any(const Indexes& of) { return of.empty() ? Orin::Index() : of[Below(of.size())]; }
    Orin::Index AnyObject() {
        const Indexes* const kinds[] = {&m_blocks, &m_comps, &m_pins, &m_nets, &m_buses, &m_groups, &m_configs};
        return Any(*kinds[Below(std::size(kinds))]);
    }
    Orin::Index Bearer() { return Below(9) == 0 ? Orin::Index() : AnyObject(); }
    Orin::Index View() { return Below(2) == 0 ? Any(m_groups) : Any(m_comps); }
    Orin::String Text() { return std::string(Below(3), static_cast<char>('a' + Below(26))).c_str(); }
    Orin::String Name() { return std::string(1, static_cast<char>('A' + Below(4))).c_str(); }
    // Now and then an index of the caller's choice.
    Orin::Index Wanted(Orin::EObjectType kind) {
        return Below(8) == 0 ? Orin::Index(kind, Below(2), 1 + Below(3000)) : Orin::Index();
    }
    Orin::ListSegmentsQuill Segments() { return {{{Below(9), {-5, 7}, Any(m_pins)}}, {{1, 2, Below(9)}}}; }
    void Keep(Indexes& list, const Orin::Result& made) const {
        if (made) list.push_back(m_made);
    }
    void SetAtPlace();

    void Add(unsigned share, std::function<void()> edit) { m_edits.insert(m_edits.end(), share, std::move(edit)); }

    Design& m_design;
    std::mt19937 m_random;
    std::vector<std::function<void()>> m_edits;  // each as often as its share
    Orin::Index m_made;
    Indexes m_blocks, m_comps, m_pins, m_nets, m_buses, m_groups, m_configs, m_items;
};

inline void RandomEdits::SetAtPlace() {
    using namespace Orin;
    ContainerT<const IConfig> config;
    ContainerT<const IPath> path;
    Index place;
    if (!m_design.snapshot->GetDefaultConfig(config, Name()) || !config->GetRoot(path)) return;
    for (unsigned depth = Below(3); depth != 0; --depth)
        static_cast<void>(path->GetChildPath(path, Any(m_comps)));
    if (!path->GetIndex(place)) return;
    const Index comp = Any(m_comps);
    static_cast<void>(Below(4) == 0 ? m_design.editor.RemoveAttributeInPath(place, comp, Name())
                                    : m_design.editor.SetAttributeInPath(place, comp, Name(), Text()));
}

inline RandomEdits::RandomEdits(Design& design, unsigned seed) : m_design(design), m_random(seed) {
    using namespace Orin;
    using enum EAttributeType;
    DesignDb::Editor& e = design.editor;
    Index& made = m_made;
    Add(1, [&] { Keep(m_blocks, e.AddBlock({Text(), EBlockType::Drawn, Text(), Wanted(EObjectType::Block)}, made)); });
    Add(3, [&] {
        DesignDb::CompSpec spec{Text(),        Text(), ECompType::Part,          Text(), Any(m_comps),
                                Any(m_blocks), {},     Wanted(EObjectType::Comp)};
        Keep(m_comps, e.AddComp(Any(m_blocks), spec, made));
    });
    Add(2, [&] { Keep(m_pins, e.AddPin(Any(m_comps), {Text(), Wanted(EObjectType::Pin)}, made)); });
    Add(1, [&] { Keep(m_nets, e.AddNet(Any(m_blocks), {Text(), Wanted(EObjectType::Net)}, made)); });
    Add(1, [&] { Keep(m_buses, e.AddBus(Any(m_blocks), {Text(), Wanted(EObjectType::Bus)}, made)); });
    Add(1, [&] {
        const Index owner = Any(Below(2) == 0 ? m_groups : m_blocks);
        Keep(m_groups, e.AddGroup(owner, {Text(), EGroupType::Cluster, Wanted(EObjectType::Group)}, made));
    });
    Add(1, [&] { Keep(m_configs, e.AddConfig({Name(), Any(m_blocks), Wanted(EObjectType::Config)}, made)); });
    Add(1, [&] { return e.DeleteComp(Any(m_comps)); });
    Add(1, [&] { return e.DeletePin(Any(m_pins)); });
    Add(1, [&] { return e.DeleteNet(Any(m_nets)); });
    Add(1, [&] { return e.DeleteBus(Any(m_buses)); });
    Add(1, [&] { return e.DeleteGroup(Any(m_groups)); });
    Add(1, [&] { return Below(4) == 0 ? e.DeleteBlock(Any(m_blocks)) : e.DeleteConfig(Any(m_configs)); });
    Add(1, [&] { return e.DeleteItem(Any(m_items)); });
    Add(1, [&] { return e.SetName(AnyObject(), Name()); });
    Add(1, [&] { return e.SetLabel(AnyObject(), Text()); });
    Add(2, [&] { return e.SetAttribute(Bearer(), Name(), Text(), Below(2) == 0 ? User : Link); });
    Add(1, [&] { return e.RemoveAttribute(Bearer(), Name()); });
    Add(3, [&] { SetAtPlace(); });
    Add(2, [&] { return e.ConnectPin(Any(m_nets), Any(m_pins)); });
    Add(1, [&] { return Below(3) == 0 ? e.DisconnectPin(Any(m_pins)) : e.ConnectNet(Any(m_buses), Any(m_nets)); });
    Add(1, [&] {
        return Below(3) == 0 ? e.DisconnectNet(Any(m_buses), Any(m_nets)) : e.RipBus(Any(m_comps), Any(m_buses));
    });
    Add(2, [&] { return e.AddMember(Any(m_groups), AnyObject(), Below(4)); });
    Add(1, [&] { return e.AddMember(Any(m_groups), AnyObject()); });
    Add(1, [&] { return e.RemoveMember(Any(m_groups), AnyObject()); });
    Add(1, [&] { return e.MoveMember(Any(m_groups), AnyObject(), Below(4)); });
    Add(1, [&] { return e.SetModificationTime(View(), -static_cast<int>(Below(9))); });
    Add(1, [&] { return e.SetCompData(View(), Any(m_comps), {Below(9), {1, -2}, EOrientation::Degrees90, true}); });
    Add(1, [&] { return e.SetPinData(View(), Any(m_pins), {Below(9), {3, 4}, {}, true}); });
    Add(1, [&] {
        return e.SetBusData(View(), Any(m_buses),
                            {Below(9), Segments(), {{3, Any(m_nets)}}, {1, ELinePattern::Dash, {}}});
    });
    Add(1, [&] { return e.SetGroupData(View(), Any(m_groups), {Below(9), {1, 2}, {3, 4}}); });
    Add(1, [&] {
        return e.SetLabelData(View(), AnyObject(), {Below(9), {}, {Text(), 5, {}, EHorizontalAlign::Right, {}, false}});
    });
    Add(1, [&] {
        return Below(3) == 0 ? e.Undraw(View(), AnyObject())
                             : e.SetAttrData(View(), AnyObject(), Name(), Text(), {Below(9), 8, {}, {}, true});
    });
    Add(1, [&] {
        Keep(m_items, e.AddNetQuill(Any(m_groups), Any(m_nets), {Below(9), Segments(), {}}, made,
                                    Wanted(EObjectType::NetQuill)));
    });
    Add(1, [&] {
        Keep(m_items, Below(2) == 0 ? e.AddLine(View(), {Below(9), {{1, 2}, {-3, 4}}, {}}, made)
                                    : e.AddText(View(), {Below(9), Text(), {}, {}}, made, Wanted(EObjectType::Text)));
    });
    Add(1, [&] {
        if (Below(2) == 0) return Keep(m_items, e.AddArc(View(), {Below(9), {}, {5, 5}, {}, {}}, made));
        static_cast<void>(Below(2) == 0 ? e.SetLine(Any(m_items), {7, {}, {}})
                                        : e.SetNetQuillData(Any(m_items), {6, Segments(), {}}));
    });
}

}  // namespace Tests
