#include "Foundation/DictionaryKeys.h"

#include <algorithm>
#include <deque>
#include <mutex>

namespace quen {

const DictionaryKeys& DictionaryKeys::constant(std::initializer_list<String> keys) {
    // They belong to this library and not to who asks: tables may outlive a module.
    static std::mutex mutex;
    static std::deque<DictionaryKeys> known;
    const std::lock_guard lock(mutex);
    const auto same = std::find_if(known.begin(), known.end(), [&](const DictionaryKeys& each) {
        return std::equal(each.begin(), each.end(), keys.begin(), keys.end());
    });
    return same == known.end() ? known.emplace_back(keys) : *same;
}

} // namespace quen
