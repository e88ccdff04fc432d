#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace quen {

/// The entities that a report declares inside itself. Where declarations may stand outside too, the
/// engine passes in silence over attribute values that refer to what it has not seen; this tells
/// them. Private to the XML reader.
class XMLEntities {
public:
    /// `text` is what the entity stands for.
    void declare(std::string_view name, std::string_view text) { texts_.emplace(name, text); }

    /// Whether everything is declared that an attribute's value refers to, directly and through
    /// other entities. `markup` is the value as it is written, UTF-8 with anything around it that
    /// holds no reference.
    bool haveAllIn(std::string_view markup);

private:
    /// Takes each name that `markup` refers to, until one is not taken.
    static bool everyName(std::string_view markup,
                          const std::function<bool(std::string_view)>& isTaken);

    std::map<std::string, std::string, std::less<>> texts_;
    /// Those of which it is known that everything is declared.
    std::set<std::string, std::less<>> complete_;
};

} // namespace quen
