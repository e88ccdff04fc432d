#include "Tools/Terminal/Question.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <unistd.h>

namespace quen::tools {

namespace {

bool isForbidden = false;

} // namespace

void neverAsk() noexcept {
    isForbidden = true;
}

bool canAsk() noexcept {
    return !isForbidden && isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

bool ask(const std::string& question) {
    std::cerr << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    std::transform(answer.begin(), answer.end(), answer.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return answer == "y" || answer == "yes";
}

} // namespace quen::tools
