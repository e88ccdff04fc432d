#pragma once

#include "Foundation/String.h"
#include "Tools/Commands/Session/Session.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// What an editor is given: room for the message, a separator, and below it what the message is
/// about.
std::string editorTextFor(const std::vector<std::string>& about);

/// The message in what the editor gives back: what stands before the separator, without blank lines
/// around it. Empty where nothing was written.
std::string messageInEditorText(std::string_view text);

/// The options of sub-commands that write a log message.
struct MessageOptions {
    std::optional<std::string> text;
    std::optional<std::string> file;

    void addTo(Subcommand& command);
    /// Neither was given, so that the person is to write the message in an editor.
    bool needsEditor() const { return !text && !file; }
};

/// The log message of one change. One that was written in an editor lies in a file until the change
/// is made, so that it is not lost with a change that fails; one that was read from standard input
/// is saved where the change fails.
class LogMessage {
public:
    explicit LogMessage(const Session& session) : session_(session) {}
    LogMessage(const LogMessage&) = delete;
    LogMessage& operator=(const LogMessage&) = delete;
    ~LogMessage();

    /// From the options, or else from the person's editor, where it stands above `about`. False
    /// where there is none; why has then been told.
    bool obtain(const MessageOptions& options, const std::vector<std::string>& about);

    String text() const { return text_; }

    /// To be called with the exit status of the change. Where that failed the file stays, and the
    /// person is told where. Answers the status.
    int conclude(int status);

private:
    bool readFrom(const std::string& file);
    bool edit(const std::vector<std::string>& about);
    /// The client refuses a message that is the name of a file, unless a line feed ends it.
    void sayThatItIsText();
    void keepUnlessEmpty();
    void saveText();

    const Session& session_;
    std::string text_;
    std::string keptIn_;
    /// It came from standard input.
    bool cannotBeReadAgain_ = false;
    /// Where the program is killed meanwhile.
    std::optional<InterruptWatch::LastWords> lastWords_;
};

} // namespace quen::tools
