// The project of the design that the program works on, as the libraries ask for it.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "orin/orin.h"

namespace Quill::Cli {

// The service "IProjectData" of a design, from the attributes that interchange/project_attributes.h names. Registered
// from construction to destruction; one at a time.
class ProjectService {
public:
    // Reads the attributes; throws a CommandError when that fails. The limiter is "[]" where the design names none.
    explicit ProjectService(const Orin::ISnapshot& design);
    ~ProjectService();

    const std::string& NetLimiter() const noexcept;
    const std::map<std::string, std::string>& BusContents() const noexcept;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill::Cli
