#include "Tools/Server/Methods/HistoryRecords.h"

#include "Tools/Console/JsonOutput.h"

#include <charconv>

namespace quen::tools::server {

namespace {

std::optional<std::int64_t> numberIn(std::optional<std::string_view> text) {
    std::int64_t number = 0;
    if (!text ||
        std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc()) {
        return std::nullopt;
    }
    return number;
}

/// nil where there is no such child.
String childText(const XMLElement& element, std::string_view name) {
    const auto child = element.onlyChild(name);
    return child ? String(child->text()) : String();
}

const char* actionOf(std::string_view letter) {
    if (letter == "A") {
        return "added";
    }
    if (letter == "D") {
        return "deleted";
    }
    return letter == "R" ? "replaced" : "modified";
}

LogEntry readEntry(const XMLElement& element) {
    LogEntry entry{numberIn(element.attribute("revision")).value_or(0),
                   childText(element, "author"),
                   childText(element, "date"),
                   childText(element, "msg"),
                   {}};
    if (const auto paths = element.onlyChild("paths")) {
        for (const XMLElement path : paths->children("path")) {
            entry.files.push_back(
                {std::string(path.text()), actionOf(path.attribute("action").value_or("M"))});
        }
    }
    return entry;
}

BlameLine readLine(const XMLElement& element) {
    const auto commit = element.onlyChild("commit");
    return commit ? BlameLine{numberIn(commit->attribute("revision")), childText(*commit, "author"),
                              childText(*commit, "date")}
                  : BlameLine();
}

} // namespace

const char* actionWord(std::string_view word) {
    for (const char* letter : {"A", "D", "R"}) {
        if (word == actionOf(letter)) {
            return actionOf(letter);
        }
    }
    return actionOf("M");
}

OrderedJson logEntryJson(const LogEntry& entry) {
    OrderedJson files = OrderedJson::array();
    for (const LogEntry::File& file : entry.files) {
        files.push_back({{"path", toJson(String(file.path))}, {"action", file.action}});
    }
    return {{"revision", entry.revision},
            {"author", toJson(entry.author)},
            {"date", toJson(entry.date)},
            {"message", toJson(entry.message)},
            {"files", std::move(files)}};
}

LogReader::LogReader()
    : reader_({"logentry"}, [this](const XMLElement& element, std::size_t) {
          entries_.push_back(readEntry(element));
      }) {}

BlameReader::BlameReader()
    : reader_({"target", "entry"}, [this](const XMLElement& element, std::size_t) {
          lines_.push_back(readLine(element));
      }) {}

} // namespace quen::tools::server
