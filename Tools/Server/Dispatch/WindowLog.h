#pragma once

#include "Tools/Server/Wire/Outbox.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace quen::tools::server {

/// What is told to a person's log window: `window/logMessage`. Messages that nobody reads in time
/// are left out.
///
/// Threads: any.
class WindowLog {
public:
    enum Type : std::uint32_t { error = 1, warning = 2, info = 3, log = 4 };

    explicit WindowLog(MessageSink& sink) : sink_(sink) {}

    /// Messages up to this level are sent; 0 is none.
    void setLevel(std::uint32_t level) noexcept { level_ = level; }
    std::uint32_t level() const noexcept { return level_; }
    bool wants(std::uint32_t level) const noexcept { return level <= level_; }

    void say(std::uint32_t level, const std::string& text);

private:
    MessageSink& sink_;
    std::atomic<std::uint32_t> level_ = 0;
};

} // namespace quen::tools::server
