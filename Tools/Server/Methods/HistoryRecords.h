#pragma once

#include "Foundation/XMLReport.h"
#include "Tools/Server/Wire/Message.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools::server {

/// One revision of a history.
struct LogEntry {
    std::int64_t revision = 0;
    String author;
    String date;
    String message;
    struct File {
        std::string path;
        const char* action = "";
    };
    std::vector<File> files;
};

/// The constant text of an action's word.
const char* actionWord(std::string_view word);

/// `{revision, author, date, message, files: [{path, action}]}`.
OrderedJson logEntryJson(const LogEntry& entry);

/// Reads the bytes of `svn log --xml` while the client writes them.
class LogReader {
public:
    LogReader();

    void take(std::string_view piece) { reader_.read(piece); }
    /// What has come since the last call.
    std::vector<LogEntry> takeNew() { return std::exchange(entries_, {}); }

private:
    std::vector<LogEntry> entries_;
    XMLReportReader reader_;
};

/// One line of a blame: what it was changed in; without a revision it is not committed.
struct BlameLine {
    std::optional<std::int64_t> revision;
    String author;
    String date;
};

/// Reads the bytes of `svn blame --xml` while the client writes them.
class BlameReader {
public:
    BlameReader();

    void take(std::string_view piece) { reader_.read(piece); }
    std::vector<BlameLine> takeNew() { return std::exchange(lines_, {}); }

private:
    std::vector<BlameLine> lines_;
    XMLReportReader reader_;
};

} // namespace quen::tools::server
