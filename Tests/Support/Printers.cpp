#include "Tests/Support/Printers.h"

#include "MarlFoundation/MarlFilePath.h"

#include <string_view>
#include <type_traits>

namespace quen {

namespace {

void printQuoted(const String& text, std::ostream& out) {
    if (text.isNil()) {
        out << "nil";
        return;
    }
    out << '"';
    for (const char c : text.view()) {
        switch (c) {
        case '\n': out << "\\n"; break;
        case '\r': out << "\\r"; break;
        case '"': out << "\\\""; break;
        default: out << c;
        }
    }
    out << '"';
}

template <typename List>
void printList(const List& list, std::string_view ends, std::ostream& out) {
    std::string_view separator;
    out << ends.front();
    for (const auto& item : list) {
        out << separator;
        PrintTo(item, &out);
        separator = ", ";
    }
    out << ends.back();
}

void printScalar(const Value& value, std::ostream& out) {
    if (const bool* boolean = value.boolean()) {
        out << (*boolean ? "true" : "false");
    } else if (const std::int64_t* integer = value.integer()) {
        out << *integer;
    } else if (const String* string = value.string()) {
        printQuoted(*string, out);
    } else if (const Date* date = value.date()) {
        out << dateText(*date);
    } else if (const FilePathValue* path = value.filePath()) {
        out << "path ";
        printQuoted((*path)->pathString(), out);
    } else {
        out << "nothing";
    }
}

} // namespace

void PrintTo(const Value& value, std::ostream* out) {
    if (const Error* error = value.error()) {
        PrintTo(*error, out);
    } else if (const Array* array = value.array()) {
        PrintTo(*array, out);
    } else if (const Dictionary* dictionary = value.dictionary()) {
        PrintTo(*dictionary, out);
    } else {
        printScalar(value, *out);
    }
}

void PrintTo(const Array& array, std::ostream* out) {
    if (array.isNil()) {
        *out << "nil";
    } else {
        printList(array, "[]", *out);
    }
}

void PrintTo(const Dictionary& dictionary, std::ostream* out) {
    if (dictionary.isNil()) {
        *out << "nil";
    } else {
        printList(dictionary, "{}", *out);
    }
}

void PrintTo(const Dictionary::Entry& entry, std::ostream* out) {
    *out << entry.key << ": ";
    PrintTo(entry.value, out);
}

void PrintTo(const Error& error, std::ostream* out) {
    if (error.isNil()) {
        *out << "no error";
        return;
    }
    *out << "error " << error.domain() << ' ' << error.code() << ' ';
    PrintTo(error.userInfo(), out);
}

void PrintTo(const URL& url, std::ostream* out) {
    printQuoted(url.absoluteString(), *out);
}

void PrintTo(const MarlAssertionFailure& failure, std::ostream* out) {
    *out << failure.method << " (" << failure.file << ':' << failure.line << ") ";
    printQuoted(failure.format, *out);
    for (const String& argument : failure.arguments) {
        *out << ", ";
        printQuoted(argument, *out);
    }
}

} // namespace quen
