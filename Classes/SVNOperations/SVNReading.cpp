#include "Classes/SVNOperations/SVNReading.h"

#include <exception>

namespace quen {

SVNReading::SVNReading(std::initializer_list<std::string_view> path)
    : reader_(path, [this](const XMLElement& element, std::size_t) { readRecord(element); }) {}

void SVNReading::read(std::string_view piece) noexcept {
    size_ += piece.size();
    if (failure_) {
        return;
    }
    try {
        reader_.read(piece);
    } catch (const std::exception& exception) {
        failure_ = errorOfReading(exception);
    }
}

bool SVNReading::hasRead(const DataPtr& data) const noexcept {
    return size_ == (data == nullptr ? 0 : data->size());
}

Error SVNReading::finish() {
    if (failure_) {
        return failure_;
    }
    try {
        return reader_.finish();
    } catch (const std::exception& exception) {
        return errorOfReading(exception);
    }
}

} // namespace quen
