#include "Benchmarks/Reports/GeneratedReports.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace quen::benchmarks {

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

std::string pathOf(std::size_t number) {
    return "part" + std::to_string(number / 500) + "/file" + std::to_string(number) + ".c";
}

/// What a working copy knows of an item's last change.
std::string lastChange(Numbers& numbers) {
    const std::size_t revision = 1 + numbers.below(5000);
    return "<commit\n   revision=\"" + std::to_string(revision) + "\">\n" +
           change(revision, numbers) + "</commit>\n";
}

constexpr const char* declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

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
    std::string report = declaration + std::string("<log>\n");
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
    std::string report = declaration + std::string("<blame>\n<target\n   path=\"a.c\">\n");
    for (std::size_t line = 1; line <= lines; ++line) {
        report += "<entry\n   line-number=\"" + std::to_string(line) + "\">\n" +
                  lastChange(numbers) + "</entry>\n";
    }
    return report + "</target>\n</blame>\n";
}

std::string statusReportOf(std::size_t files) {
    Numbers numbers;
    std::string report = declaration + std::string("<status>\n<target\n   path=\"/project\">\n");
    for (std::size_t file = 0; file < files; ++file) {
        report += "<entry\n   path=\"/project/" + pathOf(file) +
                  "\">\n<wc-status\n   item=\"modified\"\n   props=\"none\"\n   revision=\"" +
                  std::to_string(5000) + "\">\n" + lastChange(numbers) + "</wc-status>\n</entry>\n";
    }
    return report + "</target>\n</status>\n";
}

std::string listReportOf(std::size_t files) {
    Numbers numbers;
    std::string report =
        declaration + std::string("<lists>\n<list\n   path=\"file:///repository/trunk\">\n");
    for (std::size_t file = 0; file < files; ++file) {
        report += "<entry\n   kind=\"file\">\n<name>file" + std::to_string(file) +
                  ".c</name>\n<size>" + std::to_string(numbers.below(90000)) + "</size>\n" +
                  lastChange(numbers) + "</entry>\n";
    }
    return report + "</list>\n</lists>\n";
}

std::string infoReportOf(std::size_t files) {
    Numbers numbers;
    std::string report = declaration + std::string("<info>\n");
    for (std::size_t file = 0; file < files; ++file) {
        const std::string path = pathOf(file);
        report += "<entry\n   path=\"" + path +
                  "\"\n   revision=\"5000\"\n   kind=\"file\">\n<url>file:///repository/trunk/" +
                  path + "</url>\n<relative-url>^/trunk/" + path +
                  "</relative-url>\n<repository>\n<root>file:///repository</root>\n"
                  "<uuid>5a3cc4b1-1c1b-4d7e-8a5f-000000000000</uuid>\n</repository>\n<wc-info>\n"
                  "<wcroot-abspath>/project</wcroot-abspath>\n<schedule>normal</schedule>\n"
                  "<depth>infinity</depth>\n</wc-info>\n" +
                  lastChange(numbers) + "</entry>\n";
    }
    return report + "</info>\n";
}

std::string summaryReportOf(std::size_t files) {
    std::string report = declaration + std::string("<diff>\n<paths>\n");
    for (std::size_t file = 0; file < files; ++file) {
        report += "<path\n   item=\"modified\"\n   props=\"none\"\n   kind=\"file\">"
                  "file:///repository/trunk/" +
                  pathOf(file) + "</path>\n";
    }
    return report + "</paths>\n</diff>\n";
}

std::string ReportKind::ofSize(std::size_t bytes) const {
    constexpr std::size_t sample = 1000;
    const std::size_t perRecord = make(sample).size() / sample;
    return make(bytes / perRecord);
}

const std::vector<ReportKind>& reportKinds() {
    static const std::vector<ReportKind> kinds{
        {"status", &statusReportOf}, {"log", &logReportOf},   {"blame", &blameReportOf},
        {"list", &listReportOf},     {"info", &infoReportOf}, {"summary", &summaryReportOf}};
    return kinds;
}

} // namespace quen::benchmarks
