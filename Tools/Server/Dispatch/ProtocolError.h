#pragma once

#include "Tools/Server/Wire/Message.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace quen::tools::server {

/// What a request is answered with in place of a result.
class ProtocolError : public std::runtime_error {
public:
    ProtocolError(int errorCode, const std::string& message, OrderedJson further = nullptr)
        : std::runtime_error(message), code(errorCode), data(std::move(further)) {}

    int code;
    OrderedJson data;
};

/// The answer of a request that was cancelled.
inline ProtocolError requestCancelled(bool mayHaveLeftLock) {
    return {RequestCancelled, "The request was cancelled.",
            OrderedJson{{"mayHaveLeftLock", mayHaveLeftLock}}};
}

} // namespace quen::tools::server
