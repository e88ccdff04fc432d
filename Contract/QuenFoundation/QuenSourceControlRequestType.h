#pragma once

#include <cstdint>

namespace quen {

/// What a request asks for: `QuenSourceControlRequest::type`. Any other number may arrive too, and
/// is not served.
enum RequestType : std::int32_t {
    RequestTypeAdd = 0,
    RequestTypeRemoteCopy = 1,
    RequestTypeRemoteRemove = 2,
    RequestTypeCommit = 3,
    RequestTypeIgnore = 4,
    RequestTypeRemove = 5,
    RequestTypeResolve = 6,
    RequestTypeRevert = 7,
    RequestTypeMakeDirectory = 8,
    RequestTypeMerge = 9,
    RequestTypeCopy = 10,
    RequestTypeMove = 11,
    RequestTypeUnignore = 12,
    RequestTypeUpdate = 13,
    RequestTypeSwitch = 14,
    RequestTypeStatus = 15,
    RequestTypeRemoteStatus = 16,
    RequestTypeList = 17,
    RequestTypeLog = 18,
    RequestTypeInfo = 19,
    RequestTypeCheckout = 20,
    RequestTypeExportFile = 21,
    /// Other providers serve it; this one answers no operation. Likewise 24 and 33 to 38.
    RequestTypeUnserved22 = 22,
    RequestTypeImport = 23,
    RequestTypeUnserved24 = 24,
    RequestTypeListBranches = 25,
    RequestTypeCurrentBranch = 26,
    /// Must never reach a Subversion provider; likewise 29.
    RequestTypeUnreachable27 = 27,
    RequestTypeBlame = 28,
    RequestTypeUnreachable29 = 29,
    RequestTypeDiff = 30,
    RequestTypeInfoCheck = 31,
    RequestTypeInfoCheckAlternate = 32,
    RequestTypeUnserved33 = 33,
    RequestTypeUnserved34 = 34,
    RequestTypeUnserved35 = 35,
    RequestTypeUnserved36 = 36,
    RequestTypeUnserved37 = 37,
    RequestTypeUnserved38 = 38,
    RequestTypeLogAll = 39,
    /// Not a type: one past the last. Each type needs a row in QuenSourceControlRequestFacts.h.
    RequestTypeEnd
};

} // namespace quen
