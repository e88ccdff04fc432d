#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

#include <exception>

namespace quen {

String quensc_stringFromData(const DataPtr& data) {
    if (data == nullptr) {
        return {};
    }
    const std::string_view bytes = data->bytes();
    try {
        if (isUTF8(bytes)) {
            return bytes;
        }
        // Text of before UTF-8 must still show; a zero byte means that it is no text at all.
        return bytes.find('\0') == std::string_view::npos ? String(fromLatin1(bytes)) : String();
    } catch (const std::exception&) {
        return {}; // longer than a text can be
    }
}

} // namespace quen
