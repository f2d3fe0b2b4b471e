// What identifies a page, without its name.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "orin/index.h"
#include "pages/page_id.h"

namespace Quill::detail {

struct PageKey {
    Orin::Index path;
    Orin::Index group;

    bool operator==(const PageKey&) const = default;
};

inline PageKey KeyOf(const PageID& page) noexcept {
    return {page.path, page.group};
}

// A page that is good for look-ups only.
inline PageID WithoutName(const PageKey& key) noexcept {
    return {key.path, key.group, std::string()};
}

struct PageKeyHash {
    std::size_t operator()(const PageKey& key) const noexcept {
        const std::hash<Orin::Index> hash;
        return hash(key.path) * 31 + hash(key.group);
    }
};

}  // namespace Quill::detail
