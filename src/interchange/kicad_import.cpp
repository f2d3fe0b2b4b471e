#include "interchange/kicad_import.h"

#include <exception>
#include <new>

#include "interchange/detail/design_model.h"
#include "interchange/detail/kicad/design_builder.h"
#include "interchange/detail/kicad/item_ids.h"

namespace Quill::Interchange {

std::optional<KicadMessage> ImportKicad(const std::filesystem::path& root, const KicadOptions& options,
                                        const Orin::ContainerT<const Orin::ISnapshot>& snapshot, Orin::String& name,
                                        std::vector<KicadMessage>& warnings) {
    // What goes wrong in the database is said of the design as a whole.
    const auto whole = [&root](std::string reason) {
        return KicadMessage{root.generic_string(), 0, 0, std::move(reason)};
    };
    try {
        // The model refers to no text of the files, so they go before the model is entered.
        const auto make = [&] {
            Kicad::Hierarchy hierarchy = Kicad::LoadHierarchy(root, options.allowMissing, warnings);
            return Kicad::BuildDesign(hierarchy, options, warnings);
        };
        name = ImportDesign(snapshot, make, [&](DesignModel& design) { Kicad::NumberItems(design, snapshot); });
        return std::nullopt;
    } catch (KicadMessage& fault) {
        return std::move(fault);
    } catch (const DesignJsonFault& fault) {
        return whole(fault.Message());
    } catch (Orin::Result& failed) {
        return whole(static_cast<const char*>(failed.GetDescription()));
    } catch (const std::bad_alloc&) {
        return whole("Out of memory");
    } catch (const std::exception& failed) {  // of the file system
        return whole(failed.what());
    }
}

}  // namespace Quill::Interchange
