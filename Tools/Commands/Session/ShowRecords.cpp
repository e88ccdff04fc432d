#include "Tools/Commands/Session/ShowRecords.h"

namespace quen::tools {

int showRecords(const Session& session, const Outcome<QuenSourceControlOperationPtr>& operation,
                const std::function<void(const Array& records)>& printForPeople) {
    if (!operation) {
        return operation.status();
    }
    const QuenSourceControlOperation& performed = **operation;
    const Array* const records = performed.result().array();
    if (session.options().json) {
        printJson(performed.result());
    } else if (records != nullptr && (!performed.error() || records->count() > 0)) {
        printForPeople(*records);
    }
    return session.finish(performed);
}

} // namespace quen::tools
