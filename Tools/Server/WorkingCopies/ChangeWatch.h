#pragma once

#include "Host/Process/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>

namespace quen::tools::server {

/// Gathers what happens to working copies, from notices and from a watch on each one's database,
/// and tells of it a moment later, all at once. One watch and one timer a working copy, one thread
/// in all; it sleeps while nothing happens.
///
/// Threads: any.
class ChangeWatch {
public:
    /// From the first notice to the telling.
    static constexpr std::chrono::milliseconds gathering{100};

    struct Due {
        std::string root;
        std::set<std::string> touched;
        /// The database has changed, or is gone.
        bool isDatabase = false;
        /// What was watched is gone: whatever is in its place needs a watch of its own.
        bool isWatchLost = false;
    };

    /// `tell` is called on the watching thread.
    explicit ChangeWatch(std::function<void(const Due&)> tell);
    ChangeWatch(const ChangeWatch&) = delete;
    ChangeWatch& operator=(const ChangeWatch&) = delete;
    ~ChangeWatch();

    /// Watches the database of a working copy. False where the system gives no watch; notices are
    /// served all the same.
    bool add(const std::string& root);
    void remove(const std::string& root);
    void noteTouched(const std::string& root, const std::string& path);
    std::size_t watches() const;
    bool watches(const std::string& root) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Gathered {
        Due due;
        Clock::time_point time;
    };

    void work();
    void readEvents();
    void takeEvent(int watch, std::uint32_t mask);
    Gathered& gather(const std::string& root);
    void wake() const;
    int timeout() const;
    void tellDue();

    std::function<void(const Due&)> tell_;
    FileDescriptor events_;
    FileDescriptor wake_;
    mutable std::mutex mutex_;
    std::map<int, std::string> roots_;
    std::map<std::string, Gathered> gathered_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace quen::tools::server
