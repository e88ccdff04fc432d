#include "Tools/Server/Dispatch/WorkLanes.h"

#include <exception>
#include <memory>
#include <utility>

namespace quen::tools::server {

namespace {

class WorkOperation : public Operation {
public:
    explicit WorkOperation(std::function<void()> work) : work_(std::move(work)) {}
    void main() override {
        work_();
        work_ = nullptr;
    }

private:
    std::function<void()> work_;
};

} // namespace

void WorkLanes::start(const std::string& lane, Work work) {
    if (lane.empty()) {
        submit(std::move(work));
        return;
    }
    bool isFree = false;
    {
        const std::lock_guard lock(mutex_);
        isFree = lanes_.try_emplace(lane).second;
        lanes_.at(lane).push_back(std::move(work));
    }
    if (isFree) {
        submit([this, lane] { runFirstOf(lane); });
    }
}

void WorkLanes::submit(Work work) {
    {
        const std::lock_guard lock(mutex_);
        ++working_;
    }
    try {
        workers_->addOperation(std::make_shared<WorkOperation>([this, done = std::move(work)] {
            done();
            countDone();
        }));
    } catch (const std::exception&) {
        countDone();
        throw;
    }
}

/// Does the first of a lane, then has the next done in its turn among all work.
void WorkLanes::runFirstOf(const std::string& lane) {
    Work work;
    {
        const std::lock_guard lock(mutex_);
        work = std::move(lanes_.at(lane).front());
    }
    work();
    work = nullptr;
    {
        const std::lock_guard lock(mutex_);
        const auto found = lanes_.find(lane);
        found->second.pop_front();
        if (found->second.empty()) {
            lanes_.erase(found);
            return;
        }
    }
    submit([this, lane] { runFirstOf(lane); });
}

void WorkLanes::countDone() {
    const std::lock_guard lock(mutex_);
    --working_;
    idle_.notify_all();
}

bool WorkLanes::waitUntilIdle(std::chrono::steady_clock::time_point bound) {
    std::unique_lock lock(mutex_);
    return idle_.wait_until(lock, bound, [this] { return working_ == 0; });
}

} // namespace quen::tools::server
