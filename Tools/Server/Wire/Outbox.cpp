#include "Tools/Server/Wire/Outbox.h"

#include "Tools/Server/Wire/Message.h"

#include <chrono>
#include <utility>

namespace quen::tools::server {

Outbox::Outbox(Write write, std::size_t highWater)
    : write_(std::move(write)), highWater_(highWater), writer_([this] { work(); }) {}

Outbox::~Outbox() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    writer_.join();
}

bool Outbox::send(std::string body, const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    // A message larger than the mark goes when it is alone.
    const bool hasRoom = changed_.wait(lock, stop, [&] {
        return isBroken_ || isEnding_ || bytes_ == 0 || bytes_ + body.size() <= highWater_;
    });
    if (!hasRoom || isBroken_ || isEnding_) {
        return false;
    }
    bytes_ += body.size();
    waiting_.push_back(std::move(body));
    changed_.notify_all();
    return true;
}

bool Outbox::offer(std::string body) {
    const std::lock_guard lock(mutex_);
    // Half is left to what must arrive.
    if (isBroken_ || isEnding_ || bytes_ + body.size() > highWater_ / 2) {
        return false;
    }
    bytes_ += body.size();
    waiting_.push_back(std::move(body));
    changed_.notify_all();
    return true;
}

bool Outbox::flush(std::chrono::milliseconds bound) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, bound, [this] { return isBroken_ || bytes_ == 0; }) &&
           !isBroken_;
}

void Outbox::breakOff() {
    const std::lock_guard lock(mutex_);
    isBroken_ = true;
    changed_.notify_all();
}

std::size_t Outbox::bytesWaiting() const {
    const std::lock_guard lock(mutex_);
    return bytes_;
}

void Outbox::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        if (isEnding_) {
            return;
        }
        std::string body = std::move(waiting_.front());
        waiting_.pop_front();
        const bool isLost = isBroken_;
        lock.unlock();
        const bool hasLeft = !isLost && write_(framed(body));
        lock.lock();
        bytes_ -= body.size();
        isBroken_ = isBroken_ || !hasLeft;
        changed_.notify_all();
    }
}

} // namespace quen::tools::server
