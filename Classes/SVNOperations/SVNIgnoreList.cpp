#include "Classes/SVNOperations/SVNIgnoreList.h"

#include "Classes/SVNOperations/SVNCharacters.h"

#include <algorithm>

namespace quen {

StringArray ignoreListFromText(std::string_view text) {
    StringArray list;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        if (holdsAlphanumeric(line)) {
            list.emplace_back(line);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return list;
}

} // namespace quen
