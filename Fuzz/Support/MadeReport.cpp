#include "Fuzz/Support/MadeReport.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace quen::fuzz {

namespace {

using namespace std::string_view_literals;

constexpr std::array declarations = {
    R"(<?xml version="1.0" encoding="UTF-8"?>)"sv,
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"sv,
    ""sv,
    "\n"sv,
    "<?xml version='1.0'?>"sv,
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"sv,
    "\xEF\xBB\xBF"sv,
    R"(<!DOCTYPE r [<!ENTITY e "v"><!ATTLIST e k CDATA "&e;">]>)"sv,
};
constexpr std::array names = {"e"sv, "t"sv, "entry"sv, "path"sv, "a-b.c_1"sv, "_"sv, "ee"sv, "E"sv};
constexpr std::size_t mostMade = 1000;
/// What text and values may hold.
constexpr std::array texts = {
    "x"sv,     " "sv,        "\n"sv,       "\t"sv,           "word and words, more than sixteen"sv,
    "&lt;"sv,  "&gt;"sv,     "&amp;"sv,    "&quot;"sv,       "&apos;"sv,
    "&#10;"sv, "&#x41;"sv,   "&#13;"sv,    "&#x10FFFF;"sv,   "\xC3\xBC"sv,
    "]"sv,     "]]"sv,       ">"sv,        "\xE2\x82\xAC"sv, "\xF0\x9F\x98\x80"sv,
    "'"sv,     "\x7F"sv,     "&#xFFFD;"sv, "\xEF\xBF\xBD"sv, "0123456789abcde"sv,
    "\r"sv,    "&#55296;"sv, "]]>"sv,      "\xEF\xBF\xBE"sv, "\xED\xA0\x80"sv,
    "&e;"sv,   "&#0;"sv,
};
/// The first so many are what a plain report may hold.
constexpr std::size_t plainTexts = 25;
constexpr std::array others = {
    "<"sv,
    "</"sv,
    "/>"sv,
    ">"sv,
    "=\""sv,
    "\""sv,
    "<!-- c -->"sv,
    "<!--"sv,
    "-->"sv,
    "<?p d?>"sv,
    "<![CDATA[&x]]>"sv,
    "<![CDATA["sv,
    "]]>"sv,
    "&"sv,
    ";"sv,
    "&#"sv,
    " = "sv,
    "='v'"sv,
    " "sv,
    "\r\n"sv,
    ":"sv,
    "\xC3"sv,
    "\x80"sv,
    "\xF4\x90\x80\x80"sv,
    "\xC0\x80"sv,
    "\0"sv,
    "\x01"sv,
    "<e>"sv,
    "</e>"sv,
    "<e k=\"v\">"sv,
    "<t>"sv,
    "</t>"sv,
    "xmlns"sv,
    " k=\"v\""sv,
};

template <typename Table> std::string_view one(const Table& table, unsigned choice) {
    return table[choice % table.size()];
}

std::string fragments(FuzzInput& input) {
    std::string report(one(declarations, input.byte()));
    while (!input.rest().empty()) {
        const unsigned choice = input.byte();
        report += choice % 4 == 0   ? one(names, choice / 4)
                  : choice % 4 == 1 ? one(texts, choice / 4)
                                    : one(others, choice / 4);
    }
    return report;
}

/// A report that is well-formed when its declaration and its texts are.
class Maker {
public:
    std::string make(FuzzInput& input, std::size_t size) {
        report_ = one(declarations, input.byte() % 16 == 0 ? input.byte() : 0);
        open("log");
        while (!input.rest().empty() && report_.size() < size) {
            take(input);
        }
        while (!open_.empty()) {
            close();
        }
        return report_ + "\n";
    }

private:
    void take(FuzzInput& input) {
        const unsigned choice = input.byte();
        const unsigned detail = choice / 8;
        switch (choice % 8) {
        case 0:
        case 1: open(one(names, detail)); break;
        case 2:
        case 3: close(open_.size() > 1); break;
        case 4: attribute(one(names, detail), one(texts, input.byte() % plainTexts)); break;
        case 5: text(one(others, detail == 31 ? input.byte() : 10)); break;
        default: text(one(texts, detail < 30 ? detail % plainTexts : input.byte()));
        }
    }

    void endTag() {
        report_ += isInTag_ ? ">" : "";
        isInTag_ = false;
    }
    void open(std::string_view name) {
        endTag();
        report_.append("<").append(name);
        open_.emplace_back(name);
        isInTag_ = true;
    }
    void close(bool isAllowed = true) {
        if (!isAllowed) {
            return;
        }
        if (isInTag_ && open_.size() % 2 == 0) {
            report_ += "/>";
            isInTag_ = false;
        } else {
            endTag();
            report_.append("</").append(open_.back()).append(">");
        }
        open_.pop_back();
    }
    void attribute(std::string_view name, std::string_view value) {
        if (isInTag_) {
            report_.append("\n   ").append(name).append("=\"");
            report_.append(value).append("\"");
        }
    }
    void text(std::string_view text) {
        endTag();
        report_ += text;
    }

    std::string report_;
    std::vector<std::string> open_;
    bool isInTag_ = false;
};

/// A byte taken away, put in, or changed, or the report cut off.
void spoil(std::string& report, FuzzInput& input, unsigned faults) {
    for (; faults > 0 && !report.empty(); --faults) {
        const std::size_t place = (input.byte() * 256 + input.byte()) % report.size();
        const unsigned what = input.byte();
        const auto byte = static_cast<char>(input.byte());
        switch (what % 5) {
        case 0: report.erase(place, 1); break;
        case 1: report.insert(place, 1, byte); break;
        case 2: report[place] = byte; break;
        case 3: report.insert(place, one(others, what / 5)); break;
        default: report.resize(place); break;
        }
    }
}

} // namespace

std::string madeReport(FuzzInput input) {
    const unsigned way = input.byte();
    switch (way % 4) {
    case 0: return std::string(input.rest());
    case 1: return fragments(input);
    default: {
        FuzzInput faults = input;
        for (int i = 0; i < 8; ++i) {
            input.byte();
        }
        std::string report = Maker().make(input, mostMade);
        spoil(report, faults, way / 4 % 3);
        return report;
    }
    }
}

} // namespace quen::fuzz
