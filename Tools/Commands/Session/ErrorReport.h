#pragma once

#include "Foundation/Value.h"

#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace quen::tools {

/// The domain of what goes wrong in the command line itself; its codes are the exit statuses.
extern const char* const commandLineErrorDomain;

/// Whether the words ask for JSON, so that what goes wrong is to be told as JSON too. `request` and
/// `serve` have formats of their own.
bool asksForJson(const std::vector<std::string>& words);

/// What goes wrong, for a script. While it is active, what is said on standard error is gathered,
/// and nobody is asked anything; at the end a failure becomes one line of JSON there (its schema is
/// `error.schema.json`). What was said beside a success is passed on as it is.
///
/// One at a time, on the program's main thread.
class ErrorReport {
public:
    explicit ErrorReport(bool isActive);
    ErrorReport(const ErrorReport&) = delete;
    ErrorReport& operator=(const ErrorReport&) = delete;
    ~ErrorReport();

    /// The program ends with `status`: says it. `hasReader` says whether somebody read the output
    /// to its end.
    void finish(int status, bool hasReader = true);

    /// The error that is told, with the one thing to do about it, which may be empty. The first one
    /// counts. Nothing where no report is active.
    static void note(const Error& error, const std::string& suggestion);

private:
    std::string textFor(int status) const;

    std::streambuf* former_ = nullptr;
    std::ostringstream said_;
    Error error_;
    std::string suggestion_;
};

} // namespace quen::tools
