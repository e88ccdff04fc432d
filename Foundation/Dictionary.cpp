#include "Foundation/DictionaryIndex.h"
#include "Foundation/DictionaryKeys.h"
#include "Foundation/RecordMemory.h"
#include "Foundation/Value.h"

#include <algorithm>
#include <memory>

namespace quen {

/// The head of an allocation. The values follow it, and where the table has keys of its own these
/// follow the values, and the index of a large table follows them.
struct Dictionary::Block {
    std::atomic<std::uint32_t> references{1};
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    bool isInRecordMemory = false;
    const DictionaryKeys* shared = nullptr;

    Value* values() noexcept { return reinterpret_cast<Value*>(this + 1); }
    String* ownKeys() noexcept { return reinterpret_cast<String*>(values() + capacity); }
    const String* keys() noexcept { return shared != nullptr ? shared->begin() : ownKeys(); }

    bool isAlone() const noexcept { return references.load(std::memory_order_acquire) == 1; }
    bool isFull() const noexcept { return count == capacity; }
    /// `key` is the one that the kind of record has next.
    bool isNextOfShared(const String& key) const noexcept {
        return shared != nullptr && !isFull() && shared->begin()[count].isIdenticalTo(key);
    }

    /// The key is left out where it is shared.
    void add(String key, Value value) {
        if (shared == nullptr) {
            std::construct_at(ownKeys() + count, std::move(key));
        }
        std::construct_at(values() + count, std::move(value));
        ++count;
        indexLastEntry();
    }

    const Value* find(const String& key) noexcept {
        if (count > indexThreshold && index() != nullptr) {
            const auto entry = index()->find(key, ownKeys());
            return entry ? values() + *entry : nullptr;
        }
        const String* const end = keys() + count;
        const String* const found = std::find(keys(), end, key);
        return found == end ? nullptr : values() + (found - keys());
    }

    void destroyEntries() noexcept {
        std::destroy_n(values(), count);
        if (shared == nullptr) {
            std::destroy_n(ownKeys(), count);
        }
        if (hasIndex(capacity, shared)) {
            std::destroy_at(&index());
        }
    }

    std::unique_ptr<DictionaryIndex>& index() noexcept {
        return *reinterpret_cast<std::unique_ptr<DictionaryIndex>*>(ownKeys() + capacity);
    }
    static bool hasIndex(std::size_t capacity, const DictionaryKeys* shared) noexcept {
        return shared == nullptr && capacity > indexThreshold;
    }
    static std::size_t sizeFor(std::size_t capacity, const DictionaryKeys* shared) noexcept {
        return sizeof(Block) + capacity * sizeof(Value) +
               (shared == nullptr ? capacity * sizeof(String) : 0) +
               (hasIndex(capacity, shared) ? sizeof(std::unique_ptr<DictionaryIndex>) : 0);
    }
    static std::size_t unitsFor(std::size_t size) noexcept {
        return (size + sizeof(Block) - 1) / sizeof(Block);
    }

private:
    void indexLastEntry() {
        if (count <= indexThreshold) {
            return;
        }
        if (index() == nullptr || !index()->holdsRoomFor(count)) {
            index() = std::make_unique<DictionaryIndex>(count);
            for (std::uint32_t i = 0; i < count; ++i) {
                index()->add(ownKeys()[i].view(), i);
            }
        } else {
            index()->add(ownKeys()[count - 1].view(), count - 1);
        }
    }
};

Dictionary::Block* Dictionary::makeBlock(std::size_t capacity, const DictionaryKeys* shared,
                                         RecordMemory* memory) {
    static_assert(alignof(Block) >= alignof(Value) && alignof(Block) >= alignof(String));
    const std::size_t size = Block::sizeFor(capacity, shared);
    const bool fits = memory != nullptr && size <= RecordMemory::largestBlock;
    Block* const block = fits ? static_cast<Block*>(memory->take(size))
                              : std::allocator<Block>().allocate(Block::unitsFor(size));
    std::construct_at(block);
    block->capacity = static_cast<std::uint32_t>(capacity);
    block->isInRecordMemory = fits;
    block->shared = shared;
    if (Block::hasIndex(capacity, shared)) {
        std::construct_at(&block->index());
    }
    return block;
}

void Dictionary::freeBlock(Block* block) noexcept {
    const std::size_t size = Block::sizeFor(block->capacity, block->shared);
    const bool isInRecordMemory = block->isInRecordMemory;
    block->destroyEntries();
    std::destroy_at(block);
    if (isInRecordMemory) {
        RecordMemory::giveBack(block);
    } else {
        std::allocator<Block>().deallocate(block, Block::unitsFor(size));
    }
}

Dictionary Dictionary::withCapacity(std::size_t capacity) {
    Dictionary dictionary;
    dictionary.block_ = makeBlock(capacity, nullptr, nullptr);
    return dictionary;
}

Dictionary Dictionary::withCapacity(std::size_t capacity, RecordMemory& memory) {
    Dictionary dictionary;
    dictionary.block_ = makeBlock(capacity, nullptr, &memory);
    return dictionary;
}

Dictionary Dictionary::withKeys(const DictionaryKeys& keys, RecordMemory& memory) {
    if (keys.count() > indexThreshold) {
        return withCapacity(keys.count(), memory);
    }
    Dictionary dictionary;
    dictionary.block_ = makeBlock(keys.count(), &keys, &memory);
    return dictionary;
}

Dictionary::Dictionary(std::initializer_list<Entry> entries)
    : block_(makeBlock(entries.size(), nullptr, nullptr)) {
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
    return block_ == nullptr ? const_iterator() : const_iterator(block_->keys(), block_->values());
}

Dictionary::const_iterator Dictionary::end() const noexcept {
    return block_ == nullptr
               ? const_iterator()
               : const_iterator(block_->keys() + block_->count, block_->values() + block_->count);
}

const Value* Dictionary::find(const String& key) const noexcept {
    return block_ == nullptr ? nullptr : block_->find(key);
}

const Value& Dictionary::operator[](const String& key) const noexcept {
    static const Value nothing;
    const Value* const value = find(key);
    return value == nullptr ? nothing : *value;
}

void Dictionary::set(String key, Value value) {
    if (block_ != nullptr && block_->isAlone() && block_->isNextOfShared(key)) {
        block_->add(String(), std::move(value));
        return;
    }
    const Value* const present = find(key);
    if (present == nullptr) {
        prepareToAdd();
        block_->add(std::move(key), std::move(value));
        return;
    }
    const std::ptrdiff_t position = present - block_->values();
    prepareToChange();
    block_->values()[position] = std::move(value);
}

/// Other keys than those of its kind make a table one with keys of its own.
void Dictionary::prepareToAdd() {
    if (block_ == nullptr) {
        block_ = makeBlock(4, nullptr, nullptr);
    } else if (block_->isFull()) {
        moveTo(std::max<std::size_t>(4, 2 * block_->capacity), nullptr);
    } else if (!block_->isAlone() || block_->shared != nullptr) {
        moveTo(block_->capacity, nullptr);
    }
}

void Dictionary::prepareToChange() {
    if (!block_->isAlone()) {
        moveTo(block_->capacity, block_->shared);
    }
}

void Dictionary::moveTo(std::size_t capacity, const DictionaryKeys* shared) {
    Dictionary target;
    target.block_ = makeBlock(capacity, shared, nullptr);
    const bool isOurs = block_->isAlone();
    for (std::uint32_t i = 0; i < block_->count; ++i) {
        Value& value = block_->values()[i];
        target.block_->add(block_->keys()[i], isOurs ? std::move(value) : value);
    }
    std::swap(block_, target.block_);
}

QUEN_EXPORT bool operator==(const Dictionary& a, const Dictionary& b) noexcept {
    return a.isNil() == b.isNil() && a.count() == b.count() &&
           std::equal(a.begin(), a.end(), b.begin());
}

} // namespace quen
