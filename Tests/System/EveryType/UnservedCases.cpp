#include "Tests/System/EveryType/TypeCase.h"

#include <string>

namespace quen::test {

std::vector<TypeCase> unservedCases() {
    std::vector<TypeCase> cases;
    for (const std::int32_t type : {22, 24, 27, 29, 33, 34, 35, 36, 37, 38}) {
        cases.push_back(
            {.name = "type " + std::to_string(type),
             .type = type,
             .className = nullptr,
             .prepare = {},
             .request =
                 [type](const Sandbox& sandbox) {
                     return Request{.type = type,
                                    .sourceTree = treeOf(sandbox),
                                    .destination = inTree(sandbox, "z.txt"),
                                    .files = StringArray{inTree(sandbox, "a.txt")}};
                 },
             .effects = {{{"status"}, ""}, {{"info", "--show-item", "revision", "^/"}, "3\n"}}});
    }
    return cases;
}

} // namespace quen::test
