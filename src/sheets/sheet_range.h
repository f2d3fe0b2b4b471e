// The sheets of one block in the order in which the user arranged them.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "orin/snapshot.h"
#include "quillutils_export.h"

namespace Quill {

// The order is kept in the design, as the attribute "$$Internal_CUSTOM_ORDER" of each sheet: it stays with the design
// and is shared by every tool that opens it. A range shows the order as it was when it was loaded, plus its own moves;
// IsOrderChanged tells when to load it again. Sheets are the groups of type 2 and 8; they are told apart by index.
//
// A range holds read handles to the block, its snapshot and its sheets, and borrows nothing. One pointer wide; one
// thread at a time. One that was never loaded, or failed to load, is empty. An observer of the design may load the
// range again from within the range's own writes. A moved-from range can be destroyed or assigned only.
//
// Writes lock each sheet that changes and form one transaction. When the caller has a transaction on the snapshot they
// join it, and nothing is begun, committed or rolled back; a caller that rolls it back loads the range again.
// When a write fails, the failed Orin::Result is thrown. A transaction of the range's own was rolled back then, so that
// the design is as before; so is the range in either case.
class QUILLUTILS_EXPORT SheetRange {
    struct Entry;

public:
    using Block = Orin::ContainerT<const Orin::IBlock>;
    using Sheet = Orin::ContainerT<const Orin::IGroup>;
    using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;

    // Names for consecutive sheets: the prefix, then start, start + step, start + 2 step, ... in decimal.
    struct NumberingInfo {
        std::string prefix;
        int start = 1;
        int step = 1;
    };

    // A place in a range, which must outlive it. After a move the iterator stands at the same place, where another
    // sheet may be now; loading makes it invalid. Iterators of one range are equal when their places are.
    class QUILLUTILS_EXPORT Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Sheet;
        using difference_type = std::ptrdiff_t;
        using pointer = const Sheet*;
        using reference = const Sheet&;

        Iterator(const Iterator& other);
        Iterator& operator=(const Iterator& other);
        ~Iterator();

        // The sheet; not at the end.
        const Sheet& operator*() const;
        const Sheet* operator->() const { return &**this; }

        bool operator==(const Iterator& other) const;
        bool operator!=(const Iterator& other) const;

        // Not beyond the end, or before the beginning.
        Iterator& operator++();
        Iterator operator++(int);
        Iterator& operator--();
        Iterator operator--(int);

    private:
        friend class SheetRange;
        struct Place;
        Iterator(const std::vector<std::unique_ptr<Entry>>& entries, std::size_t position);

        std::unique_ptr<Place> m_place;
    };

    SheetRange();
    SheetRange(SheetRange&&) noexcept;
    SheetRange& operator=(SheetRange&&) noexcept;
    ~SheetRange();

    // ---- Loading ----

    // Loads the sheets of the block; true. Sheets without an order (none, 0 or no number) come last, in the order in
    // which the block lists them. What is said of one sheet and cannot be read counts as absent.
    // Throws the failed Orin::Result when the block's snapshot or groups cannot be read; the range is then empty.
    bool Init(const Block& block);

    // The same for the only block of that name. False, with the range as it was, when there is no such block or there
    // are several; a look-up that fails is thrown, with the range as it was.
    bool Init(Snapshot snapshot, const char* blockName);

    // Whether a change that an observer was told of may have changed the order of the block's sheets: an attribute was
    // set (kind 6) on a group that the block itself owns.
    static bool IsOrderChanged(Block block, Orin::Index changed, Orin::EEventsChange kind);

    // ---- Looking ----

    Iterator Begin() const;
    Iterator End() const;
    int Count() const noexcept;

    Iterator Find(Sheet sheet) const;
    // The first sheet that bears exactly this name at present, letter case included. Unlike SheetName, to which "a" and
    // "A" are the same.
    Iterator Find(const std::string& name) const;

    // Moves `it` by `n` places, backwards when `n` is negative. It stops at `limit` when it comes to it, and at both
    // ends of the range.
    static void Advance(Iterator& it, int n, Iterator limit);

    // ---- Order ----

    // Whether `a` stands before `b`. Sheets outside the range stand behind all others, none before another.
    bool Compare(Sheet a, Sheet b) const;
    // Sorts by Compare; sheets outside the range keep their order among themselves.
    void Sort(std::vector<Sheet>& sheets) const;

    // False when `target` is one of `sheets`. `after` plays no part.
    bool CanMoveTo(const std::vector<Sheet>& sheets, Sheet target, bool after) const;
    // Puts `sheets` directly before `target` (after it when `after`), in the order that they have in the range; a sheet
    // listed twice moves once. Does not ask CanMoveTo: when the target is moved too, all stay around its place.
    // False, with nothing changed, when `target` or one of `sheets` is not in the range.
    bool MoveTo(const std::vector<Sheet>& sheets, Sheet target, bool after);

    bool CanMoveUp(Sheet sheet) const;    // whether it is in the range, but not first
    bool CanMoveDown(Sheet sheet) const;  // whether it is in the range, but not last
    // Exchanges the sheet with the one before or behind it. False, with nothing changed, when that cannot be.
    bool MoveUp(Sheet sheet);
    bool MoveDown(Sheet sheet);

    // ---- Names and ids ----
    // Taken are those that the sheets had when the range was loaded and those that were made since.

    bool NameAlreadyExists(const std::string& name) const;  // letter case counts

    // A fresh number: the first one above the largest sheet id that is not taken; above 1 when there are no ids, so a
    // block without sheets begins with "2".
    void CreateNewName(std::string& name);
    // `base` itself, or else the first of `base`_1, `base`_2, ... that is not taken.
    void CreateNewName(const std::string& base, std::string& name);
    // A fresh sheet id: the first one that is not taken from the number at the beginning of `name` upwards, from 1 when
    // that is 0 or there is none. Behind the largest integer the search goes on at 1.
    int CreateNewId(const std::string& name);

    // ---- Renumbering ----

    // Whether no name of the numbering is taken by a sheet outside `sheets`. Whether the numbering gives one name twice
    // (step 0) is not looked at.
    bool ValidateRenumber(const std::vector<Sheet>& sheets, const NumberingInfo& info) const;
    // Names `sheets` by the numbering, in the order given; true. Refuses no clash: ask ValidateRenumber before. The
    // names that the range holds as taken stay the old ones; load it again afterwards.
    bool Renumber(const std::vector<Sheet>& sheets, const NumberingInfo& info);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill
