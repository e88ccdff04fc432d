#pragma once

#include "Foundation/Value.h"

namespace quen::tools {

/// A result of the provider as scripts get it: in each record of an array, behind the members that
/// have the contract's long names, the same facts under short ones (`path`, `revision`, `author`,
/// ..), unless the record has a member of that name. Revisions and line numbers are integers there,
/// paths texts, and the trunk is called `trunk`. Everything else stays as it is.
Value withShortNames(const Value& result);
Dictionary withShortNames(const Dictionary& record);

} // namespace quen::tools
