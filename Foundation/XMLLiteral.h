#pragma once

#include <string>
#include <string_view>

namespace quen {

/// A quoted literal at the beginning of a report's bytes, as UTF-8, with what stands between the
/// quotes. The literal is complete. `isLatin` tells ISO-8859-1 from the other encodings of one byte
/// a unit, which are UTF-8 and its part US-ASCII; UTF-16 tells itself. Private to the XML reader.
std::string xmlLiteral(std::string_view bytes, bool isLatin);

} // namespace quen
