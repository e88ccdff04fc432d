#include "Tools/Server/WorkingCopies/ChangeWatch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quen::tools::server {

namespace {

constexpr std::uint32_t databaseEvents =
    IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

ChangeWatch::ChangeWatch(std::function<void(const Due&)> tell)
    : tell_(std::move(tell)), events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)), thread_([this] { work(); }) {}

ChangeWatch::~ChangeWatch() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    wake();
    thread_.join();
}

void ChangeWatch::wake() const {
    const std::uint64_t one = 1;
    static_cast<void>(!::write(wake_.number(), &one, sizeof one));
}

bool ChangeWatch::add(const std::string& root) {
    const std::lock_guard lock(mutex_);
    const int watch =
        ::inotify_add_watch(events_.number(), (root + "/.svn/wc.db").c_str(), databaseEvents);
    if (watch >= 0) {
        roots_[watch] = root;
    }
    return watch >= 0;
}

void ChangeWatch::remove(const std::string& root) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(roots_.begin(), roots_.end(),
                                    [&](const auto& each) { return each.second == root; });
    if (found != roots_.end()) {
        ::inotify_rm_watch(events_.number(), found->first);
        roots_.erase(found);
    }
    gathered_.erase(root);
}

std::size_t ChangeWatch::watches() const {
    const std::lock_guard lock(mutex_);
    return roots_.size();
}

bool ChangeWatch::watches(const std::string& root) const {
    const std::lock_guard lock(mutex_);
    return std::any_of(roots_.begin(), roots_.end(),
                       [&](const auto& each) { return each.second == root; });
}

/// The first notice sets the time; the others join it.
ChangeWatch::Gathered& ChangeWatch::gather(const std::string& root) {
    const auto [found, isNew] = gathered_.try_emplace(root);
    if (isNew) {
        found->second.due.root = root;
        found->second.time = Clock::now() + gathering;
    }
    return found->second;
}

void ChangeWatch::noteTouched(const std::string& root, const std::string& path) {
    {
        const std::lock_guard lock(mutex_);
        gather(root).due.touched.insert(path);
    }
    wake();
}

void ChangeWatch::work() {
    while (true) {
        std::array<pollfd, 2> ready{{{wake_.number(), POLLIN, 0}, {events_.number(), POLLIN, 0}}};
        ::poll(ready.data(), ready.size(), timeout());
        std::uint64_t count = 0;
        static_cast<void>(!::read(wake_.number(), &count, sizeof count));
        {
            const std::lock_guard lock(mutex_);
            if (isEnding_) {
                return;
            }
        }
        readEvents();
        tellDue();
    }
}

/// Until the next is due, in milliseconds; -1 while nothing is.
int ChangeWatch::timeout() const {
    const std::lock_guard lock(mutex_);
    auto next = Clock::time_point::max();
    for (const auto& [root, gathered] : gathered_) {
        next = std::min(next, gathered.time);
    }
    if (next == Clock::time_point::max()) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

void ChangeWatch::readEvents() {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (ssize_t size = ::read(events_.number(), buffer.data(), buffer.size()); size > 0;
         size = ::read(events_.number(), buffer.data(), buffer.size())) {
        const std::lock_guard lock(mutex_);
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            at += sizeof event + event.len;
            takeEvent(event.wd, event.mask);
        }
    }
}

void ChangeWatch::takeEvent(int watch, std::uint32_t mask) {
    if ((mask & IN_Q_OVERFLOW) != 0) {
        // Events were lost: any of them may have changed.
        for (const auto& [each, root] : roots_) {
            gather(root).due.isDatabase = true;
        }
        return;
    }
    const auto found = roots_.find(watch);
    if (found == roots_.end()) {
        return;
    }
    Due& due = gather(found->second).due;
    due.isDatabase = true;
    if ((mask & IN_IGNORED) != 0) {
        due.isWatchLost = true;
        roots_.erase(found);
    }
}

void ChangeWatch::tellDue() {
    std::vector<Due> due;
    {
        const std::lock_guard lock(mutex_);
        const auto now = Clock::now();
        for (auto at = gathered_.begin(); at != gathered_.end();) {
            if (at->second.time <= now) {
                due.push_back(std::move(at->second.due));
                at = gathered_.erase(at);
            } else {
                ++at;
            }
        }
    }
    for (const Due& each : due) {
        tell_(each);
    }
}

} // namespace quen::tools::server
