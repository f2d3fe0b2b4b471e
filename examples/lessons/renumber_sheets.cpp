// Lesson: move and renumber the sheets of a block in one transaction, and take it back.
#include <iostream>
#include <vector>

#include "sheets/sheet_range.h"
#include "small_design.h"

namespace {

// The order as the design has it now: a range shows what it loaded, plus its own moves.
void Print(const char* title, const Quill::SheetRange::Block& block) {
    Quill::SheetRange range;
    range.Init(block);
    std::cout << title << ':';
    for (Quill::SheetRange::Iterator it = range.Begin(); it != range.End(); ++it) {
        Orin::String name;
        Lessons::Check((*it)->GetName(name));
        std::cout << ' ' << name;
    }
    std::cout << '\n';
}

// Moves the last sheet to the front.
void Rearrange(const Quill::SheetRange::Block& block) {
    Quill::SheetRange range;
    range.Init(block);
    Quill::SheetRange::Iterator last = range.End();
    --last;
    range.MoveTo({*last}, *range.Begin(), false);
}

// Names the sheets S10, S20, ... in their order. False, with nothing changed, when another sheet bears such a name.
bool Renumber(const Quill::SheetRange::Block& block) {
    Quill::SheetRange range;
    range.Init(block);
    const std::vector<Quill::SheetRange::Sheet> sheets(range.Begin(), range.End());
    const Quill::SheetRange::NumberingInfo numbering{"S", 10, 10};
    return range.ValidateRenumber(sheets, numbering) && range.Renumber(sheets, numbering);
}

}  // namespace

int main() {
    try {
        const Lessons::SmallDesign design;
        Quill::SheetRange::Block block;
        Lessons::Check(design.snapshot->GetBlock(block, design.lamp));
        Print("As drawn", block);

        // Each operation of a range is a transaction of its own. Inside one of the caller's they join it, so that the
        // move and the renaming happen together or not at all.
        Lessons::Check(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
        Rearrange(block);
        Print("Rearranged", block);
        Renumber(block);
        Print("Renumbered", block);
        Lessons::Check(design.snapshot->RollbackTransaction());
        Print("Taken back", block);

        Lessons::Check(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
        Rearrange(block);
        if (Renumber(block)) {
            Lessons::Check(design.snapshot->CommitTransaction());
        } else {
            Lessons::Check(design.snapshot->RollbackTransaction());
        }
        Print("Done", block);
    } catch (const Orin::Result& failure) {  // leaving a transaction open: it is rolled back with its client
        std::cerr << static_cast<const char*>(failure.GetDescription()) << '\n';
        return 1;
    }
}
