#include "Tools/Server/Dispatch/WindowLog.h"

#include "Tools/Server/Wire/Message.h"

#include <algorithm>

namespace quen::tools::server {

void WindowLog::say(std::uint32_t level, const std::string& text) {
    if (wants(level)) {
        const std::uint32_t type = std::clamp<std::uint32_t>(level, error, log);
        sink_.offer(notificationText("window/logMessage", {{"type", type}, {"message", text}}));
    }
}

} // namespace quen::tools::server
