#pragma once

#include "Foundation/Date.h"
#include "Host/Facts/ListFacts.h"
#include "Tools/Terminal/Style.h"

#include <string>

namespace quen::tools {

/// The name of an entry, safe to show; that of a directory with a slash, and in its colour.
std::string nameOfEntry(const ListEntry& entry, const Palette& palette);

/// `    12  alice       3 days ago      1.4k  greet.c`.
std::string detailedEntry(const ListEntry& entry, const Palette& palette, Date now);

/// An entry for a script: name, kind, size, revision, author and date.
Dictionary entryRecord(const ListEntry& entry);
/// The record that the provider makes of an entry, and behind it the members of `entryRecord`.
Dictionary contractRecord(const ListEntry& entry);

/// A size for people: `840`, `1.4k`, `20M`.
std::string sizeText(std::int64_t bytes);

} // namespace quen::tools
