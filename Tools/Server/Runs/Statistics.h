#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>

namespace quen::tools::server {

/// Counts the runs of the client by its sub-command: `status`, `log`.
///
/// Threads: any.
class ClientRuns {
public:
    void count(const std::string& word) {
        const std::lock_guard lock(mutex_);
        ++counts_[word];
    }
    std::map<std::string, std::size_t> counts() const {
        const std::lock_guard lock(mutex_);
        return counts_;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::string, std::size_t> counts_;
};

} // namespace quen::tools::server
