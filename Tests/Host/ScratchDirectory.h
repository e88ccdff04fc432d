#pragma once

#include "Foundation/String.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace quen::test {

/// A fresh directory for one test, removed with it.
class ScratchDirectory {
public:
    ScratchDirectory() {
        std::string path = (std::filesystem::temp_directory_path() / "scratch-XXXXXX").string();
        if (mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("No directory can be made at " + path + ".");
        }
        path_ = path;
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_.str(), ignored);
    }

    const String& path() const noexcept { return path_; }
    String pathOf(std::string_view name) const { return path_.str() + "/" + std::string(name); }
    bool isEmpty() const { return std::filesystem::is_empty(path_.str()); }

    /// Makes a file, with the directories that lead to it, and answers its path.
    String write(std::string_view name, std::string_view text) const {
        const std::filesystem::path path = pathOf(name).str();
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }

private:
    String path_;
};

/// An environment variable with another value, or with none, while this lives.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const String& value) : name_(name), previous_(getenv(name)) {
        set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { set(previous_); }

private:
    void set(const String& value) const {
        if (value.isNil()) {
            unsetenv(name_);
        } else {
            setenv(name_, value.c_str(), 1);
        }
    }

    const char* name_;
    String previous_;
};

} // namespace quen::test
