#include "Host/StreamingRunner.h"

#include <utility>

namespace quen {

StreamingRunner::StreamingRunner(const RunContext& context, ClientRunner::Options options,
                                 Taker take, std::string standIn)
    : take_(std::move(take)), standIn_(std::make_shared<const Data>(standIn)) {
    options.keepsOutput = false;
    runner_ = context.withToolRunner(std::make_shared<ClientRunner>(options)).toolRunner();
}

RunContext StreamingRunner::contextFor(const RunContext& context) {
    // The runner below signs in already.
    return context.withCredentials(nullptr).withToolRunner(shared_from_this());
}

ToolRun StreamingRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    std::stop_source end;
    const std::stop_callback endsToo(std::move(stop), [&end] { end.request_stop(); });
    ToolInvocation streamed = invocation;
    streamed.outputWatcher = [this, &end](std::string_view piece) {
        if (!hadEnough_ && !take_(piece)) {
            hadEnough_ = true;
            end.request_stop();
        }
    };
    ToolRun run = runner_->run(streamed, end.get_token());
    run.output = standIn_;
    return run;
}

} // namespace quen
