// Values as JSON: what commands answer with, and what records of events are kept in. The library that reads and writes
// the text is large: only json.cpp includes it.
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace Quill::Cli {

// Null, a truth value, a number, a text of any bytes, a list, or an object, whose members keep their order.
//
//     Json answer{{"name", "OUT"}, {"at", Json::List{100, 200}}};
//     answer.Add("sheet", sheet);
class Json {
public:
    struct Member;
    using List = std::vector<Json>;
    using Object = std::vector<Member>;

    Json() noexcept;
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(const Json& other);
    Json& operator=(Json&& other) noexcept;
    ~Json();
    template <std::same_as<bool> T>
    Json(T flag);
    template <std::signed_integral T>
    Json(T number);
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) Json(T number);
    Json(double number);
    Json(const char* text);
    Json(std::string_view text);
    Json(std::string text);
    Json(List items);
    Json(std::initializer_list<Member> members);
    template <class T>
    Json(const std::vector<T>& items);
    // Null for none.
    template <class T>
    Json(const std::optional<T>& value);

    static Json EmptyList();
    static Json EmptyObject();

    // The value when it is of that kind, else null: bool, std::int64_t, std::uint64_t, double, std::string, List or
    // Object. A number that was read is an std::uint64_t when it has no sign.
    template <class T>
    const T* If() const;
    template <class T>
    T* If();

    // The member of an object; null when there is none of that name, or this is no object.
    const Json* Find(std::string_view name) const;

    // To the end of a list or an object; a null becomes one. The names of an object's members are to differ.
    void Add(Json item);
    void Add(std::string name, Json value);
    void AddMembersOf(const Json& object);

    // On one line, or indented by as many blanks. Bytes that are not UTF-8, which JSON cannot hold, become U+FFFD.
    static constexpr int OneLine = -1;
    std::string Text(int indent = OneLine) const;

    // What the text says. Throws a CommandError where it is no JSON, or nested deeper than so many lists and objects.
    static Json Parse(std::string_view text, int deepest);

private:
    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, List, Object> m_value;
};

struct Json::Member {
    std::string name;
    Json value;
};

// Here, where the type of the members is whole.
inline Json::Json() noexcept = default;
inline Json::Json(Json&& other) noexcept = default;
inline Json& Json::operator=(Json&& other) noexcept = default;
inline Json::~Json() = default;

template <std::same_as<bool> T>
Json::Json(T flag) : m_value(flag) {}

template <std::signed_integral T>
Json::Json(T number) : m_value(std::int64_t{number}) {}

template <std::unsigned_integral T>
requires(!std::same_as<T, bool>) Json::Json(T number) : m_value(std::uint64_t{number}) {}

template <class T>
Json::Json(const std::vector<T>& items) : m_value(List(items.begin(), items.end())) {}

template <class T>
Json::Json(const std::optional<T>& value) {
    if (value) *this = Json(*value);
}

template <class T>
const T* Json::If() const {
    return std::get_if<T>(&m_value);
}

template <class T>
T* Json::If() {
    return std::get_if<T>(&m_value);
}

}  // namespace Quill::Cli
