#include "Tests/Faults/LeftBehind.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>

namespace quen {

namespace {

std::vector<int> openDescriptors() {
    // Collected first, asked after: the directory's own descriptor is closed by then.
    std::vector<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        numbers.push_back(std::stoi(entry.path().filename()));
    }
    std::erase_if(numbers, [](int number) { return ::fcntl(number, F_GETFD) < 0; });
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

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

} // namespace quen
