#include "interchange/design_json.h"

#include <new>

#include "interchange/detail/design_model.h"

namespace Quill::Interchange {

std::string DesignJsonFault::Message() const {
    return pointer.empty() ? reason : pointer + ": " + reason;
}

std::optional<DesignJsonFault> ReadDesignJson(std::string_view text,
                                              const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                                              Orin::String& name) {
    try {
        name = ImportDesign(snapshot, [text] { return ParseDesign(text); });
        return std::nullopt;
    } catch (DesignJsonFault& fault) {
        return std::move(fault);
    } catch (const std::bad_alloc&) {
        return DesignJsonFault{{}, "Out of memory"};
    }
}

}  // namespace Quill::Interchange
