#pragma once

#include <string>
#include <vector>

namespace quen::test {

/// What a run must not leave in the process that made it: children, and open descriptors beyond
/// those of this object's birth.
class LeftBehind {
public:
    LeftBehind();

    /// In words; empty where nothing was left.
    std::string since() const;

private:
    std::vector<int> descriptors_;
};

} // namespace quen::test
