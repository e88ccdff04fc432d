#include "Tools/Terminal/Progress.h"

#include "Host/Text.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/Style.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

constexpr std::chrono::milliseconds redrawInterval{100};
/// With less room than this there is no point in saying what is being done.
constexpr std::size_t leastDoingWidth = 8;
constexpr std::string_view clearRestOfLine = "\x1b[K";

std::string clockText(std::chrono::seconds elapsed) {
    const auto seconds = elapsed.count() % 60;
    return std::to_string(elapsed.count() / 60) + (seconds < 10 ? ":0" : ":") +
           std::to_string(seconds);
}

std::size_t terminalColumns() noexcept {
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : 80;
}

/// Past the stream's buffer, so that a line is there as a whole or not at all. What the terminal
/// does not take is not worth an error.
void writeToTerminal(const std::string& text) noexcept {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
}

} // namespace

std::string progressLine(const ProgressFacts& facts, std::size_t width) {
    const std::string head = std::to_string(facts.items) + (facts.items == 1 ? " item" : " items") +
                             "  " + clockText(facts.elapsed);
    const std::size_t used = terminalWidth(head) + 2;
    if (facts.doing.empty() || width < used + leastDoingWidth) {
        return fittingText(head, width);
    }
    return head + "  " + fittingText(facts.doing, width - used);
}

bool canShowProgress() noexcept {
    const char* const kind = std::getenv("TERM"); // NOLINT(concurrency-mt-unsafe)
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

Progress::Progress() : thread_([this] { drawUntilOver(); }) {}

Progress::~Progress() {
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    over_.notify_one();
    thread_.join();
    if (!drawn_.empty()) {
        writeToTerminal("\r" + std::string(clearRestOfLine));
    }
}

void Progress::show(std::string doing, std::size_t items) {
    const std::lock_guard lock(mutex_);
    facts_.doing = std::move(doing);
    facts_.items = items;
}

void Progress::pause() {
    const std::lock_guard lock(mutex_);
    isPaused_ = true;
    if (!drawn_.empty()) {
        drawn_.clear();
        writeToTerminal("\r" + std::string(clearRestOfLine));
    }
}

void Progress::resume() {
    const std::lock_guard lock(mutex_);
    isPaused_ = false;
}

void Progress::drawUntilOver() {
    std::unique_lock lock(mutex_);
    while (!over_.wait_for(lock, redrawInterval, [this] { return isOver_; })) {
        ProgressFacts facts{printable(facts_.doing), facts_.items};
        facts.elapsed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start_);
        if (!isPaused_) {
            draw(facts);
        }
    }
}

void Progress::draw(const ProgressFacts& facts) {
    // The last column stays free: a terminal wraps when it is written to.
    const std::string line = progressLine(facts, terminalColumns() - 1);
    if (line != drawn_) {
        drawn_ = line;
        writeToTerminal("\r" + line + std::string(clearRestOfLine));
    }
}

} // namespace quen::tools
