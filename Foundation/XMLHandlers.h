#pragma once

#include "Foundation/XMLReport.h"

namespace quen {

/// Whom a report's reader tells of what it finds, see XMLReportReader. Private to the XML reader.
struct XMLHandlers {
    XMLReportReader::RecordHandler record;
    /// May be empty.
    XMLReportReader::ContainerHandler container;
};

} // namespace quen
