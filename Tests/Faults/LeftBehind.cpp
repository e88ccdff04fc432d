#include "Tests/Faults/LeftBehind.h"

#include "Tests/Host/Process/ProcessTestSupport.h"

#include <cerrno>
#include <sys/wait.h>

namespace quen::test {

LeftBehind::LeftBehind() : descriptors_(openDescriptors()) {}

std::string LeftBehind::since() const {
    std::string left;
    const std::vector<int> now = openDescriptors();
    if (now != descriptors_) {
        left += std::to_string(now.size()) + " descriptors instead of " +
                std::to_string(descriptors_.size()) + "; ";
    }
    siginfo_t child{};
    if (::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) != -1 || errno != ECHILD) {
        left += "a child; ";
    }
    return left;
}

} // namespace quen::test
