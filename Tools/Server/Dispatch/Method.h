#pragma once

#include "Tools/Server/Dispatch/Call.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {
class JsonInput;
}

namespace quen::tools::server {

/// A request whose params have been read.
struct PreparedCall {
    /// The real path of the working copy that it changes: it waits for what changes the same one.
    /// Empty for a query, which waits for nothing.
    std::string changes;
    /// Serves it, on a worker's thread; throws ProtocolError or InputError in place of a result.
    std::function<OrderedJson(Call&)> run;
};

/// A request that the server serves. All have one shape: decode the params into a struct of their
/// own, run, encode.
struct Method {
    std::string name;
    /// Takes a partialResultToken.
    bool hasParts = false;
    /// Reads the params, on the reader's thread, so that changes keep the order of their arrival.
    /// Throws InputError, beginning with the path of the member at fault (`params.paths[2]`).
    std::function<PreparedCall(const JsonInput& params)> prepare;
};

/// A notification that the server takes; served on the reader's thread, so it must not take long.
struct Notice {
    std::string name;
    std::function<void(const JsonInput& params)> take;
};

/// A query: `run` of the params, beside everything else.
template <typename Params, typename Decode, typename Run>
Method query(std::string name, Decode decode, Run run) {
    return {std::move(name), false, [decode, run](const JsonInput& input) {
                const Params params = decode(input);
                return PreparedCall{
                    {}, [run, params](Call& call) { return OrderedJson(run(call, params)); }};
            }};
}

/// A change of the working copy that the params name in `root`.
template <typename Params, typename Decode, typename Run>
Method change(std::string name, Decode decode, Run run) {
    return {std::move(name), false, [decode, run](const JsonInput& input) {
                const Params params = decode(input);
                return PreparedCall{params.root, [run, params](Call& call) {
                                        return OrderedJson(run(call, params));
                                    }};
            }};
}

} // namespace quen::tools::server
