#include "Tools/Commands/Changes/LogMessage.h"

#include "Foundation/Lines.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/RunContext.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/Editor.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>
#include <unistd.h>

namespace quen::tools {

namespace {

constexpr std::string_view separator = "--This line and everything below is not sent--";
constexpr std::string_view blanks = " \t\r\n";

const FileWriter::Options replacing{.existing = FileWriter::Existing::replaced, .mode = {}};

std::optional<std::string> contentOf(std::istream& stream) {
    std::string content;
    std::array<char, 4096> piece{};
    do {
        stream.read(piece.data(), piece.size());
        content.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    } while (stream);
    return stream.bad() ? std::nullopt : std::optional(std::move(content));
}

std::optional<std::string> contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return file ? contentOf(file) : std::nullopt;
}

bool writeWhole(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    return static_cast<bool>(file.flush());
}

/// A new, empty file that only this user can read; empty, with errno, where none can be made.
std::string freshFile() {
    constexpr std::string_view ending = ".txt";
    std::string path = RunContext::current().temporaryDirectory().str() + "/quen-message-XXXXXX" +
                       std::string(ending);
    const int descriptor = mkstemps(path.data(), static_cast<int>(ending.size()));
    if (descriptor < 0) {
        return {};
    }
    close(descriptor);
    return path;
}

} // namespace

std::string editorTextFor(const std::vector<std::string>& about) {
    std::string text = "\n" + std::string(separator) + "\n\n";
    for (const std::string& line : about) {
        text += line + '\n';
    }
    return text;
}

std::string messageInEditorText(std::string_view text) {
    std::string message;
    for (std::string_view line : linesOf(text)) {
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (line == separator) {
            break;
        }
        message.append(line) += '\n';
    }
    const std::size_t start = message.find_first_not_of(blanks);
    if (start == std::string::npos) {
        return {};
    }
    message.erase(message.find_last_not_of(blanks) + 1);
    // A first line that is indented stays so.
    const std::size_t lineFeed = message.rfind('\n', start);
    return message.substr(lineFeed == std::string::npos ? 0 : lineFeed + 1);
}

void MessageOptions::addTo(Subcommand& command) {
    const Parameter message =
        command.option("-m,--message", text, "Log message (default: open the editor)");
    command.option("-F,--file", file, "Read the log message from FILE; - is standard input")
        .excludes(message);
}

LogMessage::~LogMessage() {
    if (!keptIn_.empty()) {
        unlink(keptIn_.c_str());
    }
}

bool LogMessage::obtain(const MessageOptions& options, const std::vector<std::string>& about) {
    if (options.needsEditor() && session_.options().dryRun) {
        text_ = "MESSAGE"; // to be written when it is done
        return true;
    }
    if (options.needsEditor()) {
        return edit(about);
    }
    if (options.text) {
        text_ = *options.text;
    } else if (!readFrom(*options.file)) {
        return false;
    }
    if (text_.find_first_not_of(blanks) == std::string::npos) {
        session_.tell("The message is empty, so nothing was done.");
        return false;
    }
    sayThatItIsText();
    return true;
}

void LogMessage::sayThatItIsText() {
    std::error_code ignored;
    if (std::filesystem::exists(text_, ignored)) {
        text_ += '\n';
    }
}

int LogMessage::conclude(int status) {
    if (status != ExitSuccess) {
        keepUnlessEmpty();
    }
    return status;
}

void LogMessage::keepUnlessEmpty() {
    if (text_.empty()) {
        return;
    }
    if (keptIn_.empty() && cannotBeReadAgain_) {
        saveText();
    }
    if (!keptIn_.empty()) {
        session_.tell("Your message was saved in " + keptIn_);
        keptIn_.clear();
        lastWords_.reset();
    }
}

void LogMessage::saveText() {
    std::string file = freshFile();
    if (!file.empty() && !writeFile(file, text_ + '\n', replacing)) {
        keptIn_ = std::move(file);
    } else if (!file.empty()) {
        unlink(file.c_str());
    }
}

bool LogMessage::readFrom(const std::string& file) {
    errno = 0;
    auto content = file == "-" ? contentOf(std::cin) : contentOf(file);
    if (!content) {
        session_.tell("The message cannot be read from \"" + printable(file) +
                      "\": " + std::generic_category().message(errno == 0 ? EIO : errno) + ".");
        return false;
    }
    cannotBeReadAgain_ = file == "-";
    // The end of the last line is a file's, not a message's.
    text_ = content->substr(0, content->find_last_not_of(blanks) + 1);
    return true;
}

bool LogMessage::edit(const std::vector<std::string>& about) {
    const std::string editor = editorCommand();
    if (editor.empty()) {
        session_.tell("There is no message. Give one with -m or -F, or name your editor in "
                      "SVN_EDITOR, VISUAL or EDITOR.");
        return false;
    }
    keptIn_ = freshFile();
    if (keptIn_.empty() || !writeWhole(keptIn_, editorTextFor(about))) {
        session_.tell(
            "No file can be made for the message: " + std::generic_category().message(errno) + ".");
        return false;
    }
    lastWords_.emplace("quen: Your message was saved in " + keptIn_ + "\n");
    std::string problem;
    const bool wasEdited = editFile(editor, keptIn_, problem);
    const auto content = contentOf(keptIn_);
    text_ = messageInEditorText(content.value_or(""));
    if (!wasEdited || !content) {
        session_.tell(wasEdited ? "The message cannot be read from " + keptIn_ : problem);
        keepUnlessEmpty();
        return false;
    }
    if (text_.empty()) {
        session_.tell("The message is empty, so nothing was done.");
        return false;
    }
    // What would be kept is the message alone, fit for -F; as it was edited where there is no room.
    if (const Error error = writeFile(keptIn_, text_ + '\n', replacing)) {
        session_.tell(error);
    }
    sayThatItIsText();
    return true;
}

} // namespace quen::tools
