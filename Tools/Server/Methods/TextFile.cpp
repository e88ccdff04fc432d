#include "Tools/Server/Methods/TextFile.h"

#include "Tools/Server/Dispatch/ProtocolError.h"

#include <fstream>

namespace quen::tools::server {

TextFile::TextFile(std::string_view text) {
    Error reason;
    directory_ = TemporaryDirectory::make(&reason);
    if (directory_ == nullptr) {
        throw ProtocolError(InternalError, reason.localizedDescription().str());
    }
    path_ = directory_->path().str() + "/text";
    std::ofstream file(path_, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file) {
        throw ProtocolError(InternalError, path_ + " cannot be written");
    }
}

} // namespace quen::tools::server
