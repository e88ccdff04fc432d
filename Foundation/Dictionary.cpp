#include "Foundation/Value.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace quen {

namespace {

/// Open addressing over entry numbers, for tables too large to search one by one.
class EntryIndex {
public:
    explicit EntryIndex(std::size_t entries) : slots_(slotsFor(entries), vacant) {}

    bool holdsRoomFor(std::size_t entries) const noexcept { return slots_.size() >= 2 * entries; }

    void add(std::string_view key, std::uint32_t entry) noexcept {
        std::size_t slot = startOf(key);
        while (slots_[slot] != vacant) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        slots_[slot] = entry;
    }

    std::optional<std::uint32_t> find(const String& key,
                                      const Dictionary::Entry* entries) const noexcept {
        for (std::size_t slot = startOf(key.view()); slots_[slot] != vacant;
             slot = (slot + 1) & (slots_.size() - 1)) {
            if (entries[slots_[slot]].key == key) {
                return slots_[slot];
            }
        }
        return std::nullopt;
    }

private:
    static constexpr std::uint32_t vacant = UINT32_MAX;

    static std::size_t slotsFor(std::size_t entries) noexcept {
        std::size_t slots = 64;
        while (slots < 4 * entries) {
            slots *= 2;
        }
        return slots;
    }
    std::size_t startOf(std::string_view key) const noexcept {
        return std::hash<std::string_view>()(key) & (slots_.size() - 1);
    }

    std::vector<std::uint32_t> slots_;
};

} // namespace

/// The head of an allocation whose entries follow it.
struct Dictionary::Block {
    std::atomic<std::uint32_t> references{1};
    std::uint32_t count = 0;
    std::size_t capacity = 0;
    std::unique_ptr<EntryIndex> index;

    Entry* entries() noexcept { return reinterpret_cast<Entry*>(this + 1); }

    void add(Entry entry) {
        std::construct_at(entries() + count, std::move(entry));
        ++count;
        indexLastEntry();
    }

    void indexLastEntry() {
        if (count <= indexThreshold) {
            return;
        }
        if (index == nullptr || !index->holdsRoomFor(count)) {
            index = std::make_unique<EntryIndex>(count);
            for (std::uint32_t i = 0; i < count; ++i) {
                index->add(entries()[i].key.view(), i);
            }
        } else {
            index->add(entries()[count - 1].key.view(), count - 1);
        }
    }

    Entry* find(const String& key) noexcept {
        if (index != nullptr) {
            const auto entry = index->find(key, entries());
            return entry ? entries() + *entry : nullptr;
        }
        Entry* const end = entries() + count;
        Entry* const entry =
            std::find_if(entries(), end, [&](const Entry& e) { return e.key == key; });
        return entry == end ? nullptr : entry;
    }

    static std::size_t unitsFor(std::size_t capacity) noexcept {
        return 1 + (capacity * sizeof(Entry) + sizeof(Block) - 1) / sizeof(Block);
    }
};

Dictionary::Block* Dictionary::makeBlock(std::size_t capacity) {
    static_assert(alignof(Block) >= alignof(Entry));
    Block* block = std::allocator<Block>().allocate(Block::unitsFor(capacity));
    std::construct_at(block);
    block->capacity = capacity;
    return block;
}

void Dictionary::freeBlock(Block* block) noexcept {
    const std::size_t units = Block::unitsFor(block->capacity);
    std::destroy_n(block->entries(), block->count);
    std::destroy_at(block);
    std::allocator<Block>().deallocate(block, units);
}

Dictionary Dictionary::withCapacity(std::size_t capacity) {
    Dictionary dictionary;
    dictionary.block_ = makeBlock(capacity);
    return dictionary;
}

Dictionary::Dictionary(std::initializer_list<Entry> entries) : block_(makeBlock(entries.size())) {
    for (const Entry& entry : entries) {
        set(entry.key, entry.value);
    }
}

Dictionary::Dictionary(const Dictionary& other) noexcept : block_(other.block_) {
    if (block_ != nullptr) {
        block_->references.fetch_add(1, std::memory_order_relaxed);
    }
}

void Dictionary::release() noexcept {
    if (block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        freeBlock(block_);
    }
}

std::size_t Dictionary::count() const noexcept {
    return block_ == nullptr ? 0 : block_->count;
}

Dictionary::const_iterator Dictionary::begin() const noexcept {
    return block_ == nullptr ? nullptr : block_->entries();
}

Dictionary::const_iterator Dictionary::end() const noexcept {
    return block_ == nullptr ? nullptr : block_->entries() + block_->count;
}

const Value* Dictionary::find(const String& key) const noexcept {
    Entry* const entry = block_ == nullptr ? nullptr : block_->find(key);
    return entry == nullptr ? nullptr : &entry->value;
}

const Value& Dictionary::operator[](const String& key) const noexcept {
    static const Value nothing;
    const Value* const value = find(key);
    return value == nullptr ? nothing : *value;
}

void Dictionary::set(String key, Value value) {
    Entry* const present = block_ == nullptr ? nullptr : block_->find(key);
    if (present == nullptr) {
        prepareToAdd();
        block_->add({std::move(key), std::move(value)});
        return;
    }
    const std::ptrdiff_t position = present - block_->entries();
    prepareToChange();
    block_->entries()[position].value = std::move(value);
}

void Dictionary::prepareToAdd() {
    if (block_ == nullptr) {
        block_ = makeBlock(4);
    } else if (block_->count == block_->capacity) {
        grow(std::max<std::size_t>(4, 2 * block_->capacity));
    } else {
        prepareToChange();
    }
}

void Dictionary::prepareToChange() {
    if (block_->references.load(std::memory_order_acquire) != 1) {
        grow(block_->capacity);
    }
}

void Dictionary::grow(std::size_t capacity) {
    Dictionary larger = withCapacity(capacity);
    const bool isOurs = block_->references.load(std::memory_order_acquire) == 1;
    for (Entry& entry : std::span(block_->entries(), block_->count)) {
        larger.block_->add(isOurs ? std::move(entry) : entry);
    }
    std::swap(block_, larger.block_);
}

QUEN_EXPORT bool operator==(const Dictionary& a, const Dictionary& b) noexcept {
    return a.isNil() == b.isNil() && std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace quen
