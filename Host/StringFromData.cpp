#include "Foundation/Lines.h"
#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

#include <exception>
#include <string>

namespace quen {

namespace {

/// Text of before UTF-8 must still show, and spoil no line that is UTF-8.
std::string decodedLineByLine(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    while (!bytes.empty()) {
        const std::string_view line = takeLineWithFeed(bytes);
        if (isUTF8(line)) {
            text += line;
        } else {
            text += fromLatin1(line);
        }
    }
    return text;
}

} // namespace

String quensc_stringFromData(const DataPtr& data) {
    if (data == nullptr) {
        return {};
    }
    const std::string_view bytes = data->bytes();
    try {
        if (isUTF8(bytes)) {
            return bytes;
        }
        // A zero byte means that it is not text at all.
        return bytes.find('\0') == std::string_view::npos ? String(decodedLineByLine(bytes))
                                                          : String();
    } catch (const std::exception&) {
        return {}; // longer than a text can be
    }
}

} // namespace quen
