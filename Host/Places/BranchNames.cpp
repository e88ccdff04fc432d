#include "Host/Places/BranchNames.h"

#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"

namespace quen {

bool isBranchName(std::string_view name) {
    while (true) {
        const std::size_t end = name.find('/');
        const std::string_view part = name.substr(0, end);
        if (part.empty() || part == "." || part == "..") {
            return false;
        }
        if (end == std::string_view::npos) {
            return true;
        }
        name.remove_prefix(end + 1);
    }
}

std::string encodedName(std::string_view name) {
    // The client takes `%40` for an `@` all the same.
    return percentEncoded(name, "-._~/@");
}

String branchNameInURL(std::string_view name) {
    return withPegClosed(encodedName(name));
}

} // namespace quen
