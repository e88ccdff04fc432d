#include "Benchmarks/Reports/GeneratedReports.h"
#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Classes/SVNOperations/SVNLogOperation.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"

#include <gtest/gtest.h>
#include <libxml/xmlreader.h>
#include <map>
#include <memory>

namespace quen::test {
namespace {

/// What two readings of one report are compared by.
struct Reading {
    std::size_t count = 0;
    std::string first;
    std::string last;
    std::uint64_t checksum = 14695981039346656037U;

    void add(const std::string& record) {
        for (const char c : record) {
            checksum = (checksum ^ static_cast<unsigned char>(c)) * 1099511628211U;
        }
        (count == 0 ? first : last) = record;
        ++count;
    }
    friend bool operator==(const Reading&, const Reading&) = default;
    friend void PrintTo(const Reading& reading, std::ostream* out) {
        *out << reading.count << " records from {" << reading.first << "} to {" << reading.last
             << "}, checksum " << reading.checksum;
    }
};

std::string field(const std::string& name, const std::string& text) {
    return name + "=" + text + ";";
}

// The records of the operation

std::string textIn(const Dictionary& record, const String& key) {
    const Date* const date = record[key].date();
    return date == nullptr ? record[key].stringValue().str() : dateText(*date);
}

std::string filesIn(const Dictionary& record) {
    std::string text;
    const Dictionary* const files = record[QuenSourceControlOperationFilesKey].dictionary();
    for (const auto& file : files == nullptr ? Dictionary() : *files) {
        text += field(file.key.str(), file.value.stringValue().str());
    }
    return text;
}

Reading readingOf(const QuenSourceControlOperation& operation) {
    Reading reading;
    for (const Value& value : *operation.result().array()) {
        const Dictionary& record = *value.dictionary();
        reading.add(field("line", textIn(record, QuenSourceControlOperationLineNumberKey)) +
                    field("revision", textIn(record, QuenSourceControlOperationRevisionKey)) +
                    field("author", textIn(record, QuenSourceControlOperationAuthorKey)) +
                    field("date", textIn(record, QuenSourceControlOperationDateKey)) +
                    filesIn(record) +
                    field("message", textIn(record, QuenSourceControlOperationMessageKey)));
    }
    return reading;
}

// The same report read by another library

struct FreeReader {
    void operator()(xmlTextReader* reader) const noexcept { xmlFreeTextReader(reader); }
};

struct FreeText {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

std::string asText(xmlChar* text) {
    const std::unique_ptr<xmlChar, FreeText> owned(text);
    return owned == nullptr ? "" : reinterpret_cast<const char*>(owned.get());
}

class OtherReader {
public:
    explicit OtherReader(const std::string& report)
        : reader_(xmlReaderForMemory(report.data(), static_cast<int>(report.size()), nullptr,
                                     nullptr, XML_PARSE_HUGE)) {}

    Reading readRecords(const std::string& recordName) {
        Reading reading;
        while (xmlTextReaderRead(reader_.get()) == 1) {
            const int type = xmlTextReaderNodeType(reader_.get());
            const std::string name =
                reinterpret_cast<const char*>(xmlTextReaderConstName(reader_.get()));
            if (type == XML_READER_TYPE_ELEMENT) {
                begin(name, recordName);
            } else if (type == XML_READER_TYPE_END_ELEMENT && name == recordName) {
                reading.add(record());
            }
        }
        return reading;
    }

private:
    void begin(const std::string& name, const std::string& recordName) {
        if (name == recordName) {
            fields_.clear();
            files_.clear();
            order_.clear();
        }
        for (const char* attribute : {"revision", "line-number"}) {
            const std::string value = attributeText(attribute);
            if (!value.empty()) {
                fields_[attribute] = value;
            }
        }
        if (name == "author" || name == "date" || name == "msg") {
            fields_[name] = asText(xmlTextReaderReadString(reader_.get()));
        } else if (name == "path") {
            addFile(asText(xmlTextReaderReadString(reader_.get())), attributeText("action"));
        }
    }

    std::string attributeText(const char* name) const {
        return asText(
            xmlTextReaderGetAttribute(reader_.get(), reinterpret_cast<const xmlChar*>(name)));
    }

    void addFile(const std::string& path, const std::string& action) {
        static const std::map<std::string, std::string> values{
            {"M", "12"}, {"A", "1"}, {"D", "2"}, {"R", "8192"}};
        if (!files_.contains(path)) {
            order_.push_back(path);
        }
        files_[path] = values.at(action);
    }

    std::string record() {
        std::string text = field("line", fields_["line-number"]) +
                           field("revision", fields_["revision"]) +
                           field("author", fields_["author"]) + field("date", fields_["date"]);
        for (const std::string& path : order_) {
            text += field(path, files_[path]);
        }
        return text + field("message", fields_["msg"]);
    }

    std::unique_ptr<xmlTextReader, FreeReader> reader_;
    std::map<std::string, std::string> fields_;
    std::map<std::string, std::string> files_;
    std::vector<std::string> order_;
};

class LargeReports : public testing::Test {
protected:
    HostRecorder host;
};

TEST_F(LargeReports, AHistoryOf60000RevisionsComesThroughWholeAndRight) {
    const std::string report = benchmarks::logReportOf(60000);
    ASSERT_GT(report.size(), 30U * 1000 * 1000);

    const auto operation = parsedOperation<SVNLogOperation>(
        {.type = RequestTypeLog, .files = StringArray{"."}}, report);

    EXPECT_TRUE(operation->error().isNil());
    const Reading reading = readingOf(*operation);
    EXPECT_EQ(reading.count, 60000U);
    EXPECT_EQ(reading, OtherReader(report).readRecords("logentry"));
}

TEST_F(LargeReports, TheBlameOf100000LinesComesThroughWholeAndRight) {
    const std::string report = benchmarks::blameReportOf(100000);

    const auto operation = parsedOperation<SVNBlameOperation>(
        {.type = RequestTypeBlame, .files = StringArray{"a.c"}}, report);

    EXPECT_TRUE(operation->error().isNil());
    const Reading reading = readingOf(*operation);
    EXPECT_EQ(reading.count, 100000U);
    EXPECT_EQ(reading, OtherReader(report).readRecords("entry"));
}

} // namespace
} // namespace quen::test
