#include "Classes/SVNOperations/SVNCommitOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNCharacters.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

#include <charconv>
#include <limits>
#include <optional>
#include <utility>

namespace quen {

namespace {

/// The whole number that `text` begins with, after white space; the nearest limit for one that is
/// too large, 0 where there is none.
std::int64_t leadingInteger(std::string_view text) {
    text = withoutLeadingWhiteSpace(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int64_t number = 0;
    const auto scanned = std::from_chars(text.data(), text.data() + text.size(), number);
    if (scanned.ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<std::int64_t>;
        return text.starts_with('-') ? Limits::min() : Limits::max();
    }
    return number;
}

/// The number behind the first announcement of a new revision; nullopt where there is none, as
/// after a commit that had nothing to send.
std::optional<std::int64_t> committedRevision(std::string_view output) {
    constexpr std::string_view announcement = "Committed revision";
    const std::size_t position = output.find(announcement);
    if (position == std::string_view::npos) {
        return std::nullopt;
    }
    return leadingInteger(output.substr(position + announcement.size()));
}

} // namespace

SVNOperation::Command SVNCommitOperation::makeCommand(const QuenSourceControlRequest& request) {
    SVNAssertions(this, "-[SVNCommitOperation initWithRequest:]", SVNAssertions::operationsFile)
        .check(!hasOption(request, QuenSourceControlRequestOptionAllowEmptyCommit),
               "((void*)0) == [request.options "
               "objectForKey:QuenSourceControlRequestOptionAllowEmptyCommit]",
               328);
    StringArray command{"commit"};
    appendMessageIfGiven(command, request);
    appendFiles(command, request);
    return command;
}

void SVNCommitOperation::parseOutput(const QuenSourceControlRequest& /*request*/) {
    if (data() == nullptr || data()->isEmpty()) {
        return;
    }
    const String output = quensc_stringFromData(data());
    const auto revision = committedRevision(output.view());
    if (!revision) {
        setResult({});
        return;
    }
    setResult(
        Array{Dictionary{{QuenSourceControlOperationRevisionKey, formatText("%ld", {*revision})}}});
}

} // namespace quen
