#include "Tools/Console/RequestTypeNames.h"

#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <array>

namespace quen::tools {

namespace {

struct TypeName {
    std::string_view name;
    std::int32_t type;
};

constexpr std::array typeNames{
    TypeName{"RequestTypeAdd", RequestTypeAdd},
    TypeName{"RequestTypeRemoteCopy", RequestTypeRemoteCopy},
    TypeName{"RequestTypeRemoteRemove", RequestTypeRemoteRemove},
    TypeName{"RequestTypeCommit", RequestTypeCommit},
    TypeName{"RequestTypeIgnore", RequestTypeIgnore},
    TypeName{"RequestTypeRemove", RequestTypeRemove},
    TypeName{"RequestTypeResolve", RequestTypeResolve},
    TypeName{"RequestTypeRevert", RequestTypeRevert},
    TypeName{"RequestTypeMakeDirectory", RequestTypeMakeDirectory},
    TypeName{"RequestTypeMerge", RequestTypeMerge},
    TypeName{"RequestTypeCopy", RequestTypeCopy},
    TypeName{"RequestTypeMove", RequestTypeMove},
    TypeName{"RequestTypeUnignore", RequestTypeUnignore},
    TypeName{"RequestTypeUpdate", RequestTypeUpdate},
    TypeName{"RequestTypeSwitch", RequestTypeSwitch},
    TypeName{"RequestTypeStatus", RequestTypeStatus},
    TypeName{"RequestTypeRemoteStatus", RequestTypeRemoteStatus},
    TypeName{"RequestTypeList", RequestTypeList},
    TypeName{"RequestTypeLog", RequestTypeLog},
    TypeName{"RequestTypeInfo", RequestTypeInfo},
    TypeName{"RequestTypeCheckout", RequestTypeCheckout},
    TypeName{"RequestTypeExportFile", RequestTypeExportFile},
    TypeName{"RequestTypeImport", RequestTypeImport},
    TypeName{"RequestTypeListBranches", RequestTypeListBranches},
    TypeName{"RequestTypeCurrentBranch", RequestTypeCurrentBranch},
    TypeName{"RequestTypeBlame", RequestTypeBlame},
    TypeName{"RequestTypeDiff", RequestTypeDiff},
    TypeName{"RequestTypeInfoCheck", RequestTypeInfoCheck},
    TypeName{"RequestTypeInfoCheckAlternate", RequestTypeInfoCheckAlternate},
    TypeName{"RequestTypeLogAll", RequestTypeLogAll},
};

} // namespace

std::optional<std::int32_t> requestTypeNamed(std::string_view name) {
    for (const TypeName& known : typeNames) {
        if (known.name == name) {
            return known.type;
        }
    }
    return std::nullopt;
}

std::string_view nameOfRequestType(std::int32_t type) {
    for (const TypeName& known : typeNames) {
        if (known.type == type) {
            return known.name;
        }
    }
    return {};
}

} // namespace quen::tools
