#pragma once

#include "Host/Facts/ChangeFacts.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

/// Which target or external the client is at while it changes something, as its lines tell one
/// after the other. Private to `ChangeFactsReader`.
class ChangePlaces {
public:
    /// Puts what a line tells of a target or an external among the facts; false for a line of
    /// another kind.
    bool take(std::string_view line, ChangeFacts& facts) {
        return takeTarget(line, facts) || takeExternal(line, facts);
    }

    /// The external that is being fetched, by its place among the facts; nullopt outside of any.
    std::optional<std::size_t> external() const;

private:
    bool takeTarget(std::string_view line, ChangeFacts& facts);
    bool takeExternal(std::string_view line, ChangeFacts& facts);
    void beginExternal(std::string_view path, ChangeFacts& facts);

    /// The externals that are being fetched, one inside another.
    std::vector<std::size_t> openExternals_;
};

} // namespace quen
