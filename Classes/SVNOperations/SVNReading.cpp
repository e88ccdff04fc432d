#include "Classes/SVNOperations/SVNReading.h"

#include "Classes/SVNDiagnostics.h"
#include "Foundation/Format.h"

#include <exception>

namespace quen {

namespace {

/// The error of a report that could not be read for want of memory, which is all that can go wrong
/// beside its form.
Error errorOfReading(const std::exception& exception) {
    return {XMLParserErrorDomain,
            1,
            {{NSLocalizedDescriptionKey,
              formatText("The report could not be read: %s.", {String(exception.what())})}}};
}

} // namespace

SVNReading::SVNReading(std::initializer_list<std::string_view> path)
    : reader_(path, [this](const XMLElement& element,
                           std::size_t container) { takeRecord(element, container); }),
      isTimed_(isLogged(levelOfTimes)) {}

void SVNReading::takeRecord(const XMLElement& element, std::size_t container) {
    if (!isTimed_) {
        readRecord(element, container);
        return;
    }
    const auto start = std::chrono::steady_clock::now();
    readRecord(element, container);
    timeOfRecords_ += std::chrono::steady_clock::now() - start;
}

void SVNReading::read(std::string_view piece) noexcept {
    fingerprint_.add(piece);
    if (failure_) {
        return;
    }
    try {
        reader_.read(piece);
    } catch (const std::exception& exception) {
        failure_ = errorOfReading(exception);
    }
}

void SVNReading::readWhole(const DataPtr& data) noexcept {
    isFinished_ = true;
    try {
        failure_ = reader_.readAll(data == nullptr ? std::string_view() : data->bytes());
    } catch (const std::exception& exception) {
        failure_ = errorOfReading(exception);
    }
}

bool SVNReading::hasRead(const DataPtr& data) const noexcept {
    SVNFingerprint whole;
    whole.add(data == nullptr ? std::string_view() : data->bytes());
    return fingerprint_ == whole;
}

Error SVNReading::finish() {
    if (isFinished_ || failure_) {
        return failure_;
    }
    try {
        return reader_.finish();
    } catch (const std::exception& exception) {
        return errorOfReading(exception);
    }
}

} // namespace quen
