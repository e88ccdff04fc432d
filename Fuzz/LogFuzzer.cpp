#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen::fuzz {

namespace {

/// The files of a log entry, each once, with its status.
void requireFiles(const Dictionary& files) {
    for (const Dictionary::EntryReference file : files) {
        require(file.value.integer() != nullptr, "a file has no status");
        require(files.find(file.key) == &file.value, "a file is listed twice");
    }
}

} // namespace

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNLogOperation>(
        choices, {.type = (choices.options & 1) != 0 ? RequestTypeLogAll : RequestTypeLog,
                  .files = StringArray{"a.c"}});
    require(outcome.result.isNothing() == !outcome.error.isNil(), "neither result nor error");
    requireRecords(outcome.result, {{QuenSourceControlOperationRevisionKey, FieldKind::text},
                                    {QuenSourceControlOperationAuthorKey, FieldKind::text},
                                    {QuenSourceControlOperationDateKey, FieldKind::date},
                                    {QuenSourceControlOperationFilesKey, FieldKind::table},
                                    {QuenSourceControlOperationMessageKey, FieldKind::text}});
    if (const Array* const records = outcome.result.array()) {
        for (const Value& record : *records) {
            const Value& files = (*record.dictionary())[QuenSourceControlOperationFilesKey];
            requireFiles(files.isNothing() ? Dictionary() : *files.dictionary());
        }
    }
}

} // namespace quen::fuzz
