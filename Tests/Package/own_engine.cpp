// What a program may bring along: its own copies of an XML engine, of Unicode tables and of
// digests. Nothing but the program itself may come to call them.

#include <cstdlib>

#define OWN_COPY(name)                                                                             \
    extern "C" __attribute__((visibility("default"))) void name() {                                \
        std::abort();                                                                              \
    }

OWN_COPY(XML_ParserCreate)
OWN_COPY(XML_Parse)
OWN_COPY(XML_SetUserData)
OWN_COPY(utf8proc_category)
OWN_COPY(utf8proc_iterate)
OWN_COPY(utf8proc_charwidth)
OWN_COPY(MD5Data)
