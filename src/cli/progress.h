// Tells whoever waits at a terminal what takes long.
#pragma once

#include <memory>
#include <string>

#include "orin/orin.h"

namespace Quill::Cli {

// Work that goes on while this lives. From its second second on, a line of standard error says what it is and how long
// it has taken; the line is gone at the end, and when a signal ends the program. Nothing is shown, and nothing is
// spent, where standard error is no terminal that can wipe a line out. Others do not write to standard error meanwhile,
// and there is one at a time.
class Progress {
public:
    // With a snapshot, the line also counts the objects that come into it.
    explicit Progress(std::string what, Orin::ContainerT<const Orin::ISnapshot> snapshot = {});
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;  // null where nothing is shown
};

}  // namespace Quill::Cli
