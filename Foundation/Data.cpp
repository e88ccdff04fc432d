#include "Foundation/Data.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace quen {

char* Data::room(std::size_t count) {
    if (capacity_ - size_ < count) {
        const std::size_t capacity = std::max({size_ + count, 2 * capacity_, std::size_t{4096}});
        void* const larger = std::realloc(buffer_.get(), capacity);
        if (larger == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(buffer_.release());
        buffer_.reset(static_cast<char*>(larger));
        capacity_ = capacity;
    }
    return buffer_.get() + size_;
}

void Data::append(std::string_view bytes) {
    if (!bytes.empty()) {
        std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
        addFilled(bytes.size());
    }
}

} // namespace quen
