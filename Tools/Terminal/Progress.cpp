#include "Tools/Terminal/Progress.h"

#include "Host/Text.h"
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
constexpr std::string_view ellipsis = "\xE2\x80\xA6"; // one cell wide

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The longest beginning of the text that takes no more than `width` cells.
std::string_view beginning(std::string_view text, std::size_t width) {
    std::size_t end = 0;
    for (std::size_t next = 1; next <= text.size(); ++next) {
        if (next < text.size() && isContinuation(text[next])) {
            continue;
        }
        if (terminalWidth(text.substr(0, next)) > width) {
            break;
        }
        end = next;
    }
    return text.substr(0, end);
}

/// The longest end of the text that takes no more than `width` cells.
std::string_view ending(std::string_view text, std::size_t width) {
    std::size_t start = text.size();
    for (std::size_t next = text.size(); next > 0; --next) {
        if (isContinuation(text[next - 1])) {
            continue;
        }
        if (terminalWidth(text.substr(next - 1)) > width) {
            break;
        }
        start = next - 1;
    }
    return text.substr(start);
}

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

std::string fittingText(std::string_view text, std::size_t width) {
    if (terminalWidth(text) <= width) {
        return std::string(text);
    }
    if (width == 0) {
        return {};
    }
    const std::size_t front = (width - 1) / 3;
    std::string shown(beginning(text, front));
    shown += ellipsis;
    return shown.append(ending(text, width - 1 - front));
}

std::string startingText(std::string_view text, std::size_t width) {
    if (terminalWidth(text) <= width) {
        return std::string(text);
    }
    return width == 0 ? std::string() : std::string(beginning(text, width - 1)).append(ellipsis);
}

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
