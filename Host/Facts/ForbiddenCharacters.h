#pragma once

#include <string>
#include <string_view>

namespace quen {

/// Makes a report well-formed that the client wrote with control characters in it, and gives them
/// back afterwards.
///
/// The client writes the names of unversioned items, and the authors in a list, a status, an info
/// and a blame, as they are; XML has no way to hold most control characters, so one such name makes
/// the whole report unreadable. `replaceIn` puts characters in their place that XML allows and that
/// no text uses (the noncharacters U+FDD0 to U+FDEF), and `restored` brings them back. Texts that
/// hold noncharacters themselves come back as they were.
///
/// Threads: one thread at a time.
class ForbiddenCharacters {
public:
    /// The next piece of the report, cut anywhere, with every forbidden character replaced. The
    /// view is good until the next call. Up to two bytes may be held back until the next piece;
    /// `rest` answers them at the end.
    std::string_view replaceIn(std::string_view piece);
    std::string_view rest();

    /// Whether a text that was read from the report holds a replaced character.
    static bool areReplacedIn(std::string_view text) noexcept;
    /// The text as the client wrote it.
    static std::string restored(std::string_view text);

private:
    void replaceByte(char byte);

    std::string replaced_;
    /// The beginning of what may become a noncharacter.
    std::string held_;
};

} // namespace quen
