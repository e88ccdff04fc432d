#pragma once

#include "Host/ClientRunner.h"
#include "Host/RunContext.h"
#include "Host/ToolRunner.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quen {

/// Hands what the client writes to whoever shows it, piece by piece, and keeps none of it: memory
/// does not grow with the output. The operation sees `standIn` in its place, which must be a report
/// that it reads without an error, such as `<log/>`; its result then holds no records.
///
///     auto runner = std::make_shared<StreamingRunner>(context, options, take, "<log/>");
///     const RunContext::Scope scope(runner->contextFor(context));
///
/// Threads: `take` is called on the thread of the run. One run at a time.
class StreamingRunner : public ToolRunner, public std::enable_shared_from_this<StreamingRunner> {
public:
    /// Answers whether more is wanted; with false the client is ended.
    using Taker = std::function<bool(std::string_view piece)>;

    /// Signs in with the credentials of `context`.
    StreamingRunner(const RunContext& context, ClientRunner::Options options, Taker take,
                    std::string standIn);

    /// A context like `context` whose runs are this runner's.
    RunContext contextFor(const RunContext& context);

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

    /// Whether the taker has ended the run.
    bool hadEnough() const noexcept { return hadEnough_; }

private:
    ToolRunnerPtr runner_;
    Taker take_;
    DataPtr standIn_;
    bool hadEnough_ = false;
};

} // namespace quen
