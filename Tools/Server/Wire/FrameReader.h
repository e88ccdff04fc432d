#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quen::tools::server {

/// What comes out of a stream of frames.
struct Frame {
    /// The content; empty where the frame was bad.
    std::string body;
    /// Why it was bad; empty where it was not.
    std::string fault;
};

/// Cuts a stream into the messages that it carries, each behind a header of lines: `Content-Length`
/// in bytes, which is required, and `Content-Type`, in any order and any case, and an empty line.
///
/// After a fault everything is passed over until the next `Content-Length: NUMBER` line, wherever
/// it begins. Memory: at most one message of the limit and one piece.
///
/// Threads: one at a time.
class FrameReader {
public:
    static constexpr std::size_t defaultLimit = std::size_t{64} << 20U;

    /// No message may be longer than `limit` bytes.
    explicit FrameReader(std::size_t limit = defaultLimit) : limit_(limit) {}

    /// The next piece of the stream, cut anywhere.
    void feed(std::string_view piece) { buffer_ += piece; }

    /// The next message or fault; nullopt until more is fed.
    std::optional<Frame> next();

    /// Takes back the last body, which was not what it should be: its length may have been wrong,
    /// so that it holds the next header. The search for that begins in it.
    void giveBack(std::string_view body);

    /// Whether the stream may end here: no message is unfinished, and none is looked for in vain.
    bool isAtEdge() const noexcept;

private:
    struct Header {
        std::optional<std::size_t> length;
        std::string fault;
    };

    bool readHeader(Frame& fault);
    static void takeLine(std::string_view line, Header& header);
    Frame fail(std::string fault, std::size_t passOver);
    /// Moves to the next header; false where there is none yet.
    bool search();
    void consume(std::size_t count);

    std::size_t limit_;
    std::string buffer_;
    /// Where the unread part of the buffer begins.
    std::size_t start_ = 0;
    /// Of the message whose header has been read.
    std::optional<std::size_t> length_;
    bool isSearching_ = false;
};

} // namespace quen::tools::server
