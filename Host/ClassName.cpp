#include "Host/ClassName.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string_view>
#include <typeinfo>

namespace quen {

namespace {

struct Free {
    void operator()(char* text) const noexcept { std::free(text); }
};

} // namespace

String classNameOf(const QuenSourceControlOperation& operation) {
    const char* const mangled = typeid(operation).name();
    int status = 0;
    const std::unique_ptr<char, Free> name(abi::__cxa_demangle(mangled, nullptr, nullptr, &status));
    const std::string_view full = name == nullptr ? mangled : name.get();
    const std::size_t scope = full.rfind("::");
    return scope == std::string_view::npos ? full : full.substr(scope + 2);
}

} // namespace quen
