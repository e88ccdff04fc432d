#pragma once

#include "Host/Facts/InfoFacts.h"
#include "Tools/Server/WorkingCopies/WorkingCopy.h"

namespace quen::tools::server {

/// What `workingCopy/open` answers and `workingCopy/didOpen` tells.
OrderedJson workingCopyJson(const WorkingCopy& copy);
/// The same members where the client could not tell them: null, and empty lists.
OrderedJson unknownWorkingCopyJson();

/// The record of one path; facts that the report does not hold are null.
OrderedJson infoJson(const std::string& path, const InfoFacts& facts);

/// `{revision, author, date}` of a last change, added to a record.
void addCommit(OrderedJson& json, const CommitFacts& commit);

/// null for an absent number.
OrderedJson numberJson(const std::optional<std::int64_t>& number);

} // namespace quen::tools::server
