#include "Tools/Server/WorkingCopies/WorkingCopy.h"

#include "Host/Places/Locations.h"

#include <algorithm>
#include <utility>

namespace quen::tools::server {

WorkingCopyFacts WorkingCopy::facts() const {
    const std::lock_guard lock(mutex_);
    return facts_;
}

void WorkingCopy::setFacts(WorkingCopyFacts facts) {
    const std::lock_guard lock(mutex_);
    facts_ = std::move(facts);
}

WorkingCopy::Turn::~Turn() {
    if (copy_ != nullptr) {
        const std::lock_guard lock(copy_->mutex_);
        copy_->isTurnTaken_ = false;
        copy_->turnIsFree_.notify_one();
    }
}

std::optional<WorkingCopy::Turn> WorkingCopy::takeTurn(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    if (!turnIsFree_.wait(lock, stop, [this] { return !isTurnTaken_; })) {
        return std::nullopt;
    }
    isTurnTaken_ = true;
    return Turn(*this);
}

WorkingCopy::Summary WorkingCopy::summarise(bool includeIgnored) {
    showsIgnored_ = showsIgnored_ || includeIgnored;
    return {generation_, table_.items().counts(includeIgnored)};
}

WorkingCopy::Summary WorkingCopy::summary(bool includeIgnored) {
    const std::lock_guard lock(mutex_);
    return summarise(includeIgnored);
}

WorkingCopy::Snapshot WorkingCopy::snapshot(bool includeIgnored) {
    const std::lock_guard lock(mutex_);
    Snapshot snapshot{summarise(includeIgnored), {}};
    for (const auto& [path, item] : table_.items().byPath()) {
        if (includeIgnored || !item.isIgnored()) {
            snapshot.items.push_back(item);
        }
    }
    return snapshot;
}

WorkingCopy::TakenIn WorkingCopy::replaceAll(StatusItems items) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isKnown_, true)) {
        std::optional<News> news = newsOf(table_.replaceAll(std::move(items)));
        return {generation_, std::move(news)};
    }
    // Whoever opens a working copy asks for its status; nobody is told of all of it unasked.
    table_.fill(std::move(items));
    return {++generation_, std::nullopt};
}

std::optional<WorkingCopy::News> WorkingCopy::replaceBelow(const std::vector<std::string>& paths,
                                                           const StatusItems& items) {
    const std::lock_guard lock(mutex_);
    return newsOf(table_.replaceBelow(paths, items));
}

std::optional<WorkingCopy::News> WorkingCopy::newsOf(StatusChange change) {
    if (!showsIgnored_) {
        std::erase_if(change.changed, [](const StatusItem& item) { return item.isIgnored(); });
        std::erase_if(change.removed, [](const StatusItem& item) { return item.isIgnored(); });
        for (const std::string& path : change.hidden) {
            change.removed.emplace_back().path = path;
        }
    }
    if (change.isEmpty()) {
        return std::nullopt;
    }
    return News{++generation_, std::move(change), table_.items().counts(showsIgnored_)};
}

std::vector<StatusItem> WorkingCopy::itemsAtOrBelow(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    std::vector<StatusItem> items;
    const StatusItems::ByPath& byPath = table_.items().byPath();
    for (auto at = byPath.lower_bound(path); at != byPath.end() && at->first.starts_with(path);
         ++at) {
        if (isAtOrBelow(at->first, path)) {
            items.push_back(at->second);
        }
    }
    return items;
}

bool WorkingCopy::isKnown() const {
    const std::lock_guard lock(mutex_);
    return isKnown_;
}

std::string WorkingCopy::unversionedAt(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    const StatusItem* const item = table_.unversionedAt(path);
    return item == nullptr ? std::string() : item->path;
}

std::vector<std::string> WorkingCopy::externals() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> paths;
    if (table_.items().externals() == 0) {
        return paths;
    }
    for (const auto& [path, item] : table_.items().byPath()) {
        if (item.external) {
            paths.push_back(path);
        }
    }
    return paths;
}

std::vector<std::string> WorkingCopy::unversionedPaths() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> paths;
    if (table_.items().countOf("unversioned") + table_.items().countOf("ignored") == 0) {
        return paths;
    }
    for (const auto& [path, item] : table_.items().byPath()) {
        if (item.isUnversioned()) {
            paths.push_back(path);
        }
    }
    return paths;
}

bool WorkingCopy::isInsideExternal(std::string_view path) const {
    const std::vector<std::string> directories = externals();
    return std::any_of(directories.begin(), directories.end(),
                       [&](const std::string& directory) { return isBelow(path, directory); });
}

bool WorkingCopy::knows(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    return table_.items().byPath().contains(path);
}

std::size_t WorkingCopy::bytes(std::size_t ofItem) const {
    const std::lock_guard lock(mutex_);
    std::size_t bytes = 0;
    for (const auto& [path, item] : table_.items().byPath()) {
        bytes += ofItem + 2 * path.size();
    }
    return bytes;
}

void WorkingCopy::beginChange() {
    const std::lock_guard lock(mutex_);
    ++changes_;
}

void WorkingCopy::endChange() {
    const std::lock_guard lock(mutex_);
    --changes_;
}

bool WorkingCopy::isChanging() const {
    const std::lock_guard lock(mutex_);
    return changes_ > 0;
}

std::string WorkingCopy::databaseStamp() const {
    const std::lock_guard lock(mutex_);
    return databaseStamp_;
}

void WorkingCopy::setDatabaseStamp(std::string stamp) {
    const std::lock_guard lock(mutex_);
    databaseStamp_ = std::move(stamp);
}

} // namespace quen::tools::server
