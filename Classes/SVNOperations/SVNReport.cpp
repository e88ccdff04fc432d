#include "Classes/SVNOperations/SVNReport.h"

namespace quen {

void SVNRemarks::makeAll() {
    for (const auto& remark : remarks_) {
        remark();
    }
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
