#pragma once

#include "Classes/SVNOperations/SVNReport.h"
#include "Foundation/Data.h"

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace quen {

/// The records of one report in the making: read while the client still writes it, piece by piece,
/// or afterwards, whole. A subclass makes the records.
///
/// Threads: one at a time.
class SVNReading {
public:
    /// `path` leads to the records, see XMLReportReader.
    explicit SVNReading(std::initializer_list<std::string_view> path);
    SVNReading(const SVNReading&) = delete;
    SVNReading& operator=(const SVNReading&) = delete;
    virtual ~SVNReading() = default;

    /// The next piece. What goes wrong is told by `finish`.
    void read(std::string_view piece) noexcept;
    /// The whole report, instead of pieces; no data is an empty one.
    void readWhole(const DataPtr& data) noexcept;
    /// Whether the pieces so far are as long as the whole report. A host that shows pieces shows
    /// all of them; one that shows none, or stopped in between, is served from the data.
    bool hasRead(const DataPtr& data) const noexcept;
    /// Ends the report, once. nil when it was well-formed; otherwise the records are void, and
    /// remarks must not be made.
    Error finish();

    Array records = Array::empty();
    SVNRemarks remarks;

protected:
    /// `container` counts the elements that hold records, see XMLReportReader.
    virtual void readRecord(const XMLElement& element, std::size_t container) = 0;

private:
    XMLReportReader reader_;
    std::size_t size_ = 0;
    bool isFinished_ = false;
    Error failure_;
};

} // namespace quen
