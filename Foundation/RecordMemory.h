#pragma once

#include "Foundation/Export.h"

#include <cstddef>

namespace quen {

/// Where the many small texts and tables of one result are made: one behind another in pages, each
/// as large as what it holds, while a heap rounds every one of them up and adds a head.
///
/// A page is freed with the last block in it, so that who keeps one text of a result keeps a page.
///
/// Threads: one takes. Blocks may be given back from any thread, also when this object is gone.
class QUEN_EXPORT RecordMemory {
public:
    /// What is larger is better off in the heap.
    static constexpr std::size_t largestBlock = 512;

    RecordMemory() noexcept = default;
    RecordMemory(const RecordMemory&) = delete;
    RecordMemory& operator=(const RecordMemory&) = delete;
    ~RecordMemory() { letGo(); }

    /// At most `largestBlock` bytes, aligned to a pointer. Throws std::bad_alloc.
    void* take(std::size_t size) {
        const std::size_t rounded = (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
        if (static_cast<std::size_t>(end_ - at_) < rounded) {
            beginPage();
        }
        char* const block = at_;
        at_ += rounded;
        ++taken_;
        return block;
    }
    static void giveBack(void* block) noexcept;

private:
    struct Page;

    void beginPage();
    void letGo() noexcept;

    Page* page_ = nullptr;
    char* at_ = nullptr;
    char* end_ = nullptr;
    std::size_t taken_ = 0;
};

} // namespace quen
