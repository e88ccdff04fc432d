#include "Tests/Faults/ExpectedErrors.h"

#include "Foundation/XMLReport.h"
#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/Running.h"

#include <regex>

namespace quen::test {

namespace {

Error parserError(std::int64_t code) {
    return {XMLParserErrorDomain, code, {{NSLocalizedDescriptionKey, "?"}}};
}

Error missingFile() {
    return {QuenSourceControlErrorDomain,
            -1,
            {{NSLocalizedDescriptionKey, "The revision (null) was not found for the file "
                                         "\"http://host/repository/a.c\"."}}};
}

Error withSuggestion(const Error& error, const String& suggestion) {
    Dictionary info = error.userInfo();
    info.set(NSLocalizedRecoverySuggestionErrorKey, suggestion);
    return {error.domain(), error.code(), info};
}

/// As the chain tells of the error of its one query.
Error wrapped(const Error& error) {
    if (!error) {
        return {};
    }
    const Error ofFile(QuenSourceControlErrorDomain, -11,
                       {{NSLocalizedDescriptionKey, "An error occurred trying to unignore the file "
                                                    "\"http://host/repository/a.c\"."},
                        {NSLocalizedRecoverySuggestionErrorKey,
                         "Check the file's ignore properties and try again."},
                        {QuenSourceControlUnderlyingErrorsKey, error}});
    return {
        QuenSourceControlErrorDomain, -1, {{QuenSourceControlUnderlyingErrorsKey, Array{ofFile}}}};
}

Error parsed(const OperationKind& kind, const Verdict& verdict) {
    switch (kind.reading) {
    case OutputUse::report:
    case OutputUse::chain:
        return verdict.parserCode == 0 ? Error() : parserError(verdict.parserCode);
    case OutputUse::file: return kind.fileIsThere ? Error() : missingFile();
    case OutputUse::text:
        return verdict.leftOutputOpen && !verdict.complaint && kind.request.type == RequestTypeDiff
                   ? hostError(TaskErrorOutputCut,
                               "The client has ended, but a program that it started still held its "
                               "output open: the result may lack its rest.")
                   : Error();
    default: return {};
    }
}

Error expectedError(const OperationKind& kind, const Verdict& verdict) {
    if (verdict.interruption) {
        return verdict.wasEnded && writesWorkingCopy(kind.request.type)
                   ? withSuggestion(verdict.interruption,
                                    "The working copy may have been left locked. If it was, clean "
                                    "it up and try again.")
                   : verdict.interruption;
    }
    const Error fromReport = parsed(kind, verdict);
    const bool reportSaysItBetter =
        fromReport.domain() == QuenSourceControlErrorDomain && verdict.tellsOnlyOfAbsence;
    return verdict.complaint && !reportSaysItBetter ? verdict.complaint : fromReport;
}

/// Where in a broken report the reader stopped does not matter here.
std::string withoutPlaces(const std::string& line) {
    if (line.find(XMLParserErrorDomain.str()) == std::string::npos) {
        return line;
    }
    static const std::regex place(R"((XMLParserErrorDomain \d+) "[^"]+")");
    return std::regex_replace(line, place, "$1");
}

} // namespace

std::string expectedLine(const OperationKind& kind, const Verdict& verdict) {
    const Error error = expectedError(kind, verdict);
    return withoutPlaces(lineOf(kind.reading == OutputUse::chain ? wrapped(error) : error));
}

std::string actualLine(const QuenSourceControlOperation& operation) {
    return withoutPlaces(lineOf(operation.error()));
}

Error hostError(std::int64_t code, const String& description) {
    return {QuenSourceControlTaskErrorDomain, code, {{NSLocalizedDescriptionKey, description}}};
}

} // namespace quen::test
