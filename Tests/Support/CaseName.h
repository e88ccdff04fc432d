#pragma once

#include <cctype>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {

/// Names a parametrised test after its case's `name`: `no file at all` becomes `no_file_at_all`.
struct CaseName {
    template <typename Case>
    std::string operator()(const testing::TestParamInfo<Case>& info) const {
        std::string name(info.param.name);
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
        }
        return name;
    }
};

/// Names a parametrised test after its case's `type`, a request type: `type_15`, `type_minus_1`.
struct TypeName {
    template <typename Case>
    std::string operator()(const testing::TestParamInfo<Case>& info) const {
        const std::int64_t type = info.param.type;
        return type < 0 ? "type_minus_" + std::to_string(-type) : "type_" + std::to_string(type);
    }
};

} // namespace quen::test
