#include "Classes/SVNOperations/SVNRemarks.h"

namespace quen {

void SVNRemarks::makeAll() {
    for (const auto& remark : remarks_) {
        remark();
    }
}

} // namespace quen
