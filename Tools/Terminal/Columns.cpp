#include "Tools/Terminal/Columns.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quen::tools {

namespace {

constexpr std::size_t usualColumns = 80;

std::size_t columnsSaid() noexcept {
    const char* const variable = std::getenv("COLUMNS"); // NOLINT(concurrency-mt-unsafe)
    const std::string_view text = variable == nullptr ? "" : variable;
    std::size_t columns = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), columns);
    return read.ec == std::errc() && columns > 0 ? columns : usualColumns;
}

} // namespace

std::size_t outputColumns() noexcept {
    winsize size{};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : columnsSaid();
}

} // namespace quen::tools
