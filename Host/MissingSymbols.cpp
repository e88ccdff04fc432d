#include "Host/MissingSymbols.h"

#include <algorithm>
#include <cstring>
#include <cxxabi.h>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>
#include <iterator>
#include <link.h>
#include <memory>
#include <span>
#include <string_view>

namespace quen {

namespace {

/// A module's file as a sequence of tables. What lies outside the file is an empty table.
class ElfFile {
public:
    explicit ElfFile(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        bytes_.assign(std::istreambuf_iterator<char>(file), {});
        const auto header = table<ElfW(Ehdr)>(0, 1);
        if (!header.empty() && std::memcmp(header[0].e_ident, ELFMAG, SELFMAG) == 0) {
            sections_ = table<ElfW(Shdr)>(header[0].e_shoff, header[0].e_shnum);
        }
    }

    /// The mangled names that the module leaves open.
    std::vector<std::string> openNames() const {
        std::vector<std::string> names;
        for (const ElfW(Shdr) & section : sections_) {
            if (section.sh_type == SHT_DYNSYM && section.sh_link < sections_.size()) {
                addOpenNames(section, sections_[section.sh_link], names);
            }
        }
        return names;
    }

private:
    template <typename Entry>
    std::vector<Entry> table(std::size_t offset, std::size_t count) const {
        std::vector<Entry> entries;
        if (offset <= bytes_.size() && count <= (bytes_.size() - offset) / sizeof(Entry)) {
            entries.resize(count);
            std::memcpy(entries.data(), bytes_.data() + offset, count * sizeof(Entry));
        }
        return entries;
    }

    void addOpenNames(const ElfW(Shdr) & symbols, const ElfW(Shdr) & texts,
                      std::vector<std::string>& names) const {
        const auto text = table<char>(texts.sh_offset, texts.sh_size);
        for (const ElfW(Sym) & symbol :
             table<ElfW(Sym)>(symbols.sh_offset, symbols.sh_size / sizeof(ElfW(Sym)))) {
            const bool isOpen =
                symbol.st_shndx == SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) == STB_GLOBAL;
            if (isOpen && symbol.st_name < text.size()) {
                const char* const begin = text.data() + symbol.st_name;
                names.emplace_back(begin, ::strnlen(begin, text.size() - symbol.st_name));
            }
        }
    }

    std::vector<char> bytes_;
    std::vector<ElfW(Shdr)> sections_;
};

/// Of this project's namespace: the others are those of libraries that the module brings along.
bool isOfHost(std::string_view mangled) {
    return mangled.starts_with("_Z") && mangled.find("4quen") != std::string_view::npos;
}

std::string readable(const std::string& mangled) {
    struct Free {
        void operator()(char* text) const noexcept { std::free(text); }
    };
    int status = 0;
    const std::unique_ptr<char, Free> text(
        abi::__cxa_demangle(mangled.c_str(), nullptr, nullptr, &status));
    return text == nullptr ? mangled : text.get();
}

} // namespace

std::vector<std::string> missingSymbolsOf(const std::string& module) {
    std::vector<std::string> missing;
    for (const std::string& name : ElfFile(module).openNames()) {
        if (isOfHost(name) && ::dlsym(RTLD_DEFAULT, name.c_str()) == nullptr) {
            missing.push_back(readable(name));
        }
    }
    std::sort(missing.begin(), missing.end());
    return missing;
}

} // namespace quen
