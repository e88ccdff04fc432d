#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quen::tools {

/// A long text on its way to standard output, piece by piece; on a terminal through the pager: what
/// QUEN_PAGER or else PAGER says, which may be a command with arguments, or `less -FRX`. An empty
/// one means none. A pager that cannot be started is done without.
class PagedOutput {
public:
    PagedOutput();
    PagedOutput(const PagedOutput&) = delete;
    PagedOutput& operator=(const PagedOutput&) = delete;
    /// Finishes it.
    ~PagedOutput();

    /// False when nobody reads any more: the person has left the pager, or the reader of standard
    /// output is gone.
    bool write(std::string_view text);
    /// Waits until the person has left the pager.
    void finish();

private:
    struct Pager;

    bool fallBack();

    std::unique_ptr<Pager> pager_;
    bool isBegun_ = false;
    bool isLeft_ = false;
};

/// Writes a long text as a whole, likewise.
void printPaged(const std::string& text);

} // namespace quen::tools
