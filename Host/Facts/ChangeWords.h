#pragma once

#include "Host/Facts/ChangeFacts.h"

namespace quen {

/// The action as programs are told of it: `added`, `sent`; a constant.
const char* wordOf(ItemAction action) noexcept;

} // namespace quen
