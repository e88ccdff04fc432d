#include "Classes/SVNOperations/SVNReport.h"

#include "Classes/SVNDiagnostics.h"

namespace quen {

void SVNRemarks::makeAll() {
    for (const auto& remark : remarks_) {
        remark();
    }
}

void SVNStopwatch::log(std::string_view format) const {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    logAtLevel(3, format, {elapsed.count()});
}

String attributeText(const XMLElement& element, std::string_view name) {
    const auto value = element.attribute(name);
    return value ? String(*value) : String();
}

String onlyChildText(const XMLElement& element, std::string_view name) {
    const auto child = element.onlyChild(name);
    return child ? String(child->text()) : String();
}

} // namespace quen
