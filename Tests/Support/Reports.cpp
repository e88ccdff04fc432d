#include "Tests/Support/Reports.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace quen::test {

std::string testData(std::string_view path) {
    const std::string full = std::string(QUEN_TEST_DATA_DIRECTORY "/") + std::string(path);
    std::ifstream file(full, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) {
        throw std::runtime_error("The test data " + full + " cannot be read.");
    }
    return text;
}

DataPtr dataOf(std::string_view bytes) {
    return std::make_shared<const Data>(bytes);
}

std::vector<std::string_view> malformedReports(std::string_view report) {
    report = report.substr(0, report.find_last_not_of(" \t\r\n") + 1);
    std::vector<std::string_view> beginnings;
    for (std::size_t length = 0; length < report.size(); ++length) {
        beginnings.push_back(report.substr(0, length));
    }
    return beginnings;
}

} // namespace quen::test
