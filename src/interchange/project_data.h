// What a design says about its project, and the service that tells it to the libraries.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orin/orin.h"

namespace Quill::Interchange {

// Attributes of the design as a whole: the brackets of bus indexes ("", "[]" or "()"), and the named bus contents, one
// a line, a name, a tab and its comma-separated list.
inline constexpr char NetLimiterAttribute[] = "$$Internal_NET_LIMITER";
inline constexpr char BusContentsAttribute[] = "$$Internal_BUS_CONTENTS";

// The attributes that say this. Contents whose name holds a tab or a line break cannot be said and are left out.
std::vector<Orin::Attribute> ProjectAttributes(std::string_view netLimiter,
                                               const std::map<std::string, std::string>& busContents);

// While it lives, the libraries get their project data (platform/project_data.h) from the attributes of a snapshot.
// Each project-data object shows them as they were when it was made; an attribute that is missing reads as "" or no
// contents. Services may be made over one another; the last one made answers, and it has to go first.
class ProjectDataService {
public:
    explicit ProjectDataService(const Orin::ContainerT<const Orin::ISnapshot>& snapshot);
    ~ProjectDataService();
    ProjectDataService(const ProjectDataService&) = delete;
    ProjectDataService& operator=(const ProjectDataService&) = delete;

private:
    class Factory;
    std::unique_ptr<Factory> m_factory;
};

}  // namespace Quill::Interchange
