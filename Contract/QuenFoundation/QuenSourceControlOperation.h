#pragma once

#include "Foundation/Data.h"
#include "Foundation/Export.h"
#include "Foundation/OperationQueue.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <memory>
#include <optional>
#include <string_view>

namespace quen {

/// A unit of work built around a request. Members are defined by the host; providers subclass.
///
/// A provider's controller makes the object, calls `initWithRequest`, and hands it on or, when that
/// answers false, hands on nothing. The host owns it from then on, calls `run` once, on any thread,
/// or adds it to an OperationQueue, and then reads `result` and `error`.
///
/// Nothing that a subclass does may throw out of `initWithRequest` or `main`.
///
/// Threads: the thread that calls `run` until that returns; afterwards whoever holds it. `cancel`
/// alone may come from any thread at any time.
class QUEN_EXPORT QuenSourceControlOperation : public Operation {
public:
    QuenSourceControlOperation();
    ~QuenSourceControlOperation() override;

    /// Takes the request. False means that the object cannot be used. A subclass calls its base's
    /// first and gives up when that does; it may set `error` instead, and the host then reports the
    /// error and does not run the operation.
    virtual bool initWithRequest(QuenSourceControlRequestPtr request);

    /// Null before `initWithRequest`.
    const QuenSourceControlRequestPtr& request() const;

    /// Whatever the class stores, mostly an array of dictionaries under the result keys; nothing
    /// while unset. Result and error do not exclude each other.
    const Value& result() const;
    void setResult(Value result);

    /// nil while there is none. Of one that was skipped: that it was cancelled.
    const Error& error() const;
    void setError(Error error);

    /// The base class does nothing.
    void main() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};

using QuenSourceControlOperationPtr = std::shared_ptr<QuenSourceControlOperation>;

/// Runs an external tool once. The host implements the running:
///
/// 1. It starts `launchPath` with `arguments` (never through a shell) and collects standard output
///    in `data` and standard error as text.
/// 2. When the tool has ended it calls `parseData`, on the same thread.
/// 3. It hands the standard error text, where there is any, to `errorFromErrorMessage` and sets
///    what that answers as `error`, unless the error of `parseData` says it better.
///
/// An operation whose `error` is set before the run, or whose `arguments` were never set, is not
/// run. A tool that cannot be started is an error, and `parseData` is not called.
class QUEN_EXPORT QuenSourceControlTaskOperation : public QuenSourceControlOperation {
public:
    QuenSourceControlTaskOperation();
    ~QuenSourceControlTaskOperation() override;

    /// The designated initialiser.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// The tool, as an absolute path; nil while unset.
    String launchPath() const;
    void setLaunchPath(String launchPath);

    /// Absent until set.
    const std::optional<StringArray>& arguments() const;
    void setArguments(std::optional<StringArray> arguments);

    /// Everything that the tool wrote to standard output, set before `parseData` is called; null
    /// before that and once released. Ownership is shared.
    DataPtr data() const;
    void setData(DataPtr data);

    /// The next piece of what the tool writes to standard output, while it runs: so that reading
    /// can go on beside the writing. A host may leave this out. One that does it hands over every
    /// byte, in order, on the thread that runs `main`, before it sets `data` and calls `parseData`;
    /// the outcome is the same either way. Must not throw. The base class does nothing.
    virtual void outputArrived(std::string_view piece);

    /// Turns `data` into `result` or `error`. The base class leaves both alone.
    virtual void parseData();

    /// Turns the tool's standard error text into an error; nil where it is not one. The
    /// text may be nil. The base class's translation is the host's own, for any text.
    virtual Error errorFromErrorMessage(const String& message);

    /// Runs the tool as described above. Final in spirit: providers leave it alone.
    /// `cancel` ends a tool that is running, with all the processes that it started.
    void main() override;

private:
    struct TaskState;
    std::unique_ptr<TaskState> task_;
};

using QuenSourceControlTaskOperationPtr = std::shared_ptr<QuenSourceControlTaskOperation>;

} // namespace quen
