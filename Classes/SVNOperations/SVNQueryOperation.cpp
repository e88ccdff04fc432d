#include "Classes/SVNOperations/SVNQueryOperation.h"

#include "Classes/SVNDiagnostics.h"

#include <utility>

namespace quen {

void SVNQueryOperation::outputArrived(std::string_view piece) {
    if (reading_ == nullptr && request() != nullptr) {
        reading_ = makeReading(*request());
    }
    if (reading_ != nullptr) {
        reading_->read(piece);
    }
}

/// The reading of all of `data`, not finished yet: the one that was begun while the client ran, if
/// it has seen these very bytes, or a new one. Null where there is none to be made.
std::unique_ptr<SVNReading>
SVNQueryOperation::readingOfData(const QuenSourceControlRequest& request) {
    std::unique_ptr<SVNReading> reading = std::move(reading_);
    const bool isWanted = !timeFormat_.empty() && isLogged(levelOfTimes);
    if (reading != nullptr && reading->hasRead(data()) && (reading->isTimed() || !isWanted)) {
        return reading;
    }
    reading = makeReading(request);
    if (reading != nullptr) {
        reading->readWhole(data());
    }
    return reading;
}

void SVNQueryOperation::parseOutput(const QuenSourceControlRequest& request) {
    const std::unique_ptr<SVNReading> reading = readingOfData(request);
    if (reading == nullptr) {
        return;
    }
    if (const Error malformed = reading->finish(); !malformed) {
        take(*reading);
    } else if (malformed_ != Malformed::silence) {
        setError(malformed);
        if (malformed_ == Malformed::errorAndEmptyResult) {
            setResult(Array::empty());
        }
    }
}

void SVNQueryOperation::take(SVNReading& reading) {
    reading.remarks.makeAll();
    if (!timeFormat_.empty()) {
        logAtLevel(levelOfTimes, timeFormat_, {reading.timeOfRecords().count()});
    }
    setResult(std::move(reading.records));
}

} // namespace quen
