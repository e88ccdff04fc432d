#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quen::benchmarks {

/// One measured number, with what it may be at most.
struct Figure {
    std::string name;
    double value = 0;
    std::optional<double> bound = {};
    /// How it came about, in a few words.
    std::string detail = {};

    bool isMet() const { return !bound || value <= *bound; }
};

using Figures = std::vector<Figure>;

void printHeadOfTable();
/// A row of the table, written at once: some take long to come.
void print(const Figure& figure);
/// Prints it, and keeps it with the others.
void add(Figures& figures, Figure figure);

/// Of at least one number.
double median(std::vector<double> numbers);
/// `decimals(1.25, 1)` is `1.2`.
std::string decimals(double number, int count);

} // namespace quen::benchmarks
