// Reads documents of XML as strictly as is needed to know that any reader of them will manage.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Tests {

struct Markup {
    std::string fault;  // empty when the document is well-formed
    std::set<std::string> ids;
    std::vector<std::string> hrefs;
};

inline Markup ReadMarkup(std::string_view text) {
    Markup read;
    std::vector<std::string> open;
    std::size_t at = 0;
    const auto fail = [&](const std::string& what) {
        read.fault = what + " before \"" + std::string(text.substr(at, 40)) + '"';
        return read;
    };
    const auto isText = [](std::string_view part) {
        for (std::size_t i = 0; i < part.size(); ++i) {
            const auto c = static_cast<unsigned char>(part[i]);
            if (c == '<' || (c < ' ' && c != '\n')) return false;
            if (c != '&') continue;
            bool known = false;
            for (const std::string_view entity : {"&amp;", "&lt;", "&gt;", "&quot;", "&#39;"})
                known = known || part.substr(i, entity.size()) == entity;
            if (!known) return false;
        }
        return true;
    };
    for (std::size_t next = 0; at < text.size(); at = next) {
        const std::size_t tag = std::min(text.find('<', at), text.size());
        if (!isText(text.substr(at, tag - at))) return fail("a character that has to be escaped");
        if (open.empty() && text.substr(at, tag - at).find_first_not_of('\n') != text.npos) return fail("stray text");
        if (tag == text.size()) break;
        at = tag;
        next = text.find('>', at) + 1;
        if (next == 0) return fail("a tag without an end");
        std::string_view body = text.substr(at + 1, next - at - 2);
        if (body[0] == '?' || body == "!DOCTYPE html") continue;
        if (body[0] == '/') {
            if (open.empty() || open.back() != body.substr(1)) return fail("an end that fits no beginning");
            open.pop_back();
            continue;
        }
        const bool single = body.back() == '/';
        if (single) body.remove_suffix(1);
        const std::size_t name = std::min(body.find(' '), body.size());
        if (!single) open.emplace_back(body.substr(0, name));
        std::set<std::string_view> given;
        for (body.remove_prefix(name); !body.empty();) {
            const std::size_t equals = body.find("=\"");
            const std::size_t quote = equals == body.npos ? equals : body.find('"', equals + 2);
            if (body[0] != ' ' || quote == body.npos) return fail("an attribute without a value");
            const std::string_view key = body.substr(1, equals - 1);
            const std::string value(body.substr(equals + 2, quote - equals - 2));
            if (!given.insert(key).second || !isText(value)) return fail("an attribute twice or not escaped");
            if (key == "id" && !read.ids.insert(value).second) return fail("an id twice");
            if (key == "href") read.hrefs.push_back(value);
            body.remove_prefix(quote + 1);
        }
    }
    if (!open.empty()) return fail("an element without an end");
    return read;
}

}  // namespace Tests
