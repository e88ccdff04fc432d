#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <utility>

namespace quen {

struct QuenSourceControlOperation::State {
    QuenSourceControlRequestPtr request;
    Value result;
    Error error;
};

QuenSourceControlOperation::QuenSourceControlOperation() : state_(std::make_unique<State>()) {}

QuenSourceControlOperation::~QuenSourceControlOperation() = default;

bool QuenSourceControlOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    state_->request = std::move(request);
    return state_->request != nullptr;
}

const QuenSourceControlRequestPtr& QuenSourceControlOperation::request() const {
    return state_->request;
}

const Value& QuenSourceControlOperation::result() const {
    return state_->result;
}

void QuenSourceControlOperation::setResult(Value result) {
    state_->result = std::move(result);
}

const Error& QuenSourceControlOperation::error() const {
    // Nobody has set an error, because nobody has run it; it must not look like a success.
    static const Error skipped = cancelledError();
    return wasSkipped() && !state_->error ? skipped : state_->error;
}

void QuenSourceControlOperation::setError(Error error) {
    state_->error = std::move(error);
}

void QuenSourceControlOperation::main() {}

} // namespace quen
