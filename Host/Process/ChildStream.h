#pragma once

#include "Foundation/Data.h"
#include "Host/Process/FileDescriptor.h"
#include "Host/Process/Process.h"

#include <cstddef>
#include <memory>

namespace quen {

/// One of the child's streams: what came so far, and the pipe where more comes from.
class ChildStream {
public:
    /// `watcher` must outlive this. What it has seen is not added to the data unless `keeps`.
    ChildStream(std::shared_ptr<Data> data, const ProcessInvocation::Watcher& watcher,
                bool keeps = true) noexcept
        : data_(std::move(data)), watcher_(watcher), keeps_(keeps) {}

    void open(FileDescriptor readEnd) noexcept { readEnd_ = std::move(readEnd); }
    /// Makes the pipe hold so much, where the system allows it.
    void widen(std::size_t size) noexcept;
    /// How much the pipe holds before who writes into it must wait.
    std::size_t capacity() const noexcept;
    bool isOpen() const noexcept { return readEnd_.isOpen(); }
    int number() const noexcept { return readEnd_.number(); }
    void close() noexcept { readEnd_.close(); }

    /// Takes what is there, and closes at the end of the stream. How many bytes came. Throws what
    /// the watcher throws, std::bad_alloc, and std::system_error.
    std::size_t read();
    /// Takes everything that was in the pipe at the time of the call, and little more: somebody may
    /// be filling it as fast as it is read. Throws like `read`.
    std::size_t readAll();

private:
    std::shared_ptr<Data> data_;
    const ProcessInvocation::Watcher& watcher_;
    bool keeps_;
    FileDescriptor readEnd_;
};

} // namespace quen
