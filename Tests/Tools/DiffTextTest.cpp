#include "Tools/Commands/Content/DiffText.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

/// A difference with its styles as letters instead of colours: h heading, c hunk, + good, - bad,
/// f faint, and nothing for plain.
std::string marked(std::string_view text) {
    std::string shown = shownDifference(text, Palette(Palette::Use::always));
    const auto replace = [&shown](std::string_view code, std::string_view mark) {
        for (auto at = shown.find(code); at != std::string::npos; at = shown.find(code, at)) {
            shown.replace(at, code.size(), mark);
        }
    };
    replace("\x1b[1m", "h|");
    replace("\x1b[34m", "c|");
    replace("\x1b[32m", "+|");
    replace("\x1b[31m", "-|");
    replace("\x1b[2m", "f|");
    replace("\x1b[0m", "");
    return shown;
}

TEST(ShownDifference, TellsHeadingsFromChanges) {
    EXPECT_EQ(marked("Index: a.c\n"
                     "===\n"
                     "--- a.c\t(revision 1)\n"
                     "+++ a.c\t(working copy)\n"
                     "@@ -1,2 +1,2 @@\n"
                     " same\n"
                     "-old\n"
                     "+new\n"
                     "\\ No newline at end of file\n"
                     "Index: b.c\n"),
              "h|Index: a.c\n"
              "h|===\n"
              "h|--- a.c\t(revision 1)\n"
              "h|+++ a.c\t(working copy)\n"
              "c|@@ -1,2 +1,2 @@\n"
              " same\n"
              "-|-old\n"
              "+|+new\n"
              "f|\\ No newline at end of file\n"
              "h|Index: b.c\n");
}

TEST(ShownDifference, ARemovedLineOfDashesIsNoHeading) {
    EXPECT_EQ(marked("@@ -1 +1 @@\n--- x\n+++ y\n"), "c|@@ -1 +1 @@\n-|--- x\n+|+++ y\n");
}

TEST(ShownDifference, PropertiesHaveHunksToo) {
    EXPECT_EQ(marked("Added: p\n## -0,0 +1 ##\n+v\n"), "h|Added: p\nc|## -0,0 +1 ##\n+|+v\n");
}

TEST(ShownDifference, IsSafeToShow) {
    EXPECT_EQ(shownDifference("@@ -1 +1 @@\n+\x1b[2J\n", Palette(Palette::Use::never)),
              "@@ -1 +1 @@\n+\xEF\xBF\xBD[2J\n");
}

TEST(DifferencePainter, SetsOldAndNewLinesSideBySide) {
    struct Case {
        const char* difference;
        const char* shown;
    };
    const Palette plain(Palette::Use::never);
    for (const Case& each : {Case{"@@ -1,2 +1,2 @@\n one\n-two\n+2\n",
                                  "@@ -1,2 +1,2 @@\none        one\ntwo      | 2\n"},
                             Case{"@@ -1 +0,0 @@\n-gone\n", "@@ -1 +0,0 @@\ngone     <\n"},
                             Case{"@@ -0,0 +1 @@\n+new\n", "@@ -0,0 +1 @@\n         > new\n"},
                             Case{"@@ -1 +1,2 @@\n-a\tb\n+c\n+d\n",
                                  "@@ -1 +1,2 @@\na      \xE2\x80\xA6 | c\n         > d\n"},
                             Case{"@@ -1,2 +1 @@\n \n-two\n", "@@ -1,2 +1 @@\n\ntwo      <\n"},
                             Case{"@@ -1,2 +1,2 @@\n a\r\n-b\r\n+c\r\n+d\r\n",
                                  "@@ -1,2 +1,2 @@\na          a\nb        | c\n         > d\n"},
                             Case{"@@ -1,2 +1,1 @@\n-a\n-b\r\n+a\r\n",
                                  "@@ -1,2 +1,1 @@\na        | a\xEF\xBF\xBD\nb        <\n"}}) {
        DifferencePainter painter(plain, 19);
        std::string shown = painter.take(each.difference);
        shown += painter.finish();
        EXPECT_EQ(shown, each.shown);
    }
}

} // namespace

} // namespace quen::test
