#pragma once

#include "Foundation/Data.h"
#include "Foundation/XMLReport.h"

#include <chrono>
#include <exception>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>
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

/// Hands each record of a client's report to `handler` (see XMLReportReader). nil when the report
/// was well-formed; otherwise the reader's error, and what the handler gathered is void. No data
/// is an empty report.
Error readReport(const DataPtr& data, std::initializer_list<std::string_view> path,
                 const XMLReportReader::RecordHandler& handler);

/// The error of a report that could not be read for want of memory, which is all that can go wrong
/// beside its form.
Error errorOfReading(const std::exception& exception);

/// How long a report took, for the log.
class SVNStopwatch {
public:
    /// A line of level 3; `format` holds one `%.4f`, for the seconds since this was made.
    void log(std::string_view format) const;

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// An attribute as a text; nil where the element has none.
String attributeText(const XMLElement& element, std::string_view name);

/// The text of the only child of that name; nil where there is none, or more than one.
String onlyChildText(const XMLElement& element, std::string_view name);

} // namespace quen
