#include "Host/Keeping/FileErrors.h"

#include <string>
#include <system_error>

namespace quen {

const String FileErrorDomain = String::constant("FileErrorDomain");

Error fileError(int number, std::string_view path, std::string_view what) {
    std::string text = "\"" + std::string(path) + "\" " + std::string(what) + ": ";
    text += std::generic_category().message(number) + ".";
    return Error(FileErrorDomain, number, {{NSLocalizedDescriptionKey, String(text)}});
}

} // namespace quen
