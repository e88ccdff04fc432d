#include "Benchmarks/Figures/Figure.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <utility>

namespace quen::benchmarks {

namespace {

const char* verdict(const Figure& figure) {
    if (!figure.bound) {
        return "";
    }
    return figure.isMet() ? "yes" : "**no**";
}

} // namespace

void printHeadOfTable() {
    std::cout << "| figure | value | bound | met | |\n|---|---|---|---|---|" << std::endl;
}

void print(const Figure& figure) {
    std::cout << "| " << figure.name << " | " << decimals(figure.value, 3) << " | "
              << (figure.bound ? decimals(*figure.bound, 2) : "") << " | " << verdict(figure)
              << " | " << figure.detail << " |" << std::endl;
}

void add(Figures& figures, Figure figure) {
    print(figure);
    figures.push_back(std::move(figure));
}

double median(std::vector<double> numbers) {
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

std::string decimals(double number, int count) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", count, number);
    return text.data();
}

} // namespace quen::benchmarks
