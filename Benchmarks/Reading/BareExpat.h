#pragma once

#include <expat.h>
#include <memory>
#include <string_view>

namespace quen::benchmarks {

/// A pass of expat without any handler: every byte seen and checked, nothing done with it. It
/// throws where the report is malformed.
class BareExpat {
public:
    /// A whole report.
    static void pass(std::string_view report) { BareExpat().parse(report, true); }

    void read(std::string_view piece) { parse(piece, false); }
    void finish() { parse({}, true); }

private:
    void parse(std::string_view piece, bool isLast);

    std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser_{XML_ParserCreate(nullptr),
                                                                    &XML_ParserFree};
};

} // namespace quen::benchmarks
