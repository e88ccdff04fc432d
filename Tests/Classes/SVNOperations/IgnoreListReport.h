#pragma once

#include "Tests/Support/ReplayRunner.h"

#include <string>
#include <string_view>

namespace quen::test {

/// The client's report of a directory whose ignore list has this text.
inline std::string ignoreListReport(std::string_view text) {
    std::string report = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<properties>\n<target\n"
                         "   path=\"/w\">\n<property\n   name=\"svn:ignore\">";
    for (const char c : text) {
        switch (c) {
        case '&': report += "&amp;"; break;
        case '<': report += "&lt;"; break;
        case '\r': report += "&#13;"; break;
        default: report += c;
        }
    }
    return report + "</property>\n</target>\n</properties>\n";
}

/// A query's run for such a directory.
inline PreparedRun listRun(std::string_view text) {
    return {.standardOutput = ignoreListReport(text)};
}

/// A query's run for a directory that has no ignore list: an answer, though the client calls it a
/// failure.
inline PreparedRun noListRun() {
    return {.standardOutput = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<properties>\n</properties>\n",
            .standardError = "svn: warning: W200017: Property 'svn:ignore' not found on '/w'\n"
                             "svn: E200000: A problem occurred; see other errors for details\n",
            .exitStatus = 1};
}

/// A query's run that failed, its report left open.
inline PreparedRun failedRun() {
    return {.standardOutput = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<properties>\n",
            .standardError = "svn: E155010: The node '/w' was not found.\n",
            .exitStatus = 1};
}

/// An edit's run.
inline PreparedRun editRun() {
    return {.standardOutput = "property 'svn:ignore' set on '/w'\n"};
}

/// One line a run, for comparing a whole chain: the class, then the arguments.
inline std::vector<StringArray> asked(const std::vector<ToolInvocation>& invocations) {
    std::vector<StringArray> lines;
    for (const ToolInvocation& invocation : invocations) {
        StringArray line{invocation.operationClass};
        line.insert(line.end(), invocation.arguments.begin(), invocation.arguments.end());
        lines.push_back(line);
    }
    return lines;
}

} // namespace quen::test
