#include "Foundation/XMLReport.h"
#include "Tests/Foundation/XMLReading.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace quen {
namespace {

std::string textOf(const XMLElement& record) {
    return std::string(record.text());
}

std::string errorOf(std::string_view report) {
    const Reading whole = reading({"e"}, textOf, {report});
    EXPECT_EQ(reading({"e"}, textOf, inPieces(report, 1)), whole) << report;
    return whole.error;
}

std::string description(int code, const std::string& text) {
    return "Error Domain=XMLParserErrorDomain Code=" + std::to_string(code) + " \"" + text + "\"";
}

TEST(XMLStrictnessTest, SaysWhatIsWrongAndWhere) {
    const struct {
        std::string_view report;
        int code;
        std::string text;
    } cases[] = {
        {"", 3, "The report is empty."},
        {" \n", 3,
         "The report is not well-formed XML: no element found, at line 2, column 1 (byte 2)."},
        {"<r>\n <e>\n  </f></r>", 7,
         "The report is not well-formed XML: mismatched tag, at line 3, column 5 (byte 13)."},
        {"<r><e/>", 3,
         "The report is not well-formed XML: no element found, at line 1, column 8 (byte 7)."},
        {"<?xml version='1.0' encoding='EBCDIC'?><r/>", 18,
         "The report cannot be read as XML: unknown encoding, at line 1, column 31 (byte 30)."},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(errorOf(each.report), description(each.code, each.text)) << each.report;
    }
}

TEST(XMLStrictnessTest, RefusesWhatIsNotWellFormed) {
    const std::string reports[] = {
        "text",
        "<",
        "<r",
        "<r>",
        "<r></R>",
        "</r>",
        "<r/><r/>",
        "<r/>text",
        "text<r/>",
        " <?xml version='1.0'?><r/>",
        "<r a='1' a='2'/>",
        "<r><e a='1' b='2' a='1'/></r>",
        "<r a=1/>",
        "<r a/>",
        "<r a='<'/>",
        "<r a='1'b='2'/>",
        "<r>&</r>",
        "<r>& </r>",
        "<r>&lt</r>",
        "<r>&nbsp;</r>",
        "<r a='&nbsp;'/>",
        "<r>&#0;</r>",
        "<r>&#x110000;</r>",
        "<r>]]></r>",
        "<r><!-- -- --></r>",
        "<r><![CDATA[</r>",
        "<r>\xff</r>",
        "<r>\xc3</r>",
        "<r>\xed\xa0\x80</r>",
        "<r>\x01</r>",
        std::string("<r>\0</r>", 8),
        "<r><?xml version='1.0'?></r>",
        "<1/>",
        "<r xmlns:a='b'><a:/></r",
        "<!DOCTYPE r><!DOCTYPE r><r/>",
        "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>",
        "<!DOCTYPE r [<!ENTITY a '<x>'>]><r>&a;</r>",
    };
    for (const std::string& report : reports) {
        EXPECT_NE(errorOf(report), "") << report;
    }
}

TEST(XMLStrictnessTest, TakesWhatIsWellFormed) {
    const std::string_view reports[] = {
        "<r/>",
        "<r/>\n",
        "<?xml version='1.0'?><!-- --><r/><!-- --><?pi?>\n",
        "<r a='1' b='1'/>",
        "<r a='>\"' b=\"'\"/>",
        "<ü/>",
        "<!DOCTYPE r><r/>",
        "<!DOCTYPE r [<!ENTITY a 'b'>]><r c='&a;'>&a;</r>",
        "<!DOCTYPE r SYSTEM 'file:///nowhere.dtd'><r a='&lt;&#65;&amp;'>&gt;&apos;&quot;</r>",
        "<!DOCTYPE r PUBLIC '-//X//Y' 'http://localhost:1/nowhere.dtd'><r/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ATTLIST r a CDATA #IMPLIED>]><r/>",
        "<!DOCTYPE r [<!ATTLIST r a CDATA '&lt;'>]><r/>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM 'nowhere.ent'>%p;]><r/>",
        "<!DOCTYPE r [<!ENTITY x SYSTEM 'file:///etc/hostname'>]><r/>",
    };
    for (const std::string_view report : reports) {
        EXPECT_EQ(errorOf(report), "") << report;
    }
}

/// A declaration outside the report is never seen, so an entity that would need one is undefined.
TEST(XMLStrictnessTest, RefusesEntitiesThatAreDeclaredOutside) {
    const std::string_view reports[] = {
        "<!DOCTYPE r SYSTEM 'nowhere.dtd'><r>&outside;</r>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd'><r><e>&outside;</e></r>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd'><r a='&outside;'/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd'><r><e a='&lt;&outside;'></e></r>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY in \"<x a='&outside;'/>\">]><r>&in;</r>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM 'nowhere.ent'>%p;]><r>&outside;</r>",
        "<!DOCTYPE r [<!ENTITY % p SYSTEM 'nowhere.ent'>%p;]><r a='&outside;'/>",
        "<?xml version='1.0' standalone='yes'?><!DOCTYPE r SYSTEM 'nowhere.dtd'><r a='&outside;'/>",
    };
    for (const std::string_view report : reports) {
        EXPECT_NE(errorOf(report).find("Code=11 \"The report is not well-formed XML: undefined "
                                       "entity, at line 1, column "),
                  std::string::npos)
            << report << errorOf(report);
    }
}

TEST(XMLStrictnessTest, RefusesDefaultsBesideDeclarationsOutside) {
    EXPECT_NE(errorOf("<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ATTLIST r a CDATA '&outside;'>]><r/>")
                  .find("Code=22 \"The report cannot be read as XML: document is not standalone"),
              std::string::npos);
}

TEST(XMLStrictnessTest, NeverLooksOutsideTheReport) {
    EXPECT_NE(errorOf("<!DOCTYPE r [<!ENTITY x SYSTEM 'file:///etc/hostname'>]><r>&x;</r>")
                  .find("Code=21 \"The report cannot be read as XML: "),
              std::string::npos);
    EXPECT_NE(errorOf("<!DOCTYPE r [<!ENTITY x SYSTEM 'file:///etc/hostname'>]><r a='&x;'/>"), "");
}

TEST(XMLStrictnessTest, RefusesAnEntityBombQuickly) {
    std::string report = "<!DOCTYPE r [<!ENTITY e0 'ha'>";
    for (int level = 1; level < 12; ++level) {
        report += "<!ENTITY e" + std::to_string(level) + " '";
        for (int i = 0; i < 10; ++i) {
            report += "&e" + std::to_string(level - 1) + ";";
        }
        report += "'>";
    }
    report += "]><r><e>&e11;</e></r>";
    const auto start = std::chrono::steady_clock::now();
    const Reading bomb = reading({"e"}, textOf, {report});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(bomb.records, std::vector<std::string>{});
    EXPECT_NE(bomb.error.find("Code=43 \"The report cannot be read as XML: "), std::string::npos)
        << bomb.error;
}

TEST(XMLStrictnessTest, KeepsTheFirstErrorAndIgnoresTheRest) {
    std::vector<std::string> seen;
    XMLReportReader reader(
        {"e"}, [&](const XMLElement& record, std::size_t) { seen.push_back(textOf(record)); });
    EXPECT_TRUE(reader.read("<r><e>1</e>"));
    EXPECT_FALSE(reader.read("<e>2</f><e>3</e>"));
    EXPECT_FALSE(reader.read("<e>4</e></r>"));
    EXPECT_EQ(reader.finish().code(), 7);
    EXPECT_EQ(seen, std::vector<std::string>{"1"});
}

} // namespace
} // namespace quen
