#include "Foundation/ShellWord.h"

namespace quen {

std::string shellWord(std::string_view text) {
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789/._-+,:@%=";
    if (!text.empty() && text.find_first_not_of(plain) == std::string_view::npos) {
        return std::string(text);
    }
    std::string word = "'";
    for (const char c : text) {
        if (c == '\'') {
            word += "'\\''";
        } else {
            word += c;
        }
    }
    return word + "'";
}

} // namespace quen
