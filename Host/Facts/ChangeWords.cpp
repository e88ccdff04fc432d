#include "Host/Facts/ChangeWords.h"

namespace quen {

const char* wordOf(ItemAction action) noexcept {
    switch (action) {
    case ItemAction::none: return "none";
    case ItemAction::added: return "added";
    case ItemAction::deleted: return "deleted";
    case ItemAction::updated: return "updated";
    case ItemAction::merged: return "merged";
    case ItemAction::existed: return "existed";
    case ItemAction::replaced: return "replaced";
    case ItemAction::conflicted: return "conflicted";
    case ItemAction::restored: return "restored";
    case ItemAction::reverted: return "reverted";
    case ItemAction::sent: return "sent";
    }
    return "none";
}

} // namespace quen
