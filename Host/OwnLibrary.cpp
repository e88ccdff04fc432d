#include "Host/OwnLibrary.h"

#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <system_error>

namespace quen {

OwnLibrary ownLibrary() {
    Dl_info info{};
    void* extra = nullptr;
    if (::dladdr1(reinterpret_cast<const void*>(&ownLibrary), &info, &extra, RTLD_DL_LINKMAP) ==
        0) {
        return {};
    }
    // The program's own entry has no name.
    const char* const name = static_cast<const link_map*>(extra)->l_name;
    const bool isProgram = name == nullptr || *name == '\0';
    std::error_code error;
    return {std::filesystem::canonical(isProgram ? "/proc/self/exe" : name, error).string(),
            isProgram};
}

std::filesystem::path directoryOfLibraries() {
    const OwnLibrary own = ownLibrary();
    const auto directory = std::filesystem::path(own.path).parent_path();
    return own.isProgram ? directory.parent_path() / QUEN_LIBRARY_DIRECTORY : directory;
}

} // namespace quen
