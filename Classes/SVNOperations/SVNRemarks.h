#pragma once

#include <functional>
#include <vector>

namespace quen {

/// What a query has to say about the words of its report: assertions and log lines. Records are
/// made while the rest of the report is still unread, but a report that turns out malformed says
/// nothing, so remarks wait until it is known to be whole.
class SVNRemarks {
public:
    void later(std::function<void()> remark) { remarks_.push_back(std::move(remark)); }
    /// In the order in which they came.
    void makeAll();

private:
    std::vector<std::function<void()>> remarks_;
};

} // namespace quen
