#include "Foundation/XMLEngines.h"
#include "Foundation/XMLReport.h"
#include "Foundation/XMLTree.h"
#include "Tests/Foundation/CapturedReports.h"
#include "Tests/Foundation/XMLReading.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <string>

namespace quen::test {
namespace {

/// Sets which engines the readers of a scope use, and then what was set before.
class Forced {
public:
    explicit Forced(bool expatAlone) : before_(XMLEngines::expatAlone.exchange(expatAlone)) {}
    Forced(const Forced&) = delete;
    Forced& operator=(const Forced&) = delete;
    ~Forced() { XMLEngines::expatAlone = before_; }

private:
    bool before_;
};

std::string allOf(const XMLElement& record) {
    std::string text;
    XMLTree::of(record).describe(text);
    return text;
}

Reading readingBy(bool expatAlone, Path path, const Pieces& pieces) {
    const Forced forced(expatAlone);
    const auto read = [&](XMLReportReader& reader) {
        for (const std::string_view piece : pieces) {
            reader.read(piece);
        }
        return reader.finish();
    };
    return test::readingBy(read, path, allOf);
}

Reading wholeBy(bool expatAlone, Path path, std::string_view report) {
    const Forced forced(expatAlone);
    return test::readingBy([&](XMLReportReader& reader) { return reader.readAll(report); }, path,
                           allOf);
}

/// Whole, byte by byte, and cut in two anywhere, both ways leave what the engine alone leaves.
void expectSame(Path path, std::string_view report) {
    const Reading expected = wholeBy(true, path, report);
    EXPECT_EQ(wholeBy(false, path, report), expected) << report;
    EXPECT_EQ(readingBy(false, path, inPieces(report, 1)), expected) << report;
    for (std::size_t cut = 0; cut <= report.size(); ++cut) {
        ASSERT_EQ(readingBy(false, path, {report.substr(0, cut), report.substr(cut)}), expected)
            << report << " cut at " << cut;
    }
}

std::size_t enginesUsed(Path path, const Pieces& pieces) {
    const std::size_t before = XMLEngines::expatCount;
    EXPECT_EQ(readingBy(false, path, pieces).error, "");
    return XMLEngines::expatCount - before;
}

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// What is read without the engine

TEST(XMLEnginesTest, PlainReportsNeedNoEngine) {
    const std::string reports[] = {
        declaration + "<log>\n<e\n   a=\"1\"\n   b=\"2\">\n<x>t</x>\n</e>\n</log>\n",
        "<r/>",
        "\n<r>\n</r>\n\t ",
        "<r><e a=\"&lt;&#10;&#x1F600;ü€😀>'\"/></r>",
        "<r><e>&lt;&gt;&amp;&quot;&apos;&#13;\n\t]]x]>ü€😀\x7f</e></r>",
        "<r><!-- a - b --><e><!--ü--></e></r>",
        "<r><e ></e\n></r>",
        "<r>text&amp;]<e/>more</r>",
    };
    const std::size_t needed[] = {0, 0, 0, 0, 0, 0, 1, 0};
    for (std::size_t i = 0; i < std::size(reports); ++i) {
        EXPECT_EQ(enginesUsed({"e"}, {reports[i]}), needed[i]) << reports[i];
        EXPECT_EQ(enginesUsed({"e"}, inPieces(reports[i], 1)), needed[i]) << reports[i];
        expectSame({"e"}, reports[i]);
    }
}

TEST(XMLEnginesTest, CapturedReportsNeedNoEngine) {
    EXPECT_EQ(enginesUsed({"target", "entry"}, {capturedStatus}), 0U);
    EXPECT_EQ(enginesUsed({"target", "entry"}, inPieces(capturedStatus, 3)), 0U);
    EXPECT_EQ(enginesUsed({"logentry"}, {capturedLog}), 0U);
    EXPECT_EQ(enginesUsed({"logentry"}, inPieces(capturedLog, 3)), 0U);
}

/// Every report of the client's that there is, whole and ended at every byte.
TEST(XMLEnginesTest, ReadsEveryCapturedReportAsTheEngineDoes) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(QUEN_TEST_REPORTS)) {
        if (entry.path().extension() != ".xml") {
            continue;
        }
        ++count;
        std::ifstream file(entry.path());
        const std::string report{std::istreambuf_iterator<char>(file), {}};
        const std::string_view text = report;
        for (const Path& path :
             {Path{"target", "entry"}, Path{"entry"}, Path{"logentry"}, Path{"paths", "path"},
              Path{"list", "entry"}, Path{"target", "property"}}) {
            EXPECT_EQ(wholeBy(false, path, text), wholeBy(true, path, text)) << entry.path();
        }
        for (std::size_t end = 0; end < report.size(); ++end) {
            const std::string_view early = text.substr(0, end);
            const Reading expected = wholeBy(true, {"target", "entry"}, early);
            ASSERT_EQ(wholeBy(false, {"target", "entry"}, early), expected) << entry.path();
            const Pieces pieces{early.substr(0, end / 2), early.substr(end / 2)};
            ASSERT_EQ(readingBy(false, {"target", "entry"}, pieces), expected) << entry.path();
        }
    }
    EXPECT_GE(count, 20U);
}

// What is not

TEST(XMLEnginesTest, WhatIsNotPlainIsReadAsTheEngineDoes) {
    const std::string_view insides[] = {
        "<e a='1'/>",
        "<e a = \"1\"/>",
        "<e a=\"1\t2\n3\r\n4\"/>",
        "<e>a\r\nb\rc</e>",
        "<e><![CDATA[<x>&amp;]]></e>",
        "<e>a<?p d?>b</e>",
        "<?p d?><e/>",
        "<ü/>",
        "<x:e/><e x:a=\"1\" xmlns:x=\"y\"/>",
        "<e></e >",
        "<e a=\"1\" a=\"2\"/>",
        "<e a=\"1\"b=\"2\"/>",
        "<e a=1/>",
        "<e a/>",
        "<e a=\"<\"/>",
        "<e a=\"&nbsp;\"/>",
        "<e a=\"&#0;\"/>",
        "<e a=\"\x01\"/>",
        "<e>&nbsp;</e>",
        "<e>& </e>",
        "<e>&lt</e>",
        "<e>&#xD800;</e>",
        "<e>&#xFFFE;</e>",
        "<e>&#1114112;</e>",
        "<e>&#;</e>",
        "<e>&#x;</e>",
        "<e>&#00000000000065;</e>",
        "<e>]]></e>",
        "]]]>",
        "<e>\x01</e>",
        "<e>\xff</e>",
        "<e>\xc3</e>",
        "<e>\xc0\x80</e>",
        "<e>\xe0\x9f\xbf</e>",
        "<e>\xed\xa0\x80</e>",
        "<e>\xef\xbf\xbe</e>",
        "<e>\xf0\x8f\xbf\xbf</e>",
        "<e>\xf4\x90\x80\x80</e>",
        "<e></f>",
        "<e></ee>",
        "<e><x></e></x>",
        "</s>",
        "<e",
        "<e a=\"",
        "<e>",
        "<!-- -- -->",
        "<!-- \x01 -->",
        "<!--->-->",
        "<!DOCTYPE r>",
        "<1/>",
        "< e/>",
        "<e/ >",
        "<e//>",
    };
    for (const std::string_view inside : insides) {
        for (const std::string_view path : {"e", "x"}) {
            const std::string report = declaration + "<r>ü\n <e>1</e>\n <s>ü" +
                                       std::string(inside) + "</s>\n<e>2</e></r>\n";
            expectSame({path}, report);
            expectSame({"s", path}, report);
        }
    }
}

TEST(XMLEnginesTest, WhatStandsAroundTheRootIsReadAsTheEngineDoes) {
    const std::string reports[] = {
        "",
        " ",
        "\n\n",
        "<",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"",
        declaration,
        " " + declaration + "<r/>",
        declaration + declaration + "<r/>",
        "<?xml version=\"1.0\"?><r/>",
        "<?xml version=\"1.1\"?><r/>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r><e>\xfc</e></r>",
        "<?xml version=\"1.0\" encoding=\"UTF-16\"?><r/>",
        "\xef\xbb\xbf<r><e/></r>",
        "<!-- c --><r/>",
        "<!DOCTYPE r [<!ENTITY a \"b\">]><r><e>&a;</e></r>",
        "text<r/>",
        "<r></r>\n<!-- c -->\n",
        "<r></r>\n<?p d?>\n",
        "<r/><r/>",
        "<r/>\n text&",
        "<r/>\n<",
        "<r/>\n<!-- -- -->",
        "<r/>\r\n x",
        "<r/>\n\xff",
        "<r>\n <e/>\n",
        "<r>\n <s>\n  <e>text",
        std::string("\0<\0r\0/\0>", 8),
    };
    for (const std::string& report : reports) {
        expectSame({"e"}, report);
        expectSame({"s", "e"}, report);
    }
}

/// In front and behind stands enough for the wide instructions.
TEST(XMLEnginesTest, EveryByteIsReadAsTheEngineDoes) {
    const std::string around(20, 'x');
    for (int byte = 0; byte < 256; ++byte) {
        const std::string middle = around + static_cast<char>(byte) + around;
        const std::string reports[] = {
            "<r><e>" + middle + "</e></r>",
            "<r><e a=\"" + middle + "\"/></r>",
            "<r>" + middle + "<e/></r>",
            "<r><!--" + middle + "--><e/></r>",
            "<r><e" + middle + "/></r>",
            "<r><e a" + middle + "=\"\"/></r>",
            "<r><e a=\"&lt;" + middle + "\"/></r>",
            "<r><e a=\"\"" + middle.substr(20, 1) + "/></r>",
            "<r></r>" + middle.substr(20, 1),
        };
        for (const std::string& report : reports) {
            const Reading expected = wholeBy(true, {"e"}, report);
            EXPECT_EQ(wholeBy(false, {"e"}, report), expected) << report;
            EXPECT_EQ(readingBy(false, {"e"}, inPieces(report, 1)), expected) << report;
        }
    }
}

/// Many attributes, long steps, and long names in front of a fault.
TEST(XMLEnginesTest, WhatIsLargeIsReadAsTheEngineDoes) {
    std::string many = "<r><e";
    for (int i = 0; i < 200; ++i) {
        many += " a" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
    }
    const std::string name(3000, 'n');
    const std::string text(5000, 'x');
    const std::string reports[] = {
        many + "/></r>",
        many + " a7=\"\"/></r>",
        "<r><" + name + "><" + name + "><e>" + text + "</e>\n&</r>",
        "<r><e a=\"" + text + "&lt;" + text + "\">" + text + "&amp;" + text + "</e>" + text +
            "\xff</r>",
    };
    for (const std::string& report : reports) {
        const Reading expected = wholeBy(true, {"e"}, report);
        EXPECT_TRUE(wholeBy(false, {"e"}, report) == expected);
        for (const std::size_t size : {1U, 7U, 255U, 256U, 257U, 1023U, 1024U, 1025U, 4096U}) {
            EXPECT_TRUE(readingBy(false, {"e"}, inPieces(report, size)) == expected) << size;
        }
    }
}

TEST(XMLEnginesTest, AHandlerThatGivesUpLeavesTheSameError) {
    const std::string_view reports[] = {
        "<r>\n <s><e>1</e>\n<e>2</e></s></r>",       "<r>\n <s><e>1</e>\n<e/></s></r>",
        "<r>\n <s><e>1</e>ü <e a='2'>2</e></s></r>", "<r>\n <s><e>1</e></s>\n <s>ü</s></r>",
        "<r>\n <s><e>1</e></s>\n <s a=\"1\"/></r>",  "<r>\n <s><e>1</e></s>\n <s a='1'/></r>",
    };
    for (const std::string_view report : reports) {
        const auto errorBy = [&](bool expatAlone, std::size_t size) {
            const Forced forced(expatAlone);
            std::size_t count = 0;
            const auto giveUp = [&](const XMLElement&, std::size_t) {
                if (++count == 3) {
                    throw std::runtime_error("enough");
                }
            };
            XMLReportReader reader({"s", "e"}, giveUp, giveUp);
            try {
                for (const std::string_view piece : inPieces(report, size)) {
                    reader.read(piece);
                }
            } catch (const std::runtime_error&) {
                return reader.finish().description().str();
            }
            return std::string("nothing was thrown");
        };
        const std::string expected = errorBy(true, report.size());
        EXPECT_NE(expected, "nothing was thrown");
        EXPECT_EQ(errorBy(false, report.size()), expected) << report;
        EXPECT_EQ(errorBy(false, 1), expected) << report;
    }
}

} // namespace
} // namespace quen::test
