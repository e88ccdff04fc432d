#include "Foundation/XMLReport.h"
#include "Tests/Foundation/XMLReading.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {
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

/// What is declared inside the report counts, whatever else may be declared outside.
TEST(XMLStrictnessTest, TakesDeclarationsBesideOthersOutside) {
    const struct {
        std::string declarations;
        std::string record;
        std::string expected;
    } cases[] = {
        {"<!ENTITY in 'b'>", "<e a='1&in;2'>&in;</e>", "1b2|b"},
        {"<!ENTITY ü 'b'>", "<e a='&lt;&#65;&ü;'>&ü;</e>", "<Ab|b"},
        {"<!ENTITY a '&b;'><!ENTITY b '&#38;amp;&#38;#65;'>", "<e a='&a;&a;'/>", "&A&A|"},
        {"<!ENTITY in \"c<x a='&#38;lt;'/><![CDATA[&outside;]]>\">", "<e>&in;</e>", "-|c&outside;"},
        {"<!ENTITY in 'b'>", "<e a='1'><![CDATA[&outside;]]><!-- &outside; --></e>", "1|&outside;"},
        {"<!ATTLIST e a CDATA 'd'>", "<e/>", "d|"},
        {"<!ENTITY in 'b'><!ATTLIST e a CDATA '&lt;&in;'>", "<e/>", "<b|"},
        {"<!ENTITY ü 'b'><!ATTLIST e a CDATA '&ü;'>", "<e/>", "b|"},
        {"<!ATTLIST e a CDATA '&outside;'>", "<e a='1'/>", "1|"},
        {"<!ATTLIST f a CDATA '&outside;'>", "<e a='1'/>", "1|"},
    };
    const Description describe = [](const XMLElement& record) {
        return std::string(record.attribute("a").value_or("-")) + "|" + textOf(record);
    };
    for (const auto& each : cases) {
        const std::string report = "<!DOCTYPE r SYSTEM 'nowhere.dtd' [" + each.declarations +
                                   "]><r>" + each.record + "</r>";
        const Reading expected{{"0 " + each.expected}, ""};
        EXPECT_EQ(reading({"e"}, describe, {report}), expected) << report;
        EXPECT_EQ(reading({"e"}, describe, inPieces(report, 1)), expected) << report;
        for (const bool bigEndian : {false, true}) {
            const std::string wide = inUTF16(report, bigEndian);
            EXPECT_EQ(reading({"e"}, describe, {wide}), expected) << report;
            EXPECT_EQ(reading({"e"}, describe, inPieces(wide, 1)), expected) << report;
        }
    }
}

// The bytes of another name in this encoding are those of the declared one in UTF-8.
TEST(XMLStrictnessTest, ComparesNamesOfEntitiesInEveryEncoding) {
    const std::string head = "<?xml version='1.0' encoding='ISO-8859-1'?>"
                             "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY \xea 'b'>";
    EXPECT_EQ(errorOf(head + "<!ATTLIST e a CDATA '&\xea;'>]><r c='&\xea;'><e/></r>"), "");
    EXPECT_NE(errorOf(head + "<!ATTLIST e a CDATA '&\xc3\xaa;'>]><r><e/></r>").find("Code=11 "),
              std::string::npos);
    EXPECT_NE(errorOf(head + "]><r c='&\xc3\xaa;'><e/></r>").find("Code=11 "), std::string::npos);
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
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY in '&outside;'>]><r a='&in;'/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY in '&mid;'><!ENTITY mid '&outside;'>]>"
        "<r a='&in;'/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY % p ''>%p;<!ENTITY late 'b'>]><r a='&late;'/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ATTLIST r a CDATA '&outside;'>]><r/>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ENTITY in '&outside;'><!ATTLIST e a CDATA '&in;'>]>"
        "<r><e/></r>",
        "<!DOCTYPE r SYSTEM 'nowhere.dtd' [<!ATTLIST e a CDATA '&late;'><!ENTITY late 'b'>]>"
        "<r><e/></r>",
    };
    for (const std::string_view report : reports) {
        EXPECT_NE(errorOf(report).find("Code=11 \"The report is not well-formed XML: undefined "
                                       "entity, at line 1, column "),
                  std::string::npos)
            << report << errorOf(report);
    }
}

/// Whatever the engine has seen of the junk when it calls it so.
TEST(XMLStrictnessTest, SaysTheSameOfJunkBehindTheRootHoweverItArrives) {
    const struct {
        std::string_view tail;
        int line;
        int column;
        int byte;
    } cases[] = {
        {"text", 1, 5, 4},
        {"te&xt", 1, 5, 4},
        {"te<", 1, 5, 4},
        {"\n text\xff", 2, 2, 6},
        {"te\xc3", 1, 5, 4},
        {"'open", 1, 5, 4},
        {"]]", 1, 5, 4},
        {"\x01", 1, 5, 4},
        {"&", 1, 5, 4},
        {"<r/>", 1, 5, 4},
        {"\r\nx", 2, 1, 6},
        {"\r\r\n\n x", 4, 2, 9},
        {"\r\n<r/>", 2, 1, 6},
        {"<!--ü\n-->xy&", 2, 4, 14},
        {"<?pi\n?> 'x'&", 2, 4, 12},
        {"\n\n<!--x-->\nü\xff", 4, 1, 15},
        {"x\n'\n&", 1, 5, 4},
    };
    for (const auto& each : cases) {
        const std::string report = "<r/>" + std::string(each.tail);
        const std::string expected = description(
            9, "The report is not well-formed XML: junk after document element, at line " +
                   std::to_string(each.line) + ", column " + std::to_string(each.column) +
                   " (byte " + std::to_string(each.byte) + ").");
        EXPECT_EQ(errorOf(report), expected) << report;
        for (std::size_t cut = 0; cut <= report.size(); ++cut) {
            const std::string_view text = report;
            EXPECT_EQ(reading({"e"}, textOf, {text.substr(0, cut), text.substr(cut)}).error,
                      expected)
                << report << " cut at " << cut;
        }
    }
    EXPECT_EQ(errorOf(inUTF16("<r/>\nte&xt", true)),
              description(9, "The report is not well-formed XML: junk after document element, at "
                             "line 2, column 1 (byte 12)."));
}

/// Bytes that would be a bracket in another encoding.
TEST(XMLStrictnessTest, KnowsJunkBehindTheRootByItsEncoding) {
    const std::string reports[] = {std::string("<r/>\0<x&", 8), inUTF16("<r/>ļ&", false),
                                   inUTF16("<r/>ļ&", true)};
    for (const std::string& report : reports) {
        EXPECT_NE(errorOf(report).find("Code=9 "), std::string::npos) << errorOf(report);
    }
}

/// A comment or an instruction that goes wrong there is not junk.
TEST(XMLStrictnessTest, KnowsFaultyMarkupBehindTheRoot) {
    const struct {
        std::string_view report;
        int code;
    } cases[] = {
        {"<r/><", 5}, {"<r/>\n<!-- -- -->", 4}, {"<r/><!--", 5}, {"<r/><?p", 5}, {"<r/><?1?>", 4}};
    EXPECT_NE(errorOf("<r/>\r\n<!-- \r\n -- -->").find("at line 3, column 4 "), std::string::npos);
    for (const auto& each : cases) {
        EXPECT_NE(errorOf(each.report).find("Code=" + std::to_string(each.code) + " "),
                  std::string::npos)
            << each.report << errorOf(each.report);
    }
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
} // namespace quen::test
