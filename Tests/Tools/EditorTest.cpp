#include "Tools/Terminal/Editor.h"

#include <gtest/gtest.h>
#include <sstream>

namespace quen::test {

using namespace tools;

namespace {

TEST(EditorInSettings, IsThatOfTheHelpers) {
    struct Case {
        const char* settings;
        const char* editor;
    };
    for (const Case& each : {Case{"", ""},
                             {"[helpers]\neditor-cmd = vi -e\n", "vi -e"},
                             {"[helpers]\r\neditor-cmd=vi\r\n", "vi"},
                             {"[helpers]\n# editor-cmd = vi\n", ""},
                             {"[auth]\neditor-cmd = vi\n[helpers]\ndiff-cmd = d\n", ""},
                             {"[auth]\nx = y\n[helpers]\n  editor-cmd = e\n", "e"}}) {
        std::istringstream settings(each.settings);
        EXPECT_EQ(editorInSettings(settings), each.editor) << each.settings;
    }
}

} // namespace

} // namespace quen::test
