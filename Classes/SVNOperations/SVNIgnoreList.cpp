#include "Classes/SVNOperations/SVNIgnoreList.h"

#include "Classes/SVNOperations/SVNCharacters.h"
#include "Foundation/Lines.h"

namespace quen {

StringArray ignoreListFromText(std::string_view text) {
    StringArray list;
    for (const std::string_view line : linesOf(text)) {
        if (holdsAlphanumeric(line)) {
            list.emplace_back(line);
        }
    }
    return list;
}

} // namespace quen
