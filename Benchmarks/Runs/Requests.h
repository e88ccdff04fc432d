#pragma once

#include "Classes/SVNController.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace quen::benchmarks {

/// An operation for one file or place.
inline QuenSourceControlOperationPtr operationOn(std::int32_t type, const std::string& file,
                                                 Dictionary options = {}) {
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(type, nullptr, StringArray{file}, std::move(options));
    return SVNController().operationForRequest(request);
}

/// How many records a finished operation has. Throws where it has an error.
inline std::size_t recordsOf(const QuenSourceControlOperation& operation) {
    if (operation.error() || operation.result().array() == nullptr) {
        throw std::runtime_error("The operation failed: " + operation.error().description().str());
    }
    return operation.result().array()->count();
}

} // namespace quen::benchmarks
