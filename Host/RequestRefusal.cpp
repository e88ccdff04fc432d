#include "Host/RequestRefusal.h"

#include "Foundation/PathComponents.h"
#include "Host/TaskFailure.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace quen {

namespace {

/// The place as the client reads it: `%2e` and `%2f` are a dot and a separator as well.
std::string decoded(std::string_view place) {
    std::string text;
    while (!place.empty()) {
        const std::string_view start = place.substr(0, 3);
        const bool isDot = start == "%2e" || start == "%2E";
        const bool isSeparator = start == "%2f" || start == "%2F";
        text += isDot ? '.' : isSeparator ? '/' : place.front();
        place.remove_prefix(isDot || isSeparator ? 3 : 1);
    }
    return text;
}

/// Whether the client, which drops empty components, dots and a peg revision, finds no name at this
/// place below the folder.
bool namesNothing(std::string_view place) {
    const std::string path = decoded(place.substr(0, place.rfind('@')));
    const auto components = pathComponents(path);
    return std::ranges::all_of(components, [](std::string_view component) {
        return component == "/" || component == "." || component == "..";
    });
}

} // namespace

Error refusalOfRequest(const QuenSourceControlRequest& request) {
    const bool removesBranch = request.type() == RequestTypeRemoteRemove;
    if (!removesBranch || request.destination().isNil() ||
        !namesNothing(request.destination().view())) {
        return {};
    }
    return {QuenSourceControlTaskErrorDomain,
            TaskErrorCouldNotStart,
            {{NSLocalizedDescriptionKey,
              "The request names no branch, and would remove the folder of branches with all of "
              "them."},
             {NSLocalizedRecoverySuggestionErrorKey, "Name the branch to remove."}}};
}

} // namespace quen
