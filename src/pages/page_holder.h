// Keeps the pages of a walk, numbers them, and answers what comes first, next and where.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pages/page_id.h"
#include "quillutils_export.h"

namespace Quill {

class PageNumberSupplier;

// What pageOrder gives for a page without a number.
inline constexpr unsigned NoPageNumber = 0xFFFFFFFF;

// Pages are entered in the order of the walk and told apart by their two indexes. A page that is held already is not
// entered again: a walk may come by twice, and an iteration is to end all the same. Queries for a page that is not
// held, or that has no number, give the empty PageID, NoPageNumber or false; operations on it do nothing.
// A holder keeps copies and borrows nothing. One thread at a time, queries included.
class QUILLUTILS_EXPORT PageHolder {
public:
    virtual ~PageHolder();

    // The numbered pages in the order of their numbers. Positions count from 0.
    virtual PageID firstPage() const = 0;
    virtual PageID nextPage(const PageID& current) const = 0;
    virtual PageID getPage(unsigned position) const = 0;
    virtual unsigned pagesCount() const = 0;

    // The page's number, counted from 1.
    virtual unsigned pageOrder(const PageID& page) const = 0;

    // The page of that name, numbered or not. Of several the one that was entered first.
    virtual PageID getPageByName(const std::string& name) const = 0;

    // Enters a page. `numbers` is read, and advanced if it is a counter; it is borrowed for the call.
    virtual void addPage(const PageID& page, PageNumberSupplier* numbers, bool excluded) = 0;

    virtual void includePage(const PageID& page) = 0;
    virtual void excludePage(const PageID& page) = 0;
    virtual void removePage(const PageID& page) = 0;

    // Numbers the pages without gaps.
    virtual void renumber() = 0;
    virtual void clear() = 0;

    // Whether the page is held, numbered or not.
    virtual bool containsPage(const PageID& page) const = 0;

    // All pages that are held, numbered or not, in the order of their entering.
    virtual std::vector<PageID> heldPages() const = 0;

protected:
    PageHolder() = default;
    PageHolder(const PageHolder&) = default;
    PageHolder& operator=(const PageHolder&) = default;
};

// Numbers the pages in the order in which they were added. Its suppliers are OrdinalNumberSuppliers; a page added with
// another one, or with none, has no number until the next renumber.
//
// Every page added draws a number, the excluded ones and those that are held already too; renumber closes the gaps.
// Excluded pages are held apart: they have no number and are not iterated. A page that is included again returns to its
// place in the walk. From excluding, including and removing to the next renumber the other numbers stay as they are,
// and an included page has none.
class QUILLUTILS_EXPORT SequencedPageHolder : public PageHolder {
public:
    SequencedPageHolder();
    SequencedPageHolder(SequencedPageHolder&&) noexcept;
    SequencedPageHolder& operator=(SequencedPageHolder&&) noexcept;
    ~SequencedPageHolder() override;

    PageID firstPage() const override;
    PageID nextPage(const PageID& current) const override;
    PageID getPage(unsigned position) const override;
    unsigned pagesCount() const override;
    unsigned pageOrder(const PageID& page) const override;
    PageID getPageByName(const std::string& name) const override;
    void addPage(const PageID& page, PageNumberSupplier* numbers, bool excluded) override;
    void includePage(const PageID& page) override;
    void excludePage(const PageID& page) override;
    void removePage(const PageID& page) override;
    void renumber() override;
    void clear() override;
    bool containsPage(const PageID& page) const override;
    std::vector<PageID> heldPages() const override;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

// Numbers the pages by their print orders, texts such as "2-1". Its suppliers are StringBaseNumberSuppliers. A page
// without a print order, or with one that another page holds already, is held but has no number and is not iterated.
//
// Exclusion means nothing here: who gives a page a print order wants it printed. includePage, excludePage, removePage
// and renumber do nothing.
class QUILLUTILS_EXPORT RandomPageHolder : public PageHolder {
public:
    RandomPageHolder();
    RandomPageHolder(RandomPageHolder&&) noexcept;
    RandomPageHolder& operator=(RandomPageHolder&&) noexcept;
    ~RandomPageHolder() override;

    // The print-order comparison: whether `a` stands before `b`. An empty text stands before everything, itself
    // included. Others are split at " ", ".", "/" and "-", empty pieces dropped, and the first pair of pieces that
    // differs decides: two numbers by value, other pieces byte by byte. A piece counts as a number when it begins with
    // one that is not zero, or is "0" itself. When all pairs are equal the shorter list is first.
    //
    // This is no strict weak order ("3" before "05" before "0a" before "3"), so no standard algorithm may sort by it.
    // The holder's own sort is safe, and texts of which none is before the other keep the order of their adding.
    static bool IsBefore(std::string_view a, std::string_view b);

    PageID firstPage() const override;
    PageID nextPage(const PageID& current) const override;
    PageID getPage(unsigned position) const override;
    unsigned pagesCount() const override;
    unsigned pageOrder(const PageID& page) const override;
    PageID getPageByName(const std::string& name) const override;
    void addPage(const PageID& page, PageNumberSupplier* numbers, bool excluded) override;
    void includePage(const PageID& page) override;
    void excludePage(const PageID& page) override;
    void removePage(const PageID& page) override;
    void renumber() override;
    void clear() override;
    bool containsPage(const PageID& page) const override;
    std::vector<PageID> heldPages() const override;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill
