// How objects are drawn, as bytes: docs/design-file.md, "Blobs".
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "designdb/detail/records.h"

namespace Orin::DesignDb {

// `D` is T or const T, so that one list of parts serves writing and reading.
template <class D, class T>
concept Is = std::same_as<std::remove_const_t<D>, T>;

template <class Archive, Is<Point> D>
void Parts(Archive& a, D& d) {
    a(d.x, d.y);
}
template <class Archive, Is<LineStyle> D>
void Parts(Archive& a, D& d) {
    a(d.width, d.pattern, d.fill);
}
template <class Archive, Is<TextStyle> D>
void Parts(Archive& a, D& d) {
    a(d.font, d.height, d.orientation, d.horizontal, d.vertical, d.visible);
}
template <class Archive, Is<CompDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.position, d.orientation, d.mirrored);
}
template <class Archive, Is<PinDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.position, d.inner, d.inverted);
}
template <class Archive, Is<ListSegmentsQuillJoint> D>
void Parts(Archive& a, D& d) {
    a(d.id, d.position, d.attached);
}
template <class Archive, Is<ListSegmentsQuillSegment> D>
void Parts(Archive& a, D& d) {
    a(d.id, d.from, d.to);
}
template <class Archive, Is<ListSegmentsQuill> D>
void Parts(Archive& a, D& d) {
    a(d.joints, d.segments);
}
template <class Archive, Is<NetDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.segments, d.style);
}
template <class Archive, Is<BusDataQuill::Signal> D>
void Parts(Archive& a, D& d) {
    a(d.position, d.net);
}
template <class Archive, Is<BusDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.segments, d.signals, d.style);
}
template <class Archive, Is<GroupDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.first, d.second);
}
template <class Archive, Is<LabelDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.position, d.style);
}
template <class Archive, Is<AttrDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.attributeId, d.position, d.style, d.showName);
}
template <class Archive, Is<DrawnAttribute> D>
void Parts(Archive& a, D& d) {
    a(d.name, d.value, d.data);
}
template <class Archive, Is<Drawing> D>
void Parts(Archive& a, D& d) {
    a(d.view, d.body, d.label, d.attributes);
}
template <class Archive, Is<LineDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.points, d.style);
}
template <class Archive, Is<RectDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.first, d.second, d.style);
}
template <class Archive, Is<ArcDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.start, d.middle, d.end, d.style);
}
template <class Archive, Is<CircleDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.centre, d.radius, d.style);
}
template <class Archive, Is<TextDataQuill> D>
void Parts(Archive& a, D& d) {
    a(d.objectId, d.text, d.position, d.style);
}

// Appends values to a text of bytes.
class BlobWriter {
public:
    explicit BlobWriter(std::string& out) noexcept : m_out(out) {}

    template <class... Values>
    void operator()(const Values&... values) {
        (Put(values), ...);
    }

private:
    void Number(std::uint64_t value) {
        for (; value >= 0x80; value >>= 7)
            m_out.push_back(static_cast<char>(value | 0x80));
        m_out.push_back(static_cast<char>(value));
    }
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) void Put(T value) { Number(value); }
    template <std::signed_integral T>
    void Put(T value) {
        const std::int64_t wide = value;
        Number(static_cast<std::uint64_t>(wide) << 1 ^ static_cast<std::uint64_t>(wide >> 63));
    }
    void Put(bool value) { m_out.push_back(value ? 1 : 0); }
    template <class E>
    requires std::is_enum_v<E>
    void Put(E value) {
        static_assert(sizeof(E) == 1);
        m_out.push_back(static_cast<char>(value));
    }
    void Put(const Index& index) { Number(index.Value()); }
    void Put(const String& text) {
        Number(text.Length());
        m_out.append(text.View());
    }
    template <class T>
    void Put(const ListT<T>& list) {
        Number(list.Count());
        for (const T& element : list)
            Put(element);
    }
    template <class... Bodies>
    void Put(const std::variant<std::monostate, Bodies...>& body) {
        m_out.push_back(static_cast<char>(body.index()));
        std::visit([this](const auto& data) { this->Put(data); }, body);
    }
    void Put(const std::monostate&) {}
    template <std::copyable Data>
    requires requires(BlobWriter& archive, const Data& data) { Parts(archive, data); }
    void Put(const Data& data) { Parts(*this, data); }

    std::string& m_out;
};

// Thrown for bytes that are no such values.
struct BadBlob {};

// Takes values from bytes that outlive it.
class BlobReader {
public:
    explicit BlobReader(std::string_view bytes) noexcept : m_left(bytes) {}

    bool AtEnd() const noexcept { return m_left.empty(); }

    template <class... Values>
    void operator()(Values&... values) {
        (Take(values), ...);
    }

private:
    std::uint8_t Byte() {
        if (m_left.empty()) throw BadBlob();
        const std::uint8_t byte = static_cast<std::uint8_t>(m_left.front());
        m_left.remove_prefix(1);
        return byte;
    }
    std::uint64_t Number() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const std::uint64_t byte = Byte();
            const std::uint64_t bits = byte & 0x7F;
            if (bits << shift >> shift != bits) throw BadBlob();
            value |= bits << shift;
            if (byte < 0x80) return value;
        }
        throw BadBlob();
    }
    // A number of elements, each of which takes a byte at least.
    std::size_t Count() {
        const std::uint64_t count = Number();
        if (count > m_left.size()) throw BadBlob();
        return static_cast<std::size_t>(count);
    }
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) void Take(T& value) {
        const std::uint64_t wide = Number();
        value = static_cast<T>(wide);
        if (value != wide) throw BadBlob();
    }
    template <std::signed_integral T>
    void Take(T& value) {
        const std::uint64_t number = Number();
        const auto wide = static_cast<std::int64_t>(number >> 1 ^ (~(number & 1) + 1));
        value = static_cast<T>(wide);
        if (value != wide) throw BadBlob();
    }
    void Take(bool& value) {
        const std::uint8_t byte = Byte();
        if (byte > 1) throw BadBlob();
        value = byte == 1;
    }
    template <class E>
    requires std::is_enum_v<E>
    void Take(E& value) { value = static_cast<E>(Byte()); }
    void Take(Index& index) { index = Index(Number()); }
    void Take(String& text) {
        const std::string_view bytes = m_left.substr(0, Count());
        if (bytes.find('\0') != bytes.npos) throw BadBlob();
        text = String(bytes);
        m_left.remove_prefix(bytes.size());
    }
    template <class T>
    void Take(ListT<T>& list) {
        list.Clear();
        for (std::size_t left = Count(); left != 0; --left) {
            T element;
            Take(element);
            list.Append(std::move(element));
        }
    }
    template <class... Bodies>
    void Take(std::variant<std::monostate, Bodies...>& body) {
        const std::size_t kind = Byte();
        body = std::monostate();
        if (kind > sizeof...(Bodies)) throw BadBlob();
        std::size_t at = 0;
        const auto take = [&]<class Body>(Body data) {
            if (++at != kind) return;
            Take(data);
            body = std::move(data);
        };
        (take(Bodies()), ...);
    }
    template <class Data>
    requires requires(BlobReader& archive, Data& data) { Parts(archive, data); }
    void Take(Data& data) { Parts(*this, data); }

    std::string_view m_left;
};

template <class T>
void WriteBlob(const T& value, std::string& bytes) {
    bytes.clear();
    BlobWriter write(bytes);
    write(value);
}

template <class T>
void ReadBlob(std::string_view bytes, T& value) {
    BlobReader read(bytes);
    read(value);
    if (!read.AtEnd()) throw BadBlob();
}

}  // namespace Orin::DesignDb
