#include "Benchmarks/Reading/BareExpat.h"

#include <stdexcept>

namespace quen::benchmarks {

void BareExpat::parse(std::string_view piece, bool isLast) {
    if (XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) !=
        XML_STATUS_OK) {
        throw std::runtime_error("The report is malformed.");
    }
}

} // namespace quen::benchmarks
