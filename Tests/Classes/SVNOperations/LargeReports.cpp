#include "Tests/Classes/SVNOperations/LargeReports.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace quen {

namespace {

/// A sequence without order, the same in every run.
class Numbers {
public:
    std::size_t below(std::size_t limit) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>(state_ >> 33) % limit;
    }

private:
    std::uint64_t state_ = 42;
};

constexpr std::array authors{"alice", "bob", "carol", "d\xC3\xB6rte", "e.v.e"};
constexpr std::array actions{"M", "M", "M", "A", "D", "R"};
constexpr std::array words{"fix", "the",   "reader", "when", "a &lt;name&gt;",     "holds",
                           "an",  "&amp;", "twice",  "for",  "gr\xC3\xBC\xC3\x9F", "again"};

std::string dateOf(std::size_t number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "20%02zu-%02zu-%02zuT%02zu:%02zu:%02zu.%06zuZ",
                  number / 400000 % 100, number / 28 % 12 + 1, number % 28 + 1, number % 24,
                  number % 60, number / 60 % 60, number * 7919 % 1000000);
    return text.data();
}

/// The children that every change has.
std::string change(std::size_t number, Numbers& numbers) {
    return std::string("<author>") + authors.at(numbers.below(authors.size())) +
           "</author>\n<date>" + dateOf(number) + "</date>\n";
}

std::string changedPath(Numbers& numbers) {
    const char* const action = actions.at(numbers.below(actions.size()));
    return std::string("<path\n   action=\"") + action +
           "\"\n   prop-mods=\"false\"\n   text-mods=\"true\"\n   kind=\"file\">/trunk/part" +
           std::to_string(numbers.below(40)) + "/file" + std::to_string(numbers.below(9000)) +
           ".c</path>\n";
}

std::string message(Numbers& numbers) {
    std::string text;
    for (std::size_t left = 3 + numbers.below(20); left > 0; --left) {
        text += (text.empty() ? "" : " ") + std::string(words.at(numbers.below(words.size())));
    }
    return text;
}

} // namespace

std::string logReportOf(std::size_t revisions) {
    Numbers numbers;
    std::string report = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log>\n";
    for (std::size_t revision = revisions; revision > 0; --revision) {
        report += "<logentry\n   revision=\"" + std::to_string(revision) + "\">\n" +
                  change(revision, numbers) + "<paths>\n";
        for (std::size_t left = 1 + numbers.below(5); left > 0; --left) {
            report += changedPath(numbers);
        }
        report += "</paths>\n<msg>" + message(numbers) + "</msg>\n</logentry>\n";
    }
    return report + "</log>\n";
}

std::string blameReportOf(std::size_t lines) {
    Numbers numbers;
    std::string report = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<blame>\n<target\n"
                         "   path=\"a.c\">\n";
    for (std::size_t line = 1; line <= lines; ++line) {
        const std::size_t revision = 1 + numbers.below(5000);
        report += "<entry\n   line-number=\"" + std::to_string(line) +
                  "\">\n<commit\n   revision=\"" + std::to_string(revision) + "\">\n" +
                  change(revision, numbers) + "</commit>\n</entry>\n";
    }
    return report + "</target>\n</blame>\n";
}

} // namespace quen
