// Reads the document in a stream and hands it on object by object, so that the JSON of one component, net, bus or group
// is in memory at a time.
#include <algorithm>
#include <array>
#include <set>

#include "interchange/detail/json_node.h"

namespace Quill::Interchange {

namespace {

constexpr std::size_t DeepestNesting = 16;
constexpr std::size_t LongestReason = 300;

// The lists of a block whose elements are read one by one.
constexpr std::array<std::string_view, 4> BlockLists{"groups", "comps", "nets", "buses"};

class Parser final : public nlohmann::json_sax<Json> {
public:
    DesignModel Parse(std::string_view text) {
        Json::sax_parse(text, this);
        if (!m_formatSeen) Fail({}, "lacks \"format\"");
        if (!m_versionSeen) Fail({}, "lacks \"version\"");
        return std::move(m_design);
    }

    bool null() override { return Scalar(nullptr); }
    bool boolean(bool value) override { return Scalar(value); }
    bool number_integer(number_integer_t value) override { return Scalar(value); }
    bool number_unsigned(number_unsigned_t value) override { return Scalar(value); }
    bool number_float(number_float_t value, const string_t&) override { return Scalar(value); }
    bool string(string_t& value) override { return Scalar(std::move(value)); }
    bool binary(binary_t&) override { return false; }  // does not occur in text

    bool start_object(std::size_t) override { return Open(Json::object()); }
    bool end_object() override { return Close(); }
    bool start_array(std::size_t) override { return Open(Json::array()); }
    bool end_array() override { return Close(); }

    bool key(string_t& name) override {
        Level& level = m_levels.back();
        level.key = std::move(name);
        level.named = true;
        if (level.container != nullptr) {
            if (level.container->contains(level.key)) FailHere("is given twice");
        } else if (!m_seen[level.kind == Kind::Block].insert(level.key).second) {
            FailHere("is given twice");
        }
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        std::string reason = error.what();
        reason.erase(0, std::min(reason.find("] ") + 2, reason.size()));
        if (reason.size() > LongestReason) reason.replace(LongestReason, std::string::npos, "...");
        FailHere(reason);
    }

private:
    // What an open bracket is: one that is read member by member, or part of a value that is put together first.
    enum class Kind { Document, Blocks, Block, BlockList, Value };

    struct Level {
        Kind kind = Kind::Value;
        Json* container = nullptr;  // of a value
        std::string key;            // of an object, the member that is being read
        bool named = false;
        bool isArray = false;
        std::size_t position = 0;  // of a list
    };

    // Calls use(place) with the place of the value that is being read.
    template <class Use>
    void AtPlace(Use&& use) const {
        std::vector<Place> places(1);
        places.reserve(m_levels.size() + 1);  // each borrows the one before
        for (const Level& level : m_levels) {
            if (level.isArray) {
                places.push_back(places.back().At(level.position));
            } else if (level.named) {
                places.push_back(places.back().Member(level.key));
            }
        }
        use(places.back());
    }

    [[noreturn]] void FailHere(std::string reason) const {
        std::string pointer;
        AtPlace([&](const Place& place) { pointer = place.Pointer(); });
        throw DesignJsonFault{std::move(pointer), std::move(reason)};
    }

    // The kind of a bracket that opens now.
    Kind KindOfNext(bool isArray) const {
        if (m_levels.empty()) return isArray ? Kind::Value : Kind::Document;
        const Level& above = m_levels.back();
        if (above.kind == Kind::Document && isArray && above.key == "blocks") return Kind::Blocks;
        if (above.kind == Kind::Blocks && !isArray) return Kind::Block;
        if (above.kind == Kind::Block && isArray &&
            std::find(BlockLists.begin(), BlockLists.end(), above.key) != BlockLists.end())
            return Kind::BlockList;
        return Kind::Value;
    }

    bool Open(Json empty) {
        if (m_levels.size() == DeepestNesting) FailHere("nests too deeply");
        Level level;
        level.isArray = empty.is_array();
        level.kind = KindOfNext(level.isArray);
        if (level.kind == Kind::Value) {
            level.container = Put(std::move(empty));
        } else if (level.kind == Kind::Block) {
            m_design.blocks.emplace_back();
            m_seen[true].clear();
        }
        m_levels.push_back(std::move(level));
        return true;
    }

    bool Close() {
        const Level closed = std::move(m_levels.back());
        m_levels.pop_back();
        if (closed.kind == Kind::Block) {
            if (m_seen[true].count("index") == 0) FailHere("lacks \"index\"");
            AtPlace([&](const Place& place) { CheckBlock(place); });
        }
        if (closed.kind != Kind::Value || m_levels.empty() || m_levels.back().kind != Kind::Value)
            Finish(closed.kind);
        else
            Next();
        return true;
    }

    bool Scalar(Json value) {
        const bool part = !m_levels.empty() && m_levels.back().kind == Kind::Value;
        Put(std::move(value));
        if (part)
            Next();
        else
            Finish(Kind::Value);
        return true;
    }

    // Enters a value into the one that is being put together, or begins one.
    Json* Put(Json value) {
        if (m_levels.empty() || m_levels.back().kind != Kind::Value) {
            m_value = std::move(value);
            return &m_value;
        }
        const Level& level = m_levels.back();
        if (level.isArray) {
            level.container->push_back(std::move(value));
            return &level.container->back();
        }
        return &((*level.container)[level.key] = std::move(value));
    }

    void Next() {
        ++m_levels.back().position;
        m_levels.back().named = false;
    }

    // A member of the document or of a block, or an element of one of their lists, is complete.
    void Finish(Kind finished) {
        if (m_levels.empty()) {
            if (finished == Kind::Value) Fail({}, "is not an object");
            return;
        }
        if (finished == Kind::Value) {
            AtPlace([&](const Place& place) {
                const Node node{m_value, place};
                const Level& level = m_levels.back();
                if (level.kind == Kind::Document) ReadMember(level.key, node);
                if (level.kind == Kind::Blocks) Fail(place, "is not an object");
                if (level.kind == Kind::Block) ReadBlockMember(level.key, node);
                if (level.kind == Kind::BlockList) ReadElement(node);
            });
        }
        Next();
    }

    void ReadMember(const std::string& name, const Node& node) {
        if (name == "format") {
            if (node.value != FormatName) Fail(node.place, "is not \"" + std::string(FormatName) + '"');
            m_formatSeen = true;
        } else if (name == "version") {
            if (node.value != FormatVersion) Fail(node.place, "is a version that this program does not know");
            m_versionSeen = true;
        } else if (name == "design") {
            m_design.name = ReadText(node);
        } else if (name == "attributes") {
            m_design.attributes = ReadAttributes(node);
        } else if (name == "configurations") {
            ReadEach(node, [&](const Node& config) { m_design.configs.push_back(ReadConfig(config)); });
        } else {
            Fail(node.place, name == "blocks" ? "is not a list" : "is not a member that belongs here");
        }
    }

    void ReadBlockMember(const std::string& name, const Node& node) {
        BlockModel& block = m_design.blocks.back();
        if (name == "index") {
            block.spec.index = ReadIndex(node);
        } else if (name == "name") {
            block.spec.name = ReadText(node);
        } else if (name == "library") {
            block.spec.libraryName = ReadText(node);
        } else if (name == "types") {
            block.spec.types = ReadBlockTypes(node);
        } else if (name == "attributes") {
            block.attributes = ReadAttributes(node);
        } else if (name == "drawn") {
            block.drawn = ReadDrawn(node);
        } else if (name == "pinOrder") {
            ReadEach(node, [&](const Node& pin) { block.pinOrder.push_back(ReadIndex(pin)); });
        } else {
            const bool known = std::find(BlockLists.begin(), BlockLists.end(), name) != BlockLists.end();
            Fail(node.place, known ? "is not a list" : "is not a member that belongs here");
        }
    }

    void ReadElement(const Node& node) {
        BlockModel& block = m_design.blocks.back();
        const std::string& list = m_levels[m_levels.size() - 2].key;
        if (list == "groups") block.groups.push_back(ReadGroup(node));
        if (list == "comps") block.comps.push_back(ReadComp(node));
        if (list == "nets") block.nets.push_back(ReadNet(node));
        if (list == "buses") block.buses.push_back(ReadBus(node));
    }

    // What can be told only of a whole block: the order of its pins names each of them once.
    void CheckBlock(const Place& place) const {
        const BlockModel& block = m_design.blocks.back();
        if (block.pinOrder.empty()) return;
        Indexes pins;
        for (const CompModel& comp : block.comps)
            for (const PinModel& pin : comp.pins)
                pins.push_back(pin.spec.index);
        Indexes order = block.pinOrder;
        std::sort(pins.begin(), pins.end());
        std::sort(order.begin(), order.end());
        if (pins != order) Fail(place.Member("pinOrder"), "does not list each pin of the block once");
    }

    DesignModel m_design;
    std::vector<Level> m_levels;
    Json m_value;
    std::array<std::set<std::string>, 2> m_seen;  // members of the document, of the block
    bool m_formatSeen = false;
    bool m_versionSeen = false;
};

}  // namespace

DesignModel ParseDesign(std::string_view text) {
    return Parser().Parse(text);
}

}  // namespace Quill::Interchange
