// The options by which pages are numbered.
#pragma once

#include <string>

#include "cli/syntax.h"
#include "pages/page_traverser.h"

namespace Quill::Cli {

struct PageOptions {
    std::string config;
    std::string order = "depth";
    std::string children = "default";
    bool descending = false;

    EAlgorithm Algorithm() const;
    ECompAlgorithm ChildAlgorithm() const;
};

// Adds --order, --children, --descending and --config.
void AddPageOptions(const Syntax& command, PageOptions& options);

}  // namespace Quill::Cli
