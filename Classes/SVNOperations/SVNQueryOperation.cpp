#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <utility>

namespace quen {

void SVNQueryOperation::outputArrived(std::string_view piece) {
    if (reading_ == nullptr) {
        reading_ = makeReading();
    }
    if (reading_ != nullptr) {
        reading_->read(piece);
    }
}

std::unique_ptr<SVNReading> SVNQueryOperation::readingOfData() {
    std::unique_ptr<SVNReading> reading = std::move(reading_);
    if (reading == nullptr || !reading->hasRead(data())) {
        reading = makeReading();
        reading->readWhole(data());
    }
    return reading;
}

} // namespace quen
