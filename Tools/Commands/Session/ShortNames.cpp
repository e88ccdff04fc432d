#include "Tools/Commands/Session/ShortNames.h"

#include "Foundation/Number.h"
#include "Foundation/PercentCoding.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <vector>

namespace quen::tools {

namespace {

using Conversion = Value (*)(const Value& value);

Value same(const Value& value) {
    return value;
}

/// The contract has numbers as texts.
Value number(const Value& value) {
    const auto number = numberFrom(value.stringValue().view());
    return number ? Value(*number) : value;
}

Value path(const Value& value) {
    const FilePathValue* const path = value.filePath();
    return path == nullptr ? value : Value((*path)->pathString());
}

Value name(const Value& value) {
    const String name = value.stringValue();
    return name == QuenSourceControlTrunkBranchName ? Value(String("trunk"))
                                                    : Value(String(percentDecoded(name.view())));
}

Value kind(const Value& value) {
    return Value(String(value.boolValue() ? "file" : "dir"));
}

struct ShortName {
    const String& longName;
    const char* shortName;
    Conversion convert;
};

const std::vector<ShortName>& shortNames() {
    static const std::vector<ShortName> names{
        {QuenSourceControlOperationPathKey, "path", path},
        {QuenSourceControlOperationNameKey, "name", name},
        {QuenSourceControlOperationIsLeafKey, "kind", kind},
        {QuenSourceControlOperationWCStatusKey, "localFlags", same},
        {QuenSourceControlOperationRepositoryStatusKey, "repositoryFlags", same},
        {QuenSourceControlOperationRemoteOriginKey, "url", same},
        {QuenSourceControlOperationRepositoryRootKey, "repositoryRoot", same},
        {QuenSourceControlOperationLineNumberKey, "line", number},
        {QuenSourceControlOperationRevisionKey, "revision", number},
        {QuenSourceControlOperationAuthorKey, "author", same},
        {QuenSourceControlOperationDateKey, "date", same},
        {QuenSourceControlOperationMessageKey, "message", same},
        {QuenSourceControlOperationContentKey, "content", same},
    };
    return names;
}

} // namespace

Dictionary withShortNames(const Dictionary& record) {
    Dictionary named = record;
    for (const ShortName& each : shortNames()) {
        const Value* const value = record.find(each.longName);
        if (value != nullptr && record.find(each.shortName) == nullptr) {
            named.set(each.shortName, each.convert(*value));
        }
    }
    return named;
}

Value withShortNames(const Value& result) {
    if (result.array() == nullptr) {
        return result;
    }
    Array records = Array::empty();
    for (const Value& value : *result.array()) {
        const Dictionary* const record = value.dictionary();
        records.append(record == nullptr ? value : Value(withShortNames(*record)));
    }
    return records;
}

} // namespace quen::tools
