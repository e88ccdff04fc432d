#include "Foundation/XMLEntities.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quen {

namespace {

/// Character references and the five entities that need no declaration.
bool needsDeclaration(std::string_view name) noexcept {
    constexpr std::array<std::string_view, 5> known = {"lt", "gt", "amp", "apos", "quot"};
    return !name.starts_with('#') && std::find(known.begin(), known.end(), name) == known.end();
}

} // namespace

bool XMLEntities::everyName(std::string_view markup,
                            const std::function<bool(std::string_view)>& isTaken) {
    for (std::size_t i = markup.find('&'); i != std::string_view::npos; i = markup.find('&', i)) {
        ++i;
        const std::string_view name = markup.substr(i, markup.find(';', i) - i);
        if (needsDeclaration(name) && !isTaken(name)) {
            return false;
        }
    }
    return true;
}

bool XMLEntities::haveAllIn(std::string_view markup) {
    // Each entity is looked into once, however often others refer to it.
    std::set<std::string_view> seen;
    std::vector<std::string_view> waiting;
    const auto take = [&](std::string_view name) {
        const auto found = texts_.find(name);
        if (found != texts_.end() && !complete_.contains(name) &&
            seen.insert(found->first).second) {
            waiting.push_back(found->second);
        }
        return found != texts_.end();
    };
    bool hasAll = everyName(markup, take);
    while (hasAll && !waiting.empty()) {
        const std::string_view text = waiting.back();
        waiting.pop_back();
        hasAll = everyName(text, take);
    }
    if (hasAll) {
        complete_.insert(seen.begin(), seen.end());
    }
    return hasAll;
}

} // namespace quen
