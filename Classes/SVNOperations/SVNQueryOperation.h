#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"

#include <memory>
#include <string_view>

namespace quen {

/// The base of every query whose report is a list of records in XML. The report is read while the
/// client still writes it, where the host shows its pieces, and from `data` otherwise; the result
/// is the records.
///
/// A concrete class says what reads its report, and what becomes of a malformed one.
class SVNQueryOperation : public SVNOperation {
public:
    void outputArrived(std::string_view piece) override;

protected:
    /// What a malformed report leaves.
    enum class Malformed {
        error,
        errorAndEmptyResult,
        /// Nothing: no error, and no result.
        silence,
    };

    /// `timeFormat`, where given, holds one `%.4f`: the line in the log about how many seconds the
    /// records took.
    explicit SVNQueryOperation(Malformed malformed = Malformed::error,
                               std::string_view timeFormat = {})
        : malformed_(malformed), timeFormat_(timeFormat) {}

    /// A new reading of the report; null for a request whose output is not read as one.
    virtual std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) = 0;

    void parseOutput(const QuenSourceControlRequest& request) override;

private:
    std::unique_ptr<SVNReading> readingOfData(const QuenSourceControlRequest& request);
    void take(SVNReading& reading);

    const Malformed malformed_;
    const std::string_view timeFormat_;
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
