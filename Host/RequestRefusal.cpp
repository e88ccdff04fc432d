#include "Host/RequestRefusal.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"
#include "Host/TaskFailure.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace quen {

namespace {

/// Whether the client, which drops empty components, dots and a peg revision, and reads `%2e` and
/// `%2f` as dots and separators, finds no name at this place below the folder.
bool namesNothing(std::string_view place) {
    const std::string path = percentDecoded(withoutPeg(place));
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
