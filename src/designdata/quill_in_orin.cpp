#include "designdata/quill_in_orin.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "attributes/reserved_keys.h"
#include "designdata/detail/instance_name.h"
#include "properties/stored_attribute.h"
#include "text/number.h"

namespace Quill::Utils {

namespace {

using namespace NQuillUtils;

// These keys are not among the reserved ones by which attributes are recognised as the library's own.
constexpr const char* DesignNameKey = "Design_Name";
constexpr const char* BoardKey = "BoardUid";
constexpr const char* SignalNamesKey = "___SignalNames";

constexpr Orin::EAttributeType RipperFamily = Orin::EAttributeType::Link;

template <class Object, class... Family>
bool Read(const Object& object, const char* key, Orin::String& value, Family... family) {
    return ReadInternal(object, key, BareKey::Accepted, value, family...);
}

template <class Object, class... Family>
void Store(const Orin::MutableContainerT<Object>& object, const char* key, const std::string& value, Family... family) {
    const Orin::Result stored = StoreInternal(object, key, value.c_str(), family...);
    if (!stored) throw stored;
}

Orin::Index ToIndex(std::string_view text) {
    return Orin::Index(Text::ParseUInt64(text).value);
}

std::string ToText(const Orin::Index& index) {
    return Text::Render(index.Value());
}

// Gives the tokens of a list value one by one; empty ones are passed over.
class Tokens {
public:
    explicit Tokens(std::string_view text) : m_rest(text) {}

    // Null at the end.
    std::optional<std::string_view> Next() {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(','), m_rest.size()));
        if (m_rest.empty()) return std::nullopt;
        const std::string_view token = m_rest.substr(0, m_rest.find(','));
        m_rest.remove_prefix(token.size());
        return token;
    }

private:
    std::string_view m_rest;
};

// Hands the tokens to `take` in pairs.
template <class Take>
void ForEachPair(std::string_view text, const Take& take) {
    Tokens tokens(text);
    while (const auto first = tokens.Next())
        if (const auto second = tokens.Next()) take(*first, *second);
}

// Puts a list value together.
class TokenList {
public:
    void Add(std::string_view token) {
        if (m_any) m_text += ',';
        m_text.append(token);
        m_any = true;
    }
    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
    bool m_any = false;  // an empty first token is a token, too
};

template <class Names>
bool ReadSignalNames(const Orin::IBus& bus, Names& names) {
    Orin::String value;
    if (!Read(bus, SignalNamesKey, value)) return false;
    names.clear();
    Tokens tokens(value.View());
    while (const auto name = tokens.Next())
        names.emplace_back(*name);
    return true;
}

template <class Names>
void StoreSignalNames(const Orin::MutableContainerT<Orin::IBus>& bus, const Names& names) {
    TokenList tokens;
    for (const std::string& name : names)
        tokens.Add(name);
    Store(bus, SignalNamesKey, tokens.Text());
}

}  // namespace

bool QuillInOrin::GetDesignName(const Orin::IBlock& block, std::string& name) {
    Orin::String value;
    if (!Read(block, DesignNameKey, value)) return false;
    name = value.View();
    return true;
}

void QuillInOrin::StoreDesignName(Orin::MutableContainerT<Orin::IBlock> block, const std::string& name) {
    Store(block, DesignNameKey, name);
}

bool QuillInOrin::GetBoardBlock(const Orin::IBlock& block, Orin::Index& board) {
    Orin::String value;
    if (!Read(block, BoardKey, value)) return false;
    board = ToIndex(value.View());
    return true;
}

void QuillInOrin::StoreBoardBlock(Orin::MutableContainerT<Orin::IBlock> block, const Orin::Index& board) {
    Store(block, BoardKey, ToText(board));
}

bool QuillInOrin::GetRipperBus(const Orin::IComp& ripper, Orin::Index& bus) {
    Orin::String value;
    if (!Read(ripper, NReservedKeys::Bus, value, RipperFamily)) return false;
    bus = ToIndex(value.View());
    return true;
}

void QuillInOrin::StoreRipperBus(Orin::MutableContainerT<Orin::IComp> ripper, const Orin::Index& bus) {
    Store(ripper, NReservedKeys::Bus, ToText(bus), RipperFamily);
}

bool QuillInOrin::GetRipperSignalMap(const Orin::IComp& ripper, std::map<int, int>& map) {
    Orin::String value;
    if (!Read(ripper, NReservedKeys::SignalMap, value, RipperFamily)) return false;
    ForEachPair(value.View(), [&](std::string_view key, std::string_view signal) {
        map[Text::ParseInt32(key).value] = Text::ParseInt32(signal).value;
    });
    return true;
}

void QuillInOrin::StoreRipperSignalMap(Orin::MutableContainerT<Orin::IComp> ripper, const std::map<int, int>& map) {
    TokenList tokens;
    for (const auto& [key, signal] : map) {
        tokens.Add(Text::Render(key));
        tokens.Add(Text::Render(signal));
    }
    Store(ripper, NReservedKeys::SignalMap, tokens.Text(), RipperFamily);
}

bool QuillInOrin::GetBusSignals(const Orin::IBus& bus, BusSignals& signals) {
    Orin::String value;
    if (!Read(bus, NReservedKeys::Signals, value)) return false;
    ForEachPair(value.View(), [&](std::string_view position, std::string_view net) {
        // Both numbers of a pair are read with 64 bits; a position keeps the lower ones.
        signals.emplace_back(static_cast<int>(Text::ParseInt64(position).value), ToIndex(net));
    });
    return true;
}

void QuillInOrin::StoreBusSignals(Orin::MutableContainerT<Orin::IBus> bus, const BusSignals& signals) {
    TokenList tokens;
    for (const auto& [position, net] : signals) {
        tokens.Add(Text::Render(position));
        tokens.Add(ToText(net));
    }
    Store(bus, NReservedKeys::Signals, tokens.Text());
}

bool QuillInOrin::GetBusSignalNames(const Orin::IBus& bus, std::list<std::string>& names) {
    return ReadSignalNames(bus, names);
}

bool QuillInOrin::GetBusSignalNames(const Orin::IBus& bus, std::vector<std::string>& names) {
    return ReadSignalNames(bus, names);
}

void QuillInOrin::StoreBusSignalNames(Orin::MutableContainerT<Orin::IBus> bus, const std::list<std::string>& names) {
    StoreSignalNames(bus, names);
}

void QuillInOrin::StoreBusSignalNames(Orin::MutableContainerT<Orin::IBus> bus, const std::vector<std::string>& names) {
    StoreSignalNames(bus, names);
}

std::string QuillInOrin::GetHierarchicalName(const Orin::ContainerT<const Orin::IPath>& path) {
    std::vector<std::string> elements;  // deepest level first
    Orin::ContainerT<const Orin::IPath> place = path;
    Orin::ContainerT<const Orin::IComp> comp;
    while (place && place->GetParentComp(comp)) {
        std::optional<std::string> element = detail::InstanceName(*comp);
        if (!element) return {};
        elements.push_back(std::move(*element));
        place.Release();
        static_cast<void>(comp->GetPath(place));  // a component without a place ends the walk
    }

    std::string name;
    for (auto element = elements.rbegin(); element != elements.rend(); ++element) {
        if (element != elements.rbegin()) name += '\\';
        name += *element;
    }
    return name;
}

}  // namespace Quill::Utils
