#pragma once

#include "Host/Keeping/UndoStore.h"
#include "Host/Plans/Plans.h"
#include "Tools/Server/Methods/Services.h"

#include <string>
#include <vector>

namespace quen::tools::server {

/// What a step takes from the disk that is in no revision: kept in the undo store before the step,
/// which takes place while this lives.
class KeptLosses {
public:
    struct Step {
        std::string root;
        /// The word that the store knows it by.
        std::string word;
        /// What cannot be kept may go.
        bool mayLose = false;
    };

    /// Throws ProtocolError, with `data: {notKept: [{path, reason}]}`, where something cannot be
    /// kept and may not go.
    KeptLosses(const Step& step, const std::vector<LostItem>& lost, std::vector<String> notes);
    KeptLosses(const KeptLosses&) = delete;
    KeptLosses& operator=(const KeptLosses&) = delete;
    /// Takes down what the step left.
    ~KeptLosses();

    /// The paths whose content an undo brings back.
    OrderedJson paths() const;

private:
    UndoEntry entry_;
};

} // namespace quen::tools::server
