#include "Tools/Server/Wire/StrictJson.h"

#include <exception>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quen::tools::server {

namespace {

using nlohmann::json;

/// Follows the reader through the text.
class Watch {
public:
    explicit Watch(int deepest) : deepest_(deepest) {}

    bool operator()(int depth, json::parse_event_t event, const json& parsed) {
        if (event == json::parse_event_t::object_start ||
            event == json::parse_event_t::array_start) {
            if (depth >= deepest_) {
                throw std::length_error("more than " + std::to_string(deepest_) +
                                        " objects and arrays in each other");
            }
            levels_.emplace_back();
        } else if (event == json::parse_event_t::key) {
            takeName(parsed.get_ref<const std::string&>());
        } else if (event == json::parse_event_t::object_end ||
                   event == json::parse_event_t::array_end) {
            levels_.pop_back();
        }
        return true;
    }

    const std::string& doubled() const { return doubled_; }

private:
    struct Level {
        std::set<std::string> names;
        std::string name;
    };

    void takeName(const std::string& name) {
        levels_.back().name = name;
        if (!levels_.back().names.insert(name).second && doubled_.empty()) {
            for (const Level& level : levels_) {
                doubled_ += (doubled_.empty() || level.name.empty() ? "" : ".") + level.name;
            }
        }
    }

    int deepest_;
    std::vector<Level> levels_;
    std::string doubled_;
};

} // namespace

StrictJson readStrictJson(std::string_view text, int deepest) {
    StrictJson read;
    try {
        Watch watch(deepest);
        read.value = json::parse(text, std::ref(watch));
        read.doubled = watch.doubled();
    } catch (const std::exception& error) {
        read.value = nullptr;
        read.fault = error.what();
    }
    return read;
}

} // namespace quen::tools::server
