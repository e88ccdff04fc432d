#include "Tools/Server/Runs/ByteCache.h"

#include <utility>

namespace quen::tools::server {

namespace {

std::size_t sizeOf(const std::string& name, const ByteCache::Bytes& bytes) {
    return 2 * name.size() + bytes->size() + 128;
}

} // namespace

ByteCache::Bytes ByteCache::find(const std::string& name) {
    const std::lock_guard lock(mutex_);
    const auto found = byName_.find(name);
    if (found == byName_.end()) {
        return nullptr;
    }
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->bytes;
}

void ByteCache::keep(const std::string& name, Bytes bytes) {
    const std::size_t size = sizeOf(name, bytes);
    const std::lock_guard lock(mutex_);
    if (size > bound_ / 4 || byName_.contains(name)) {
        return;
    }
    entries_.push_front({name, std::move(bytes)});
    byName_[name] = entries_.begin();
    size_ += size;
    while (size_ > bound_) {
        const Entry& oldest = entries_.back();
        size_ -= sizeOf(oldest.name, oldest.bytes);
        byName_.erase(oldest.name);
        entries_.pop_back();
    }
}

void ByteCache::clear() {
    const std::lock_guard lock(mutex_);
    byName_.clear();
    entries_.clear();
    size_ = 0;
}

std::size_t ByteCache::size() const {
    const std::lock_guard lock(mutex_);
    return size_;
}

} // namespace quen::tools::server
