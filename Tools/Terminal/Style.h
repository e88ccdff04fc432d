#pragma once

#include "Tools/Terminal/SafeText.h"

#include <string>
#include <string_view>

namespace quen::tools {

/// Colours and weights by what they mean, not by what they look like.
enum class Style { plain, heading, faint, good, changed, warning, bad };

/// Whether and how text is coloured.
class Palette {
public:
    enum class Use { automatic, always, never };

    /// Automatic colours only when standard output is a terminal that can show them: not when
    /// NO_COLOR is set to anything, nor when TERM is `dumb`.
    explicit Palette(Use use = Use::automatic);
    /// By the word of an option: `always`, `never`, anything else is automatic.
    static Palette named(std::string_view use);

    bool isColoured() const noexcept { return isColoured_; }
    std::string paint(Style style, std::string_view text) const;
    /// Likewise, in bold.
    std::string paintBold(Style style, std::string_view text) const;

private:
    bool isColoured_;
};

/// Whether standard output is a terminal.
bool outputIsTerminal() noexcept;

} // namespace quen::tools
