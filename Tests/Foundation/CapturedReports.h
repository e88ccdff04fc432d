#pragma once

#include <string_view>

namespace quen::test {

/// As the client writes them (1.14); only dates and identifiers are made up.
inline constexpr std::string_view capturedStatus = R"(<?xml version="1.0" encoding="UTF-8"?>
<status>
<target
   path=".">
<entry
   path="a b.c">
<wc-status
   item="modified"
   revision="1"
   props="none">
<commit
   revision="1">
<author>sally</author>
<date>2024-03-01T12:34:56.218109Z</date>
</commit>
</wc-status>
</entry>
<entry
   path="&lt;ünknown&gt;">
<wc-status
   props="none"
   item="unversioned">
</wc-status>
</entry>
<against
   revision="1"/>
</target>
<changelist
   name="mine">
<entry
   path="d/e">
<wc-status
   item="added"
   props="modified">
</wc-status>
</entry>
</changelist>
<target
   path="elsewhere">
<entry
   path="elsewhere/f">
<wc-status
   item="missing"
   props="none">
</wc-status>
</entry>
</target>
</status>
)";

inline constexpr std::string_view capturedLog = R"(<?xml version="1.0" encoding="UTF-8"?>
<log>
<logentry
   revision="2">
<author>sally</author>
<date>2024-03-02T12:34:56.218109Z</date>
<paths>
<path
   prop-mods="false"
   text-mods="true"
   kind="file"
   action="M">/a b.c</path>
<path
   text-mods="false"
   kind="dir"
   copyfrom-path="/trunk"
   copyfrom-rev="1"
   action="A"
   prop-mods="false">/d</path>
</paths>
<msg>first &lt;&amp;&gt; line
zweite Zeile: äöü</msg>
</logentry>
<logentry
   revision="1">
<msg></msg>
</logentry>
</log>
)";

} // namespace quen::test
