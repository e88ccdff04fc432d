#include "Benchmarks/Runs/Figure.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace quen {

void print(const Figure& figure) {
    std::cout << "| " << figure.name << " | " << decimals(figure.value, 3) << " | "
              << (figure.bound ? decimals(*figure.bound, 2) : "") << " | "
              << (!figure.bound    ? ""
                  : figure.isMet() ? "yes"
                                   : "**no**")
              << " | " << figure.detail << " |" << std::endl;
}

double median(std::vector<double> numbers) {
    std::sort(numbers.begin(), numbers.end());
    return numbers[numbers.size() / 2];
}

std::string decimals(double number, int count) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", count, number);
    return text.data();
}

} // namespace quen
