#include "cli/json.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "cli/command.h"

namespace Quill::Cli {

namespace {

using Tree = nlohmann::ordered_json;

// All go as deep as the value, which is an answer, whose depth its command fixes, or was read with a limit.
// NOLINTBEGIN(misc-no-recursion)
Tree TreeOf(const Json& value) {
    if (const auto* const flag = value.If<bool>()) return *flag;
    if (const auto* const number = value.If<std::int64_t>()) return *number;
    if (const auto* const number = value.If<std::uint64_t>()) return *number;
    if (const auto* const number = value.If<double>()) return *number;
    if (const auto* const text = value.If<std::string>()) return *text;
    if (const auto* const list = value.If<Json::List>()) {
        Tree::array_t items;
        for (const Json& item : *list)
            items.push_back(TreeOf(item));
        return items;
    }
    if (const auto* const object = value.If<Json::Object>()) {
        Tree::object_t members;
        for (const Json::Member& member : *object)
            members.push_back({member.name, TreeOf(member.value)});
        return members;
    }
    return nullptr;
}

Json ValueOf(const Tree& tree) {
    switch (tree.type()) {
        case Tree::value_t::boolean:
            return tree.get<bool>();
        case Tree::value_t::number_integer:
            return tree.get<std::int64_t>();
        case Tree::value_t::number_unsigned:
            return tree.get<std::uint64_t>();
        case Tree::value_t::number_float:
            return tree.get<double>();
        case Tree::value_t::string:
            return tree.get<std::string>();
        case Tree::value_t::array: {
            Json list = Json::EmptyList();
            for (const Tree& item : tree)
                list.Add(ValueOf(item));
            return list;
        }
        case Tree::value_t::object: {
            Json object = Json::EmptyObject();
            for (const auto& [name, value] : tree.items())
                object.Add(name, ValueOf(value));
            return object;
        }
        default:
            return {};
    }
}

}  // namespace

Json::Json(const Json& other) {
    if (const auto* const list = other.If<List>()) {
        m_value.emplace<List>(*list);
    } else if (const auto* const object = other.If<Object>()) {
        m_value.emplace<Object>(*object);
    } else if (const auto* const text = other.If<std::string>()) {
        m_value = *text;
    } else if (const auto* const flag = other.If<bool>()) {
        m_value = *flag;
    } else if (const auto* const number = other.If<std::int64_t>()) {
        m_value = *number;
    } else if (const auto* const natural = other.If<std::uint64_t>()) {
        m_value = *natural;
    } else if (const auto* const real = other.If<double>()) {
        m_value = *real;
    }
}
// NOLINTEND(misc-no-recursion)

Json& Json::operator=(const Json& other) {
    *this = Json(other);
    return *this;
}

Json::Json(double number) : m_value(number) {}
Json::Json(const char* text) : m_value(std::string(text)) {}
Json::Json(std::string_view text) : m_value(std::string(text)) {}
Json::Json(std::string text) : m_value(std::move(text)) {}
Json::Json(List items) : m_value(std::move(items)) {}
Json::Json(std::initializer_list<Member> members) : m_value(Object(members)) {}

Json Json::EmptyList() {
    return List();
}

Json Json::EmptyObject() {
    return std::initializer_list<Member>{};
}

const Json* Json::Find(std::string_view name) const {
    const Object* const object = If<Object>();
    if (object == nullptr) return nullptr;
    for (const Member& member : *object)
        if (member.name == name) return &member.value;
    return nullptr;
}

void Json::Add(Json item) {
    if (m_value.index() == 0) m_value = List();
    std::get<List>(m_value).push_back(std::move(item));
}

void Json::Add(std::string name, Json value) {
    if (m_value.index() == 0) m_value = Object();
    std::get<Object>(m_value).push_back({std::move(name), std::move(value)});
}

void Json::AddMembersOf(const Json& object) {
    for (const Member& member : std::get<Object>(object.m_value))
        Add(member.name, member.value);
}

std::string Json::Text(int indent) const {
    return TreeOf(*this).dump(indent, ' ', false, Tree::error_handler_t::replace);
}

Json Json::Parse(std::string_view text, int deepest) {
    const auto isNotTooDeep = [deepest](int depth, Tree::parse_event_t, const Tree&) {
        if (depth > deepest) throw CommandError("Is nested too deep");
        return true;
    };
    try {
        return ValueOf(Tree::parse(text, isNotTooDeep));
    } catch (const Tree::exception&) {
        throw CommandError("This is no JSON");
    }
}

}  // namespace Quill::Cli
