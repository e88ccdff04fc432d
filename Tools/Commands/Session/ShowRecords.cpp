#include "Tools/Commands/Session/ShowRecords.h"

namespace quen::tools {

int showRecords(const Session& session, const QuenSourceControlOperationPtr& operation,
                const CommonOptions& options,
                const std::function<void(const Array& records)>& printForPeople) {
    if (operation == nullptr) {
        return ExitFailure;
    }
    const Array* const records = operation->result().array();
    if (options.json) {
        printJson(operation->result());
    } else if (records != nullptr && (!operation->error() || records->count() > 0)) {
        printForPeople(*records);
    }
    return session.finish(*operation);
}

} // namespace quen::tools
