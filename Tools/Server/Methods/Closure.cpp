#include "Tools/Server/Methods/Closure.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quen::tools::server {

std::vector<StatusItem> freshItems(const Services& services, const std::stop_token& stop,
                                   const std::string& root, const std::vector<std::string>& paths,
                                   Ran& ran) {
    const WorkingCopies::Opened opened = services.copies.open(root, {stop, {}, {}});
    ran = opened.ran;
    if (opened.copy == nullptr) {
        return {};
    }
    ran = services.copies.refreshBelow(opened.copy, paths, {stop, {}, {}});
    std::vector<StatusItem> items;
    for (const std::string& path : paths) {
        for (StatusItem& item : opened.copy->itemsAtOrBelow(path)) {
            const bool isKnown =
                std::any_of(items.begin(), items.end(),
                            [&](const StatusItem& other) { return other.path == item.path; });
            if (!isKnown) {
                items.push_back(std::move(item));
            }
        }
    }
    return items;
}

bool isSent(const StatusItem& item) {
    constexpr std::array words{"added", "deleted", "modified", "replaced", "conflicted"};
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return item.status == word; }) ||
           item.property == "modified" || item.property == "conflicted";
}

std::vector<std::string> takenAlong(const Services& services, const std::stop_token& stop,
                                    const std::string& root,
                                    const std::vector<std::string>& paths) {
    Ran ran;
    std::vector<std::string> more;
    for (const StatusItem& item : freshItems(services, stop, root, paths, ran)) {
        if (isSent(item) && std::find(paths.begin(), paths.end(), item.path) == paths.end()) {
            more.push_back(item.path);
        }
    }
    return more;
}

} // namespace quen::tools::server
