// The pages of a design as documents for a browser.
#pragma once

#include <set>
#include <string>

#include "cli/page_map.h"

namespace Quill::Cli {

// Documents of HTML that refer to each other and to "style.css", by names in one folder, and to nothing else.
class ReportSite {
public:
    // Borrows `map`. `name` is that of the design.
    ReportSite(PageMap& map, std::string name) : m_map(map), m_name(std::move(name)) {}

    // The document "index.html": the tree of the pages.
    std::string Index() const;
    // The document of a numbered page, PageMap::FileOf: its picture, where it leads, and what is on it.
    std::string Page(std::size_t page) const;
    static std::string Style();

private:
    std::string Head(const std::string& title) const;
    std::string Way(std::size_t page) const;
    std::string Neighbours(std::size_t page) const;
    // `drawn`: the anchors in the page's picture. What is not there has its anchor in the lists.
    using Anchors = std::set<std::string>;
    std::string Below(std::size_t page, Anchors drawn) const;
    std::string Connectors(std::size_t page, const Anchors& drawn) const;
    std::string Wires(std::size_t page, const Anchors& drawn) const;
    std::string Link(std::size_t page, const std::string& text, const char* attributes = "") const;

    PageMap& m_map;
    const std::string m_name;
};

}  // namespace Quill::Cli
