#include "Fuzz/Support/Host.h"

#include "Foundation/OperationQueue.h"
#include "Host/RunContext.h"
#include "Tests/Support/Printers.h"

#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace quen::fuzz {

namespace {

class PlayingRunner : public ToolRunner {
public:
    void play(std::vector<PlayedRun> runs) {
        runs_ = std::move(runs);
        asked_.clear();
    }
    std::vector<StringArray> takeAsked() { return std::move(asked_); }

    ToolRun run(const ToolInvocation& invocation, std::stop_token /*stop*/) override {
        StringArray asked{invocation.operationClass};
        asked.insert(asked.end(), invocation.arguments.begin(), invocation.arguments.end());
        asked_.push_back(std::move(asked));
        const PlayedRun played =
            asked_.size() <= runs_.size() ? runs_[asked_.size() - 1] : PlayedRun();
        for (const std::string_view piece : played.pieces) {
            invocation.outputWatcher(piece);
        }
        ToolRun run;
        run.exitStatus = played.exitStatus;
        run.signal = played.signal;
        run.output = std::make_shared<const Data>(played.output);
        run.errors = std::make_shared<const Data>(played.errors);
        return run;
    }

private:
    std::vector<PlayedRun> runs_;
    std::vector<StringArray> asked_;
};

/// An operation whose exceptions end the process; a queue would swallow them.
class Guarded : public Operation {
public:
    explicit Guarded(QuenSourceControlOperationPtr operation) : operation_(std::move(operation)) {}
    void main() noexcept override { operation_->main(); }

private:
    const QuenSourceControlOperationPtr operation_;
};

/// The host for the life of the process, in place before the first operation is made.
struct PlayingHost {
    const std::shared_ptr<PlayingRunner> runner = std::make_shared<PlayingRunner>();
    const OperationQueuePtr queue = OperationQueue::make(0);
    std::vector<String> remarks;

    PlayingHost() {
        RunContext::setProcessDefault(
            RunContext()
                .withToolsDirectory("/tools")
                .withTemporaryDirectory("/nowhere")
                .withToolRunner(runner)
                // The next level is that of times, which differ from run to run.
                .withLogLevel(2)
                .withAssertionHandler([this](const MarlAssertionFailure& failure) {
                    remarks.emplace_back(failure.method.str() + ' ' + std::to_string(failure.line) +
                                         ' ' + messageOf(failure).str());
                })
                .withLogHandler([this](std::uint32_t /*level*/, const String& text) {
                    remarks.push_back(text);
                }));
    }
};

PlayingHost host;

} // namespace

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << "result ";
    PrintTo(outcome.result, out);
    *out << "\n";
    PrintTo(outcome.error, out);
    *out << (outcome.isDataReleased ? "\ndata released" : "\ndata kept");
    for (const String& remark : outcome.remarks) {
        *out << "\nremark " << remark;
    }
    for (const StringArray& run : outcome.runs) {
        *out << "\nrun";
        for (const String& argument : run) {
            *out << " [" << argument << ']';
        }
    }
}

Outcome outcomeOf(const QuenSourceControlOperationPtr& operation, std::vector<PlayedRun> runs) {
    host.runner->play(std::move(runs));
    host.remarks.clear();
    host.queue->addOperation(std::make_shared<Guarded>(operation));
    const auto* const task = dynamic_cast<const QuenSourceControlTaskOperation*>(operation.get());
    return {operation->result(), operation->error(), task == nullptr || task->data() == nullptr,
            std::exchange(host.remarks, {}), host.runner->takeAsked()};
}

} // namespace quen::fuzz
