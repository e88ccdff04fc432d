#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"
#include "Tests/Support/Printers.h"
#include "Tests/Support/Reports.h"
#include "Tests/Support/RequestBuilder.h"

#include <memory>
#include <stdexcept>
#include <string_view>

namespace quen::test {

/// A new operation for the request, initialised as a controller does it.
template <typename Class> std::shared_ptr<Class> makeOperation(const Request& request) {
    auto operation = std::make_shared<Class>();
    if (!operation->initWithRequest(request.make())) {
        throw std::runtime_error("The operation could not be initialised.");
    }
    return operation;
}

/// A new operation that has parsed a report, as after its run.
template <typename Class>
std::shared_ptr<Class> parsedOperation(const Request& request, std::string_view report) {
    auto operation = makeOperation<Class>(request);
    operation->setData(dataOf(report));
    operation->parseData();
    return operation;
}

} // namespace quen::test
