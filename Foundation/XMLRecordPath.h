#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// How far along the path to a record a report is. It is told of every element outside records.
/// Private to the XML reader.
class XMLRecordPath {
public:
    /// See XMLReportReader.
    XMLRecordPath(std::initializer_list<std::string_view> names)
        : names_(names.begin(), names.end()) {}

    enum class Found {
        nothing,
        container,
        record,
    };

    /// An element starts. A record is not entered: nothing within it and not its end are told.
    Found enter(std::string_view name) noexcept {
        if (depth_ != matched_ + 1 || !isAmong(name, names_[matched_])) {
            ++depth_;
            return Found::nothing;
        }
        if (matched_ + 1 == names_.size()) {
            return Found::record;
        }
        ++depth_;
        ++matched_;
        ++containersBegun_;
        return Found::container;
    }

    /// The last element that was entered ends.
    void leave() noexcept {
        --depth_;
        if (matched_ > 0 && matched_ == depth_) {
            --matched_;
        }
    }

    /// No element is open.
    bool isOutside() const noexcept { return depth_ == 0; }
    /// The number of the record's container.
    std::size_t container() const noexcept { return matched_ == 0 ? 0 : containersBegun_ - 1; }

private:
    /// `names` are separated by bars.
    static bool isAmong(std::string_view name, std::string_view names) noexcept {
        for (auto bar = names.find('|'); bar != std::string_view::npos; bar = names.find('|')) {
            if (names.substr(0, bar) == name) {
                return true;
            }
            names.remove_prefix(bar + 1);
        }
        return names == name;
    }

    std::vector<std::string> names_;
    /// The open elements, and how many of them, the root apart, follow the path.
    std::size_t depth_ = 0;
    std::size_t matched_ = 0;
    std::size_t containersBegun_ = 0;
};

} // namespace quen
