#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <functional>
#include <string>
#include <string_view>

namespace quen {

/// Where something was put, or why nowhere.
struct Placement {
    String path;
    Error error;
};

/// Puts something beside `path`, under its name with `suffix`, and under `.2`, `.3`, .. behind that
/// where the names are taken. `put` must refuse a name that exists with the code `EEXIST`. A name
/// that gets too long for the file system is cut before the suffix, not within a character.
QUEN_EXPORT Placement atFreeName(const std::string& path, std::string_view suffix,
                                 const std::function<Error(const String& path)>& put);

} // namespace quen
