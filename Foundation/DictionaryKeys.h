#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <cstddef>
#include <initializer_list>
#include <vector>

namespace quen {

/// The keys that every record of a kind has, in their order: kept once, and not in each table. See
/// Dictionary::withKeys.
///
/// Threads: immutable.
class QUEN_EXPORT DictionaryKeys {
public:
    /// For the life of the program: the same list is made once. All differ, and there are at most
    /// Dictionary::indexThreshold. Throws std::bad_alloc.
    static const DictionaryKeys& constant(std::initializer_list<String> keys);

    std::size_t count() const noexcept { return keys_.size(); }
    const String* begin() const noexcept { return keys_.data(); }
    const String* end() const noexcept { return begin() + count(); }

    explicit DictionaryKeys(std::initializer_list<String> keys) : keys_(keys) {}

private:
    std::vector<String> keys_;
};

} // namespace quen
