#include "Foundation/XMLReport.h"
#include "Tests/Foundation/CapturedReports.h"
#include "Tests/Foundation/XMLReading.h"

#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <string>

namespace quen::test {
namespace {

using Records = std::vector<std::string>;

std::string orNothing(std::optional<std::string_view> text) {
    return text ? std::string(*text) : "-";
}

std::string textOf(const XMLElement& record) {
    return std::string(record.text());
}

std::string pathOf(const XMLElement& record) {
    return orNothing(record.attribute("path"));
}

std::string statusOf(const XMLElement& entry) {
    const XMLElement state = *entry.onlyChild("wc-status");
    const auto commit = state.onlyChild("commit");
    std::string status = pathOf(entry) + ": " + orNothing(state.attribute("item")) + " " +
                         orNothing(state.attribute("revision"));
    if (commit) {
        status += " by " + std::string(commit->onlyChild("author")->text()) + " at " +
                  std::string(commit->onlyChild("date")->text());
    }
    return status;
}

std::string logEntryOf(const XMLElement& entry) {
    std::string text =
        orNothing(entry.attribute("revision")) + ": " + std::string(entry.onlyChild("msg")->text());
    if (const auto paths = entry.onlyChild("paths")) {
        for (const XMLElement path : paths->children("path")) {
            text += "; " + orNothing(path.attribute("action")) + " " + std::string(path.text()) +
                    " from " + orNothing(path.attribute("copyfrom-path"));
        }
    }
    return text;
}

Reading whole(Path path, Description describe, std::string_view report) {
    return reading(path, describe, {report});
}

// Captured reports, however they arrive

struct Captured {
    const char* name;
    Path path;
    Description describe;
    std::string_view report;
    Records expected;

    friend void PrintTo(const Captured& captured, std::ostream* out) { *out << captured.name; }
};

const Path statusPath = {"target", "entry"};
const Path logPath = {"logentry"};

class CapturedReportTest : public testing::TestWithParam<Captured> {
protected:
    Reading read(const Pieces& pieces) const {
        return reading(GetParam().path, GetParam().describe, pieces);
    }
    std::string_view report() const { return GetParam().report; }
};

INSTANTIATE_TEST_SUITE_P(
    Reports, CapturedReportTest,
    testing::Values(
        Captured{"status",
                 statusPath,
                 statusOf,
                 capturedStatus,
                 {"0 a b.c: modified 1 by sally at 2024-03-01T12:34:56.218109Z",
                  "0 <ünknown>: unversioned -", "1 elsewhere/f: missing -"}},
        Captured{"log",
                 logPath,
                 logEntryOf,
                 capturedLog,
                 {"0 2: first <&> line\nzweite Zeile: äöü; M /a b.c from -; A /d from /trunk",
                  "0 1: "}}));

TEST_P(CapturedReportTest, IsReadWhole) {
    EXPECT_EQ(read({report()}), (Reading{GetParam().expected, ""}));
}

TEST_P(CapturedReportTest, IsReadInPiecesOfEverySize) {
    for (const std::size_t size : {1U, 2U, 3U, 7U, 64U, 100U}) {
        EXPECT_EQ(read(inPieces(report(), size)), (Reading{GetParam().expected, ""})) << size;
    }
}

TEST_P(CapturedReportTest, IsReadCutInTwoAtEveryByte) {
    for (std::size_t cut = 0; cut <= report().size(); ++cut) {
        ASSERT_EQ(read({report().substr(0, cut), report().substr(cut)}),
                  (Reading{GetParam().expected, ""}))
            << "cut at " << cut;
    }
}

TEST_P(CapturedReportTest, FailsCleanlyWhenItEndsEarly) {
    const std::size_t lastBracket = report().rfind('>');
    for (std::size_t size = 0; size <= lastBracket; ++size) {
        const Reading early = read({report().substr(0, size)});
        ASSERT_NE(early.error, "") << "after " << size << " bytes";
        ASSERT_EQ(early, read(inPieces(report().substr(0, size), 1))) << size;
        ASSERT_LE(early.records.size(), GetParam().expected.size());
        ASSERT_TRUE(
            std::equal(early.records.begin(), early.records.end(), GetParam().expected.begin()));
    }
    EXPECT_EQ(read({report().substr(0, lastBracket + 1)}).error, "");
}

// Which elements are records

TEST(XMLReportTest, FindsRecordsByTheirPath) {
    const struct {
        Path path;
        std::string_view report;
        Records expected;
    } cases[] = {
        {{"e"}, "<r><e>1</e><f>2</f><e>3</e></r>", {"0 1", "0 3"}},
        {{"e"}, "<e><e>1</e></e>", {"0 1"}},
        {{"e"}, "<r><f><e>1</e></f></r>", {}},
        {{"e"}, "<r><e>1<e>2</e></e></r>", {"0 12"}},
        {{"e"}, "<r><E>1</E><ee>2</ee></r>", {}},
        {{"e"}, "<r/>", {}},
        {{"e"}, "<e>1</e>", {}},
        {{"e"}, "<r><e/></r>", {"0 "}},
        {{"t", "e"}, "<r><t><e>1</e></t><t/><t><e>2</e><e>3</e></t></r>", {"0 1", "2 2", "2 3"}},
        {{"t", "e"}, "<r><u><e>1</e></u><t><e>2</e></t></r>", {"0 2"}},
        {{"t", "e"}, "<r><e>1</e><t><f><e>2</e></f><e>3</e></t></r>", {"0 3"}},
        {{"t", "e"}, "<r><t><t><e>1</e></t></t></r>", {}},
        {{"t", "e"}, "<r><u><t><e>1</e></t></u><t><e>2</e></t></r>", {"0 2"}},
        {{"t", "e"}, "<t><e>1</e><t><e>2</e></t></t>", {"0 2"}},
        {{"t", "e"}, "<r><t><e>1<t><e>2</e></t></e></t></r>", {"0 12"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(whole(each.path, textOf, each.report), (Reading{each.expected, ""}))
            << each.report;
    }
}

// Text

TEST(XMLReportTest, AnnouncesContainersOfSeveralNames) {
    std::vector<std::string> told;
    XMLReportReader reader(
        {"target|changelist", "entry|against"},
        [&](const XMLElement& record, std::size_t container) {
            told.push_back(std::to_string(container) + " " + std::string(record.name()) + " " +
                           textOf(record));
        },
        [&](const XMLElement& start, std::size_t container) {
            told.push_back(std::to_string(container) + " begins " + std::string(start.name()) +
                           " " + orNothing(start.attribute("name")) + textOf(start));
        });
    const Error error = reader.readAll("<r><target>no record<entry>a</entry><other/>"
                                       "<against>b</against></target>"
                                       "<target|changelist/>"
                                       "<changelist name='x'><entry>c</entry></changelist>"
                                       "<others><entry/></others><target/></r>");
    EXPECT_TRUE(error) << "a bar is not part of an element's name";
    EXPECT_EQ(told, (std::vector<std::string>{"0 begins target -", "0 entry a", "0 against b"}));
    told.clear();
    XMLReportReader second(
        {"target|changelist", "entry"},
        [&](const XMLElement& record, std::size_t container) {
            told.push_back(std::to_string(container) + " " + textOf(record));
        },
        [&](const XMLElement& start, std::size_t container) {
            told.push_back(std::to_string(container) + " begins " +
                           orNothing(start.attribute("name")));
        });
    EXPECT_FALSE(second.readAll("<r><target><entry>a</entry><entry>b</entry></target>"
                                "<others><entry/></others>"
                                "<changelist name='x'><entry>c</entry></changelist></r>"));
    EXPECT_EQ(told, (std::vector<std::string>{"0 begins -", "0 a", "0 b", "1 begins x", "1 c"}));
}

TEST(XMLReportTest, GathersTheTextOfAnElement) {
    const struct {
        std::string_view element;
        std::string_view text;
    } cases[] = {
        {"<e></e>", ""},
        {"<e/>", ""},
        {"<e> a\n b </e>", " a\n b "},
        {"<e>a\r\nb\rc</e>", "a\nb\nc"},
        {"<e>a<x>b<y>c</y></x>d<x/>e</e>", "abcde"},
        {"<e>&lt;&gt;&amp;&apos;&quot;</e>", "<>&'\""},
        {"<e>&#65;&#x42;&#xfc;&#x1F600;</e>", "ABü😀"},
        {"<e>a<![CDATA[<x>&amp;]]]]><![CDATA[>]]>b</e>", "a<x>&amp;]]>b"},
        {"<e>a<!-- b --><?c d?>e</e>", "ae"},
        {"<e>&mine;</e>", "my own"},
        {"<e>&nested;</e>", "<my own>"},
    };
    for (const auto& each : cases) {
        const std::string report =
            R"(<!DOCTYPE r [<!ENTITY mine "my own"><!ENTITY nested "&#38;lt;<x>&mine;</x>>">]><r>)" +
            std::string(each.element) + "</r>";
        EXPECT_EQ(whole({"e"}, textOf, report), (Reading{{"0 " + std::string(each.text)}, ""}));
        EXPECT_EQ(reading({"e"}, textOf, inPieces(report, 1)), whole({"e"}, textOf, report));
    }
}

TEST(XMLReportTest, GivesEachElementItsOwnText) {
    const Reading result = whole(
        {"e"},
        [](const XMLElement& record) {
            const XMLElement x = *record.onlyChild("x");
            return std::string(x.text()) + "|" + std::string(x.onlyChild("y")->text()) + "|" +
                   std::string(record.onlyChild("z")->text());
        },
        "<r><e>1<x>2<y>3</y>4</x>5<z>6</z>7</e></r>");
    EXPECT_EQ(result, (Reading{{"0 234|3|6"}, ""}));
}

// Attributes and children

TEST(XMLReportTest, FindsAttributesByName) {
    const Reading result = whole(
        {"e"},
        [](const XMLElement& record) {
            return orNothing(record.attribute("a")) + "," + orNothing(record.attribute("b")) + "," +
                   orNothing(record.attribute("ab")) + "," + orNothing(record.attribute("")) + "," +
                   orNothing(record.onlyChild("x")->attribute("a"));
        },
        "<r><e b='' a='&lt;1&#10;2\t3&#x9;'><x ab='4'/></e></r>");
    EXPECT_EQ(result, (Reading{{"0 <1\n2 3\t,,-,-,-"}, ""}));
}

TEST(XMLReportTest, FindsDirectChildrenByName) {
    const auto describe = [](const XMLElement& record) {
        std::string text(record.name());
        for (const XMLElement child : record.children("x")) {
            text += " " + std::string(child.name()) + std::string(child.text());
        }
        const auto first = record.firstChild("x");
        const auto only = record.onlyChild("x");
        return text + " first " + (first ? std::string(first->text()) : "-") + " only " +
               (only ? std::string(only->text()) : "-");
    };
    const struct {
        std::string_view element;
        std::string_view expected;
    } cases[] = {
        {"<e/>", "e first - only -"},
        {"<e>text</e>", "e first - only -"},
        {"<e><x>1</x></e>", "e x1 first 1 only 1"},
        {"<e><y/><x>1</x><y/></e>", "e x1 first 1 only 1"},
        {"<e><x>1</x><x>2</x></e>", "e x1 x2 first 1 only -"},
        {"<e><x>1</x><y><x>2</x></y></e>", "e x1 first 1 only 1"},
        {"<e><y><x>1</x></y></e>", "e first - only -"},
        {"<e><X>1</X><xx>2</xx></e>", "e first - only -"},
        {"<e><x>1<x>2</x></x><z/><x>3</x><x/></e>", "e x12 x3 x first 12 only -"},
    };
    for (const auto& each : cases) {
        // The next record must not become anybody's child.
        const std::string report = "<r>" + std::string(each.element) + "<e><x>9</x></e></r>";
        EXPECT_EQ(whole({"e"}, describe, report),
                  (Reading{{"0 " + std::string(each.expected), "0 e x9 first 9 only 9"}, ""}));
    }
}

// Encodings

TEST(XMLReportTest, ReadsOtherEncodingsAsUTF8) {
    const std::string declared = "<?xml version='1.0' encoding='UTF-16'?>"
                                 "<r><e path='a&#xfc;'>b&#xfc;</e></r>";
    // Without a mark, and not even a bracket in front, the first two bytes alone tell.
    const std::string undeclared = " <r><e path='a&#xfc;'>b&#xfc;</e></r>";
    const std::string reports[] = {
        "<r><e path='aü'>bü</e></r>",
        "\xef\xbb\xbf<r><e path='aü'>bü</e></r>",
        "\xef\xbb\xbf<?xml version='1.0' encoding='utf-8'?><r><e path='aü'>bü</e></r>",
        "<?xml version='1.0' encoding='ISO-8859-1'?><r><e path='a\xfc'>b\xfc</e></r>",
        "<?xml version='1.0' encoding='US-ASCII'?><r><e path='a&#252;'>b&#252;</e></r>",
        inUTF16(declared, true),
        inUTF16(declared, false),
        inUTF16(undeclared, true).substr(2),
        inUTF16(undeclared, false).substr(2),
    };
    const Description describe = [](const XMLElement& record) {
        return pathOf(record) + " " + textOf(record);
    };
    for (const std::string& report : reports) {
        EXPECT_EQ(whole({"e"}, describe, report), (Reading{{"0 aü bü"}, ""})) << report;
        EXPECT_EQ(reading({"e"}, describe, inPieces(report, 1)), (Reading{{"0 aü bü"}, ""}));
    }
}

// Size

TEST(XMLReportTest, ReadsAHugeAttribute) {
    const std::string value(1'000'000, 'x');
    const std::string report = "<r><e path='" + value + "'>" + value + "</e></r>";
    const Description describe = [](const XMLElement& record) {
        return pathOf(record) + textOf(record);
    };
    const Reading expected{{"0 " + value + value}, ""};
    EXPECT_TRUE(whole({"e"}, describe, report) == expected);
    EXPECT_TRUE(reading({"e"}, describe, inPieces(report, 1000)) == expected);
}

std::string nested(std::size_t depth, const std::string& inside) {
    std::string report;
    for (std::size_t i = 0; i < depth; ++i) {
        report += "<x>";
    }
    report += inside;
    for (std::size_t i = 0; i < depth; ++i) {
        report += "</x>";
    }
    return report;
}

TEST(XMLReportTest, DoesNotRecurseOnDepth) {
    const std::string deep = nested(100'000, "bottom");
    EXPECT_EQ(whole({"e"}, textOf, "<r>" + deep + "<e>" + deep + "</e></r>"),
              (Reading{{"0 bottom"}, ""}));
}

TEST(XMLReportTest, ReadsManyRecordsInTheSameMemory) {
    constexpr std::size_t count = 60'000;
    std::string report = "<log>";
    for (std::size_t i = 0; i < count; ++i) {
        report += "<logentry revision='" + std::to_string(100'000 + i) + "'><msg>line</msg>\n" +
                  "<paths><path action='M'>/a</path></paths></logentry>";
    }
    report += "</log>";
    std::size_t seen = 0;
    std::set<const char*> places;
    XMLReportReader reader({"logentry"}, [&](const XMLElement& record, std::size_t) {
        ASSERT_EQ(record.attribute("revision"), std::to_string(100'000 + seen));
        places.insert(record.text().data());
        places.insert(record.attribute("revision")->data());
        ++seen;
    });
    EXPECT_TRUE(reader.read(report));
    EXPECT_TRUE(reader.finish().isNil());
    EXPECT_EQ(seen, count);
    // One place for text and one for attributes, perhaps moved a few times while the first grew.
    EXPECT_LE(places.size(), 4U);
}

// The handler's exceptions

TEST(XMLReportTest, LetsTheHandlersExceptionOut) {
    Records seen;
    XMLReportReader reader({"e"}, [&](const XMLElement& record, std::size_t) {
        seen.push_back(textOf(record));
        if (record.text() == "2") {
            throw std::runtime_error("enough");
        }
    });
    EXPECT_TRUE(reader.read("<r><e>1</e>"));
    try {
        reader.read("<e>2</e><e>3</e></r>");
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "enough");
    }
    EXPECT_FALSE(reader.read("<e>4</e></r>"));
    const Error error = reader.finish();
    EXPECT_EQ(error.domain(), XMLParserErrorDomain);
    EXPECT_NE(error.code(), 0);
    EXPECT_EQ(seen, (Records{"1", "2"}));
}

} // namespace
} // namespace quen::test
