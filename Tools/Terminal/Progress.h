#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace quen::tools {

/// What is to be known of a long work while it goes on.
struct ProgressFacts {
    /// What is being done now; empty while nothing is known.
    std::string doing;
    std::size_t items = 0;
    std::chrono::seconds elapsed{0};
};

/// `12 items  0:07  A    src/main.c`, in at most `width` cells.
std::string progressLine(const ProgressFacts& facts, std::size_t width);

/// Whether a line that changes can be shown on standard error: a terminal that moves its cursor.
bool canShowProgress() noexcept;

/// One line at the foot of a terminal that follows a long work. It goes to standard error, appears
/// when the work takes longer than a moment, is redrawn at most ten times a second, and is gone
/// when this is.
///
/// Threads: `show` may be called from any thread; drawing is done on one of its own.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void show(std::string doing, std::size_t items);

    /// Takes the line away, and draws none until `resume`: somebody is being asked something.
    void pause();
    void resume();

private:
    using Clock = std::chrono::steady_clock;

    void drawUntilOver();
    void draw(const ProgressFacts& facts);

    const Clock::time_point start_ = Clock::now();
    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    bool isPaused_ = false;
    ProgressFacts facts_;
    std::string drawn_;
    std::thread thread_;
};

} // namespace quen::tools
