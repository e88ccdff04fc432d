#include "Classes/SVNOperations/SVNIgnoreList.h"

#include <algorithm>
#include <utf8proc.h>

namespace quen {

namespace {

/// The classes stand in this order: the letters, the marks, the digits and other numbers.
bool isAlphanumeric(utf8proc_int32_t character) noexcept {
    const utf8proc_category_t category = utf8proc_category(character);
    return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

bool holdsAlphanumeric(std::string_view line) noexcept {
    while (!line.empty()) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(line.data()),
                             static_cast<utf8proc_ssize_t>(line.size()), &character);
        if (length > 0 && isAlphanumeric(character)) {
            return true;
        }
        line.remove_prefix(static_cast<std::size_t>(std::max<utf8proc_ssize_t>(length, 1)));
    }
    return false;
}

} // namespace

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
