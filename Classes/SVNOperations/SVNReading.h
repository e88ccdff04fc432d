#pragma once

#include "Classes/SVNOperations/SVNFingerprint.h"
#include "Classes/SVNOperations/SVNRemarks.h"
#include "Foundation/Data.h"
#include "Foundation/RecordMemory.h"
#include "Foundation/XMLReport.h"

#include <chrono>
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
    /// Whether the pieces so far are the whole report, byte for byte. A host that shows none, stops
    /// in between, or puts other data in their place, is served from the data.
    bool hasRead(const DataPtr& data) const noexcept;
    /// Ends the report, once. nil when it was well-formed; otherwise the records are void, and
    /// remarks must not be made.
    Error finish();

    /// Whether the time of the records is taken: it is where the log asks for it when the reading
    /// begins, for two looks at the clock cost about as much as a small record.
    bool isTimed() const noexcept { return isTimed_; }
    /// What making the records took, the reading of the document between them left out.
    std::chrono::duration<double> timeOfRecords() const noexcept { return timeOfRecords_; }

    Array records = Array::empty();
    SVNRemarks remarks;

protected:
    /// `container` counts the elements that hold records, see XMLReportReader.
    virtual void readRecord(const XMLElement& element, std::size_t container) = 0;

    /// Where the records and their texts are made.
    RecordMemory memory;

private:
    void takeRecord(const XMLElement& element, std::size_t container);

    XMLReportReader reader_;
    SVNFingerprint fingerprint_;
    const bool isTimed_;
    std::chrono::steady_clock::duration timeOfRecords_{};
    bool isFinished_ = false;
    Error failure_;
};

} // namespace quen
