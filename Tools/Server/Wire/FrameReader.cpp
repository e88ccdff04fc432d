#include "Tools/Server/Wire/FrameReader.h"

#include "Foundation/Lines.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>

namespace quen::tools::server {

namespace {

/// A header of more bytes than this is none.
constexpr std::size_t headerLimit = 8192;
constexpr std::string_view lengthName = "content-length:";

char lowered(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

bool isToken(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '-' || c == '_';
    });
}

/// nullopt for a text that is not a decimal number; the greatest number for one that is too large.
std::optional<std::size_t> numberIn(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || end != text.data() + text.size() || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    return error == std::errc() ? number : SIZE_MAX;
}

bool isUTF8Charset(std::string_view contentType) {
    std::string type;
    std::transform(contentType.begin(), contentType.end(), std::back_inserter(type), lowered);
    const auto at = type.find("charset=");
    if (at == std::string::npos) {
        return true;
    }
    std::string_view charset = std::string_view(type).substr(at + 8);
    charset = trimmed(charset.substr(0, charset.find(';')));
    return charset == "utf-8" || charset == "utf8" || charset == "\"utf-8\"" ||
           charset == "\"utf8\"";
}

} // namespace

std::optional<Frame> FrameReader::next() {
    if (isSearching_ && !search()) {
        return std::nullopt;
    }
    if (!length_) {
        Frame fault;
        if (!readHeader(fault)) {
            return fault.fault.empty() ? std::nullopt : std::optional(std::move(fault));
        }
    }
    if (buffer_.size() - start_ < *length_) {
        return std::nullopt;
    }
    Frame frame{buffer_.substr(start_, *length_), {}};
    consume(*length_);
    length_.reset();
    return frame;
}

/// True when `length_` is known. False while the header is unfinished, or bad: `fault` says which.
bool FrameReader::readHeader(Frame& fault) {
    Header header;
    std::size_t at = start_;
    while (true) {
        const std::size_t end = buffer_.find('\n', at);
        if ((end == std::string::npos ? buffer_.size() : end) - start_ > headerLimit) {
            fault = fail("the header does not end", 1);
            return false;
        }
        if (end == std::string::npos) {
            return false;
        }
        const std::size_t size = end - at - (end > at && buffer_[end - 1] == '\r' ? 1 : 0);
        const std::string_view line = std::string_view(buffer_).substr(at, size);
        if (line.empty()) {
            at = end + 1;
            break;
        }
        takeLine(line, header);
        if (!header.fault.empty()) {
            // The next header may begin within this very line.
            fault = fail(header.fault, at + 1 - start_);
            return false;
        }
        at = end + 1;
    }
    if (!header.length) {
        fault = fail("the header has no Content-Length", 1);
        return false;
    }
    if (*header.length > limit_) {
        fault =
            fail("a message may have " + std::to_string(limit_) + " bytes at most", at - start_);
        return false;
    }
    consume(at - start_);
    length_ = header.length;
    return true;
}

void FrameReader::takeLine(std::string_view line, Header& header) {
    const auto colon = line.find(':');
    const std::string_view name = line.substr(0, colon);
    if (colon == std::string_view::npos || !isToken(name)) {
        header.fault = "expected a header line such as \"Content-Length: 52\"";
        return;
    }
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (equalsIgnoringCase(name, "Content-Length")) {
        const auto length = numberIn(value);
        if (!length) {
            header.fault = "Content-Length: expected a number of bytes";
        } else if (header.length && header.length != length) {
            header.fault = "Content-Length: given twice";
        }
        header.length = length;
    } else if (equalsIgnoringCase(name, "Content-Type") && !isUTF8Charset(value)) {
        header.fault = "Content-Type: the only charset is utf-8";
    }
}

Frame FrameReader::fail(std::string fault, std::size_t passOver) {
    consume(passOver);
    isSearching_ = true;
    return Frame{{}, std::move(fault)};
}

void FrameReader::giveBack(std::string_view body) {
    buffer_.erase(0, start_);
    buffer_.insert(0, body);
    start_ = 0;
    length_.reset();
    isSearching_ = true;
}

bool FrameReader::search() {
    while (true) {
        const auto found = std::search(buffer_.begin() + static_cast<std::ptrdiff_t>(start_),
                                       buffer_.end(), lengthName.begin(), lengthName.end(),
                                       [](char a, char b) { return lowered(a) == b; });
        if (found == buffer_.end()) {
            const std::size_t kept = std::min(buffer_.size() - start_, lengthName.size() - 1);
            consume(buffer_.size() - start_ - kept);
            return false;
        }
        consume(static_cast<std::size_t>(found - buffer_.begin()) - start_);
        const std::string_view rest = std::string_view(buffer_).substr(start_);
        const std::size_t end = rest.find('\n');
        if (end == std::string_view::npos && rest.size() < headerLimit) {
            return false;
        }
        std::string_view value = rest.substr(0, end).substr(lengthName.size());
        value = value.ends_with('\r') ? value.substr(0, value.size() - 1) : value;
        if (end != std::string_view::npos && numberIn(trimmed(value))) {
            isSearching_ = false;
            return true;
        }
        consume(1);
    }
}

bool FrameReader::isAtEdge() const noexcept {
    return !length_ && !isSearching_ && start_ == buffer_.size();
}

void FrameReader::consume(std::size_t count) {
    ::explicit_bzero(buffer_.data() + start_, count); // it may have held a password
    start_ += count;
    // Moved rarely, so that many small messages in one piece cost no more than their bytes.
    if (start_ == buffer_.size()) {
        buffer_.clear();
        start_ = 0;
    } else if (start_ > (std::size_t{1} << 20U) && start_ > buffer_.size() / 2) {
        buffer_.erase(0, start_);
        start_ = 0;
    }
    if (buffer_.empty() && buffer_.capacity() > (std::size_t{1} << 20U)) {
        buffer_.shrink_to_fit();
    }
}

} // namespace quen::tools::server
