#include "Foundation/PegPath.h"

#include "Foundation/PathComponents.h"

namespace quen {

bool needsPegClosed(std::string_view path) noexcept {
    return lastPathComponent(path).find('@') != std::string_view::npos;
}

String withPegClosed(const String& path) {
    return needsPegClosed(path.view()) ? String(path.str() + "@") : path;
}

} // namespace quen
