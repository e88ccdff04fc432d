#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quen {

/// Holds the first pieces of a run's output back from its watcher: a run that was not let in has
/// written no more than a report's first words, and what is made again should not begin twice.
class HeldOutput {
public:
    using Watcher = std::function<void(std::string_view)>;

    explicit HeldOutput(Watcher watcher) : watcher_(std::move(watcher)) {}

    /// What takes the pieces; empty where nobody watches.
    Watcher watcher();
    /// Hands over what is held back.
    void release();
    /// Drops what is held back, before the run is made again.
    void drop();

private:
    void take(std::string_view piece);

    Watcher watcher_;
    std::string held_;
    bool isReleased_ = false;
};

} // namespace quen
