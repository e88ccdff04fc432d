#include "Host/Credentials/HeldOutput.h"

namespace quen {

namespace {

/// More than the words that a report begins with.
constexpr std::size_t mostHeld = 512;

} // namespace

HeldOutput::Watcher HeldOutput::watcher() {
    return watcher_ ? [this](std::string_view piece) { take(piece); } : Watcher();
}

void HeldOutput::take(std::string_view piece) {
    if (isReleased_) {
        watcher_(piece);
    } else {
        held_ += piece;
        if (held_.size() > mostHeld) {
            release();
        }
    }
}

void HeldOutput::release() {
    isReleased_ = true;
    if (watcher_ && !held_.empty()) {
        watcher_(held_);
    }
    held_.clear();
}

void HeldOutput::drop() {
    isReleased_ = false;
    held_.clear();
}

} // namespace quen
