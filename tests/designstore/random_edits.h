// Edits of every kind, at random.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "tests/designstore/stored_design.h"

namespace Tests {

// Edits a design; what an edit refuses is of no interest, since the objects are any that ever were.
class RandomEdits {
public:
    RandomEdits(Design& design, unsigned seed) : m_design(design), m_random(seed) {}

    void Edit(int count) {
        for (; count > 0; --count)
            EditOnce();
    }

private:
    using Indexes = std::vector<Orin::Index>;

    unsigned Below(std::size_t limit) { return static_cast<unsigned>(m_random() % limit); }
    Orin::Index Any(const Indexes& of) { return of.empty() ? Orin::Index() : of[Below(of.size())]; }
    Orin::Index AnyObject() {
        const Indexes* const kinds[] = {&m_blocks, &m_comps, &m_pins, &m_nets, &m_buses, &m_groups, &m_configs};
        return Any(*kinds[Below(std::size(kinds))]);
    }
    Orin::Index View() { return Below(2) == 0 ? Any(m_groups) : Any(m_comps); }
    Orin::String Text() { return std::string(Below(3), static_cast<char>('a' + Below(26))).c_str(); }
    Orin::String Name() { return std::string(1, static_cast<char>('A' + Below(4))).c_str(); }
    // Now and then an index of the caller's choice.
    Orin::Index Wanted(Orin::EObjectType kind) {
        return Below(8) == 0 ? Orin::Index(kind, Below(2), 1 + Below(3000)) : Orin::Index();
    }
    Orin::ListSegmentsQuill Segments() { return {{{Below(9), {-5, 7}, Any(m_pins)}}, {{1, 2, Below(9)}}}; }
    static void Keep(Indexes& list, const Orin::Result& made, const Orin::Index& index) {
        if (made) list.push_back(index);
    }

    void EditOnce();
    void SetAtPlace();

    Design& m_design;
    std::mt19937 m_random;
    Indexes m_blocks, m_comps, m_pins, m_nets, m_buses, m_groups, m_configs, m_items;
};

inline void RandomEdits::SetAtPlace() {
    Orin::ContainerT<const Orin::IConfig> config;
    Orin::ContainerT<const Orin::IPath> path;
    Orin::Index place;
    if (!m_design.snapshot->GetDefaultConfig(config, Name()) || !config->GetRoot(path)) return;
    for (unsigned depth = Below(3); depth != 0; --depth)
        static_cast<void>(path->GetChildPath(path, Any(m_comps)));
    if (!path->GetIndex(place)) return;
    const Orin::Index comp = Any(m_comps);
    if (Below(4) == 0) {
        static_cast<void>(m_design.editor.RemoveAttributeInPath(place, comp, Name()));
    } else {
        static_cast<void>(m_design.editor.SetAttributeInPath(place, comp, Name(), Text()));
    }
}

inline void RandomEdits::EditOnce() {
    using Orin::EObjectType;
    Orin::DesignDb::Editor& e = m_design.editor;
    Orin::Index made;
    Orin::Result r;
    switch (Below(44)) {
        case 0:
            return Keep(m_blocks,
                        e.AddBlock({Text(), Orin::EBlockType::Drawn, Text(), Wanted(EObjectType::Block)}, made), made);
        case 1:
        case 2:
        case 3: {
            Orin::DesignDb::CompSpec spec{Text(),        Text(), Orin::ECompType::Part,    Text(), Any(m_comps),
                                          Any(m_blocks), {},     Wanted(EObjectType::Comp)};
            return Keep(m_comps, e.AddComp(Any(m_blocks), spec, made), made);
        }
        case 4:
        case 5:
            return Keep(m_pins, e.AddPin(Any(m_comps), {Text(), Wanted(EObjectType::Pin)}, made), made);
        case 6:
            return Keep(m_nets, e.AddNet(Any(m_blocks), {Text(), Wanted(EObjectType::Net)}, made), made);
        case 7:
            return Keep(m_buses, e.AddBus(Any(m_blocks), {Text(), Wanted(EObjectType::Bus)}, made), made);
        case 8:
            return Keep(m_groups,
                        e.AddGroup(Below(2) == 0 ? Any(m_groups) : Any(m_blocks),
                                   {Text(), Orin::EGroupType::Cluster, Wanted(EObjectType::Group)}, made),
                        made);
        case 9:
            return Keep(m_configs, e.AddConfig({Name(), Any(m_blocks), Wanted(EObjectType::Config)}, made), made);
        case 10:
            r = e.DeleteComp(Any(m_comps));
            break;
        case 11:
            r = e.DeletePin(Any(m_pins));
            break;
        case 12:
            r = e.DeleteNet(Any(m_nets));
            break;
        case 13:
            r = e.DeleteBus(Any(m_buses));
            break;
        case 14:
            r = e.DeleteGroup(Any(m_groups));
            break;
        case 15:
            r = Below(4) == 0 ? e.DeleteBlock(Any(m_blocks)) : e.DeleteConfig(Any(m_configs));
            break;
        case 16:
            r = e.DeleteItem(Any(m_items));
            break;
        case 17:
            r = e.SetName(AnyObject(), Name());
            break;
        case 18:
            r = e.SetLabel(AnyObject(), Text());
            break;
        case 19:
        case 20:
            r = e.SetAttribute(Below(9) == 0 ? Orin::Index() : AnyObject(), Name(), Text(),
                               Below(2) == 0 ? Orin::EAttributeType::User : Orin::EAttributeType::Link);
            break;
        case 21:
            r = e.RemoveAttribute(Below(9) == 0 ? Orin::Index() : AnyObject(), Name());
            break;
        case 22:
        case 23:
        case 24:
            return SetAtPlace();
        case 25:
        case 26:
            r = e.ConnectPin(Any(m_nets), Any(m_pins));
            break;
        case 27:
            r = Below(3) == 0 ? e.DisconnectPin(Any(m_pins)) : e.ConnectNet(Any(m_buses), Any(m_nets));
            break;
        case 28:
            r = Below(3) == 0 ? e.DisconnectNet(Any(m_buses), Any(m_nets)) : e.RipBus(Any(m_comps), Any(m_buses));
            break;
        case 29:
        case 30:
            r = e.AddMember(Any(m_groups), AnyObject(), Below(4));
            break;
        case 31:
            r = e.AddMember(Any(m_groups), AnyObject());
            break;
        case 32:
            r = e.RemoveMember(Any(m_groups), AnyObject());
            break;
        case 33:
            r = e.MoveMember(Any(m_groups), AnyObject(), Below(4));
            break;
        case 34:
            r = e.SetModificationTime(View(), -static_cast<int>(Below(9)));
            break;
        case 35:
            r = e.SetCompData(View(), Any(m_comps), {Below(9), {1, -2}, Orin::EOrientation::Degrees90, true});
            break;
        case 36:
            r = e.SetPinData(View(), Any(m_pins), {Below(9), {3, 4}, {}, true});
            break;
        case 37:
            r = e.SetBusData(View(), Any(m_buses),
                             {Below(9), Segments(), {{3, Any(m_nets)}}, {1, Orin::ELinePattern::Dash, {}}});
            break;
        case 38:
            r = e.SetGroupData(View(), Any(m_groups), {Below(9), {1, 2}, {3, 4}});
            break;
        case 39:
            r = e.SetLabelData(View(), AnyObject(),
                               {Below(9), {}, {Text(), 5, {}, Orin::EHorizontalAlign::Right, {}, false}});
            break;
        case 40:
            r = Below(3) == 0 ? e.Undraw(View(), AnyObject())
                              : e.SetAttrData(View(), AnyObject(), Name(), Text(), {Below(9), 8, {}, {}, true});
            break;
        case 41:
            return Keep(m_items,
                        e.AddNetQuill(Any(m_groups), Any(m_nets), {Below(9), Segments(), {}}, made,
                                      Wanted(EObjectType::NetQuill)),
                        made);
        case 42:
            if (Below(2) == 0) return Keep(m_items, e.AddLine(View(), {Below(9), {{1, 2}, {-3, 4}}, {}}, made), made);
            return Keep(m_items, e.AddText(View(), {Below(9), Text(), {}, {}}, made, Wanted(EObjectType::Text)), made);
        case 43:
            if (Below(2) == 0) return Keep(m_items, e.AddArc(View(), {Below(9), {}, {5, 5}, {}, {}}, made), made);
            r = Below(2) == 0 ? e.SetLine(Any(m_items), {7, {}, {}})
                              : e.SetNetQuillData(Any(m_items), {6, Segments(), {}});
            break;
        default:
            break;
    }
}

}  // namespace Tests
