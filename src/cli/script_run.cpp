#include "cli/script_run.h"

#include <utility>

#include "cli/design_lookup.h"

namespace Quill::Cli {

namespace {

using Kind = ScriptObject::Kind;
using Orin::ContainerT;
using Orin::Index;
using Orin::IteratorT;

// What was found for a name; one object is wanted.
struct Matches {
    std::size_t count = 0;
    Index first;

    void Add(const Index& index) {
        if (count++ == 0) first = index;
    }
};

// Those of an iteration for which `isMeant` holds.
template <class T, class IsMeant>
Matches Among(IteratorT<const T> objects, const IsMeant& isMeant) {
    Matches matches;
    for (; objects; ++objects)
        if (isMeant(*objects)) matches.Add(IndexOf(*objects));
    return matches;
}

template <class T>
auto Labelled(const std::string& label) {
    return [&label](const T& object) { return LabelOf(object) == label; };
}

Matches BlocksCalled(const Orin::ISnapshot& snapshot, const std::string& name) {
    IteratorT<const Orin::IBlock> blocks;
    Need(snapshot.GetIterBlocks(blocks));
    return Among(blocks, [&name](const Orin::IBlock& block) { return NameOf(block) == name; });
}

Matches ConfigsCalled(const Orin::ISnapshot& snapshot, const std::string& name) {
    IteratorT<const Orin::IConfig> configs;
    Need(snapshot.GetIterConfigs(configs));
    return Among(configs, [&name](const Orin::IConfig& config) { return NameOf(config) == name; });
}

Matches CompsLabelled(const Orin::IBlock& block, const std::string& label) {
    IteratorT<const Orin::IComp> comps;
    Need(block.GetIterComps(comps, Orin::CompTypes()));
    return Among(comps, Labelled<Orin::IComp>(label));
}

Matches NetsLabelled(const Orin::IBlock& block, const std::string& label) {
    IteratorT<const Orin::INet> nets;
    Need(block.GetIterNets(nets));
    return Among(nets, Labelled<Orin::INet>(label));
}

Matches BusesLabelled(const Orin::IBlock& block, const std::string& label) {
    IteratorT<const Orin::IBus> buses;
    Need(block.GetIterBuses(buses));
    return Among(buses, Labelled<Orin::IBus>(label));
}

Matches PinsLabelled(const Orin::IBlock& block, const Index& comp, const std::string& label) {
    ContainerT<const Orin::IComp> owner;
    IteratorT<const Orin::IPin> pins;
    Need(block.GetComp(owner, comp));
    Need(owner->GetIterPins(pins));
    return Among(pins, Labelled<Orin::IPin>(label));
}

}  // namespace

ScriptRun::ScriptRun(std::string file, const ContainerT<const Orin::ISnapshot>& snapshot)
    : m_file(std::move(file)), m_snapshot(snapshot) {
    Need(Orin::DesignDb::Editor::Open(m_editor, snapshot));
    Need(Orin::DesignDb::Inspector::Open(m_inspector, snapshot));
}

void ScriptRun::Execute(const std::vector<ScriptStep>& steps) {
    try {
        for (const ScriptStep& step : steps) {
            m_step = &step;
            m_line = step.line;
            step.verb->run(*this, step);
        }
    } catch (...) {
        bool isActive = false;
        if (m_snapshot->IsTransactionActive(isActive) && isActive) m_snapshot->RollbackTransaction();
        ReleaseLocks();
        throw;
    }
    ReleaseLocks();
}

Index ScriptRun::Find(const ScriptObject& object) const {
    if (object.kind == Kind::Design) return {};
    if (object.kind == Kind::Index) return object.index;
    if (object.kind == Kind::Variable) return m_variables.at(object.names[0]);

    const auto one = [&](const Matches& matches, Kind kind, std::vector<std::string> names) {
        const ScriptObject meant{kind, std::move(names), {}};
        if (matches.count == 0) Fail("There is no " + meant.Text());
        if (matches.count > 1) Fail("There are several objects that could be " + meant.Text());
        return matches.first;
    };
    const std::string& outer = object.names[0];
    if (object.kind == Kind::Config) return one(ConfigsCalled(*m_snapshot, outer), Kind::Config, {outer});
    const Index blockIndex = one(BlocksCalled(*m_snapshot, outer), Kind::Block, {outer});
    if (object.kind == Kind::Block) return blockIndex;

    ContainerT<const Orin::IBlock> block;
    Require(m_snapshot->GetBlock(block, blockIndex));
    const auto group = [&](const std::string& name) {
        Matches matches;
        Orin::ListT<Orin::GroupInfo> groups;
        Require(m_inspector.GetGroups(blockIndex, groups));
        for (const Orin::GroupInfo& info : groups)
            if (info.name.View() == name) matches.Add(info.index);
        return one(matches, Kind::Sheet, {outer, name});
    };
    const std::string& name = object.names[1];
    const auto net = [&] { return one(NetsLabelled(*block, name), Kind::Net, {outer, name}); };
    const auto comp = [&] { return one(CompsLabelled(*block, name), Kind::Comp, {outer, name}); };
    switch (object.kind) {
        case Kind::Sheet:
        case Kind::Cluster:
            return group(name);
        case Kind::Comp:
            return comp();
        case Kind::Net:
            return net();
        case Kind::Bus:
            return one(BusesLabelled(*block, name), Kind::Bus, object.names);
        case Kind::Pin:
            return one(PinsLabelled(*block, comp(), object.names[2]), Kind::Pin, object.names);
        default:
            break;
    }
    const Index sheet = group(object.names[2]);
    Matches matches;
    Orin::ListT<Orin::DesignDb::NetPieceInfo> pieces;
    Require(m_inspector.GetPieces(net(), pieces));
    for (const Orin::DesignDb::NetPieceInfo& piece : pieces)
        if (piece.view == sheet) matches.Add(piece.index);
    return one(matches, object.kind, object.names);
}

Index ScriptRun::Find(const ScriptStep& step, std::size_t position) const {
    return position < step.objects.size() ? Find(step.objects[position]) : Index();
}

void ScriptRun::Fail(const std::string& reason) const {
    throw ScriptError(m_file, m_line, reason);
}

void ScriptRun::Require(const Orin::Result& result) const {
    if (result) return;
    std::string reason;
    for (const ScriptObject& object : m_step->objects)
        reason += (reason.empty() ? "" : ", ") + object.Text();
    if (!reason.empty()) reason += ": ";
    Fail(reason + static_cast<const char*>(result.GetDescription()));
}

}  // namespace Quill::Cli
