#pragma once

#include "Host/Credentials/Secret.h"
#include "Host/Process/FileDescriptor.h"

#include <optional>
#include <stop_token>
#include <string>

namespace quen::tools {

/// The person in front of the terminal that the program runs on, wherever its standard streams go.
class PersonAtTerminal {
public:
    /// Nobody where the program has no terminal.
    PersonAtTerminal();

    bool isThere() const noexcept { return terminal_.isOpen(); }

    void show(const std::string& text) const;
    /// Shows a question and reads a line. Nothing at the end of the input, and when `stop` is
    /// requested.
    std::optional<std::string> askLine(const std::string& question, std::stop_token stop) const;
    /// Likewise, and what is typed is not shown.
    std::optional<Secret> askSecret(const std::string& question, std::stop_token stop) const;

private:
    std::optional<Secret> readLine(const std::stop_token& stop) const;

    FileDescriptor terminal_;
};

} // namespace quen::tools
