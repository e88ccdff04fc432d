#include "Classes/SVNOperations/SVNReport.h"

#include "Classes/SVNDiagnostics.h"

#include <exception>

namespace quen {

void SVNRemarks::makeAll() {
    for (const auto& remark : remarks_) {
        remark();
    }
}

Error readReport(const DataPtr& data, std::initializer_list<std::string_view> path,
                 const XMLReportReader::RecordHandler& handler) {
    try {
        XMLReportReader reader(path, handler);
        if (data != nullptr) {
            reader.read(data->bytes());
        }
        return reader.finish();
    } catch (const std::exception& exception) {
        return errorOfReading(exception);
    }
}

Error errorOfReading(const std::exception& exception) {
    return {XMLParserErrorDomain,
            1,
            {{NSLocalizedDescriptionKey,
              formatText("The report could not be read: %s.", {String(exception.what())})}}};
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
