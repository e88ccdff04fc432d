#include "Host/Embedding/Records.h"

#include "Foundation/Number.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <string_view>
#include <utility>

namespace quen {

namespace {

/// What is under a key, whatever the record holds.
class RecordReader {
public:
    explicit RecordReader(const Value& record)
        : record_(record.dictionary() == nullptr ? Dictionary() : *record.dictionary()) {}

    std::string text(const String& key) const { return record_[key].stringValue().str(); }

    std::optional<std::int64_t> number(const String& key) const {
        if (const std::int64_t* const number = record_[key].integer()) {
            return *number;
        }
        return numberFrom(record_[key].stringValue().view());
    }

    StatusFlags flags(const String& key) const {
        return StatusFlags(static_cast<std::uint32_t>(number(key).value_or(0)));
    }

    std::optional<Date> date(const String& key) const {
        const Date* const date = record_[key].date();
        return date == nullptr ? std::nullopt : std::optional(*date);
    }

    std::optional<bool> isDirectory() const {
        const bool* const isLeaf = record_[QuenSourceControlOperationIsLeafKey].boolean();
        return isLeaf == nullptr ? std::nullopt : std::optional(!*isLeaf);
    }

    std::vector<ChangedPath> changedPaths() const {
        std::vector<ChangedPath> paths;
        const Dictionary* const files = record_[QuenSourceControlOperationFilesKey].dictionary();
        for (const auto& file : files == nullptr ? Dictionary() : *files) {
            const std::int64_t* const status = file.value.integer();
            paths.push_back(
                {file.key.str(),
                 StatusFlags(static_cast<std::uint32_t>(status == nullptr ? 0 : *status)),
                 std::nullopt});
        }
        return paths;
    }

    std::string path() const {
        const FilePathValue* const path = record_[QuenSourceControlOperationPathKey].filePath();
        return path == nullptr ? text(QuenSourceControlOperationPathKey)
                               : (*path)->pathString().str();
    }

private:
    Dictionary record_;
};

template <typename Read> auto readAll(const Value& result, Read read) {
    std::vector<decltype(read(std::declval<const RecordReader&>()))> items;
    if (const Array* const records = result.array()) {
        items.reserve(records->count());
        for (const Value& record : *records) {
            items.push_back(read(RecordReader(record)));
        }
    }
    return items;
}

/// Of results with one record.
RecordReader firstOf(const Value& result) {
    const Array* const records = result.array();
    return RecordReader(records == nullptr || records->count() == 0 ? Value() : (*records)[0]);
}

} // namespace

bool StatusItem::isChanged() const {
    constexpr std::uint32_t others = QuenSourceControlStatusIgnored |
                                     QuenSourceControlStatusUnversioned |
                                     QuenSourceControlStatusModifiedInRepository;
    return (local.value() & ~others) != 0;
}

bool StatusItem::isConflicted() const {
    return local.has(QuenSourceControlStatusConflicted) ||
           local.has(QuenSourceControlStatusPropertiesConflicted);
}

std::vector<StatusItem> statusItems(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return StatusItem{record.text(QuenSourceControlOperationPathKey),
                          record.flags(QuenSourceControlOperationWCStatusKey),
                          record.flags(QuenSourceControlOperationRepositoryStatusKey)};
    });
}

std::vector<LogEntry> logEntries(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return LogEntry{record.number(QuenSourceControlOperationRevisionKey).value_or(0),
                        record.text(QuenSourceControlOperationAuthorKey),
                        record.date(QuenSourceControlOperationDateKey),
                        record.text(QuenSourceControlOperationMessageKey), record.changedPaths()};
    });
}

std::vector<BlameLine> blameLines(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return BlameLine{record.number(QuenSourceControlOperationLineNumberKey).value_or(0),
                         record.number(QuenSourceControlOperationRevisionKey),
                         record.text(QuenSourceControlOperationAuthorKey),
                         record.date(QuenSourceControlOperationDateKey)};
    });
}

std::vector<ItemInfo> itemInfos(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return ItemInfo{record.text(QuenSourceControlOperationRemoteOriginKey),
                        record.text(QuenSourceControlOperationRepositoryRootKey),
                        record.number(QuenSourceControlOperationRevisionKey),
                        record.text(QuenSourceControlOperationAuthorKey),
                        record.date(QuenSourceControlOperationDateKey)};
    });
}

std::vector<ListItem> listItems(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return ListItem{record.text(QuenSourceControlOperationNameKey),
                        record.isDirectory().value_or(false)};
    });
}

std::vector<ChangedPath> changedPaths(const Value& result) {
    return readAll(result, [](const RecordReader& record) {
        return ChangedPath{record.text(QuenSourceControlOperationPathKey),
                           record.flags(QuenSourceControlOperationWCStatusKey),
                           record.isDirectory()};
    });
}

std::string differenceText(const Value& result) {
    return firstOf(result).text(QuenSourceControlOperationContentKey);
}

std::optional<std::int64_t> committedRevision(const Value& result) {
    return firstOf(result).number(QuenSourceControlOperationRevisionKey);
}

std::string writtenPath(const Value& result) {
    return firstOf(result).path();
}

std::string branchName(const Value& result) {
    return firstOf(result).text(QuenSourceControlOperationNameKey);
}

} // namespace quen
