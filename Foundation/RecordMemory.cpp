#include "Foundation/RecordMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>

namespace quen {

namespace {

/// A page begins at a multiple of this, so that a block's address tells its page.
constexpr std::size_t pageAlignment = 32 * 1024;

/// Leaves the heap room for its own head, so that pages can lie next to each other.
constexpr std::size_t pageSize = pageAlignment - 64;

/// Whoever takes counts on its own; this many stand for those that it has not taken yet.
constexpr std::size_t taker = std::numeric_limits<std::size_t>::max() / 2;

} // namespace

/// The head of a page, whose blocks follow it.
struct RecordMemory::Page {
    std::atomic<std::size_t> users{taker};

    static Page* of(void* block) noexcept {
        const auto behindBeginning = reinterpret_cast<std::uintptr_t>(block) % pageAlignment;
        return reinterpret_cast<Page*>(static_cast<char*>(block) - behindBeginning);
    }

    void leave(std::size_t count) noexcept {
        if (users.fetch_sub(count, std::memory_order_acq_rel) == count) {
            std::destroy_at(this);
            std::free(this);
        }
    }
};

void RecordMemory::beginPage() {
    void* memory = nullptr;
    if (::posix_memalign(&memory, pageAlignment, pageSize) !=
        0) { // aligned_alloc wants whole units
        throw std::bad_alloc();
    }
    letGo();
    page_ = std::construct_at(static_cast<Page*>(memory));
    at_ = static_cast<char*>(memory) + sizeof(Page);
    end_ = static_cast<char*>(memory) + pageSize;
    taken_ = 0;
}

void RecordMemory::letGo() noexcept {
    if (page_ != nullptr) {
        page_->leave(taker - taken_);
    }
}

void RecordMemory::giveBack(void* block) noexcept {
    Page::of(block)->leave(1);
}

} // namespace quen
