// Lesson: number the pages of a design and go through them.
//
// A page is a sheet of a block at one place of the hierarchy: the channel has one sheet, but it gives two pages, since
// the lamp uses it twice.
#include <iostream>

#include "pages/page_traverser.h"
#include "small_design.h"

namespace {

void Print(const char* title, const Quill::PageTraverser& pages) {
    std::cout << title << '\n';
    for (Quill::PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        std::cout << "  " << pages.pageNumber(page) << "  " << page.name << '\n';
}

}  // namespace

int main() {
    try {
        const Lessons::SmallDesign design;

        // A traverser walks one configuration of the design. It knows no page until it is told how to number and has
        // walked: what it shows afterwards is the design as it was then.
        Quill::PageTraverser pages(*design.connection, "lamp", Quill::EViewMode::Logical);
        pages.setAlgorithm(Quill::EAlgorithm::DepthFirst, Quill::ECompAlgorithm::Name);
        pages.update();
        Print("Depth first", pages);

        // Another way of numbering gives the pages up, so the design is walked again.
        pages.setAlgorithm(Quill::EAlgorithm::LevelByLevel, Quill::ECompAlgorithm::Name);
        pages.update();
        Print("Level by level", pages);

        // An excluded page takes what is below it along, and the others close up. This lasts until the next update; a
        // sheet that bears the attribute "ExcludeFromPrintout" is excluded by every walk.
        pages.excludePage(pages.getPageByName("2"));
        Print("Without sheet 2", pages);
    } catch (const Orin::Result& failure) {
        std::cerr << static_cast<const char*>(failure.GetDescription()) << '\n';
        return 1;
    }
}
