#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace quen::tools::server {

/// Keeps texts under names, as many bytes as its bound allows; what was used least recently goes
/// first.
///
/// Threads: any.
class ByteCache {
public:
    explicit ByteCache(std::size_t bound) : bound_(bound) {}

    using Bytes = std::shared_ptr<const std::string>;
    /// Null where nothing is kept under that name.
    Bytes find(const std::string& name);
    /// One that is larger than a quarter of the bound is not kept.
    void keep(const std::string& name, Bytes bytes);
    /// Forgets everything: what was taken for unchangeable has been changed.
    void clear();
    std::size_t size() const;

private:
    struct Entry {
        std::string name;
        Bytes bytes;
    };

    const std::size_t bound_;
    mutable std::mutex mutex_;
    std::size_t size_ = 0;
    /// The most recently used in front.
    std::list<Entry> entries_;
    std::map<std::string, std::list<Entry>::iterator> byName_;
};

} // namespace quen::tools::server
