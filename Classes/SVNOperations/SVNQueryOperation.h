#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"

#include <memory>
#include <string_view>

namespace quen {

/// The base of every query whose report is a list of records in XML. The report is read while the
/// client still writes it, where the host shows its pieces, and from `data` otherwise.
///
/// A concrete class says what reads its report, and overrides `parseData` to take what was read.
class SVNQueryOperation : public SVNOperation {
public:
    void outputArrived(std::string_view piece) override;

protected:
    /// A new reading of the report; null for a request whose output is not read as one.
    virtual std::unique_ptr<SVNReading> makeReading() const = 0;

    /// The reading of all of `data`, not finished yet: the one that was begun while the client ran,
    /// if it has seen everything, or a new one. Once, and never null: not for a request without
    /// one.
    std::unique_ptr<SVNReading> readingOfData();

private:
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
