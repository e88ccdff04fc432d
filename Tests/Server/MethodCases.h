#pragma once

#include "Tests/Server/RunningServer.h"

#include <string>
#include <vector>

namespace quen::test {

/// One method that runs the client, with params that are good.
struct MethodCase {
    std::string name;
    std::string method;
    Json params;
    /// The client's sub-command at which a test strikes: of several runs the one that is meant.
    std::string word;
    /// A client that is killed there may leave the working copy locked.
    bool locks = false;
};

/// Every method that runs the client, each on a working copy of its own below `place`, numbered
/// from 0: `place/0`. Their first runs.
std::vector<MethodCase> firstRuns(const Sandbox& sandbox);
/// Methods that run several clients, at one that is not the first.
std::vector<MethodCase> laterRuns(const Sandbox& sandbox);

/// The working copy of the n-th case.
std::string copyOf(const Sandbox& sandbox, std::size_t number);

} // namespace quen::test
