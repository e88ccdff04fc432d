#include "Foundation/XMLReport.h"

#include "Foundation/XMLExpatReader.h"

#include <utility>

namespace quen {

const String XMLParserErrorDomain = String::constant("XMLParserErrorDomain");

class XMLReportReader::Engine : public XMLExpatReader {
public:
    using XMLExpatReader::XMLExpatReader;
};

XMLReportReader::XMLReportReader(std::initializer_list<std::string_view> path,
                                 RecordHandler handler, ContainerHandler containerHandler)
    : engine_(std::make_unique<Engine>(XMLRecordPath(path), std::move(handler),
                                       std::move(containerHandler))) {}

XMLReportReader::~XMLReportReader() = default;

bool XMLReportReader::read(std::string_view piece) {
    return engine_->read(piece);
}

Error XMLReportReader::readAll(std::string_view report) {
    return engine_->readAll(report);
}

Error XMLReportReader::finish() {
    return engine_->finish();
}

} // namespace quen
