#include "config/detail/installation.h"

#include "config/detail/files.h"
#include "platform/environment.h"
#include "text/ascii.h"

namespace Quill::ConfigDetail {

std::string InstallationRoot() {
    return zolt::env::GetVariable("TOVE_HOME");
}

std::string NormalisedInstallationRoot() {
    return Text::ToLower(WithForwardSlashes(InstallationRoot()));
}

}  // namespace Quill::ConfigDetail
