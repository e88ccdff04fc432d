#pragma once

#include <utility>
#include <variant>

namespace quen::tools {

/// The exit status of a command that cannot go on, for a reason that has been told.
struct Explained {
    int status;
};

/// A value, or the exit status of a command that cannot go on without it: then the reason has been
/// told, and nothing is left but to end with that status.
///
///     const auto source = findSource(session, path);
///     if (!source) {
///         return source.status();
///     }
template <typename T> class Outcome {
public:
    Outcome(T value) : outcome_(std::move(value)) {}               // NOLINT(*-explicit-*)
    Outcome(Explained explained) noexcept : outcome_(explained) {} // NOLINT(*-explicit-*)

    explicit operator bool() const noexcept { return std::holds_alternative<T>(outcome_); }
    const T& operator*() const { return std::get<T>(outcome_); }
    T& operator*() { return std::get<T>(outcome_); }
    const T* operator->() const { return &std::get<T>(outcome_); }
    T* operator->() { return &std::get<T>(outcome_); }

    /// Only where there is no value.
    int status() const { return std::get<Explained>(outcome_).status; }
    /// The reason that there is no value, as the outcome of something else.
    Explained explained() const { return std::get<Explained>(outcome_); }

private:
    std::variant<T, Explained> outcome_;
};

} // namespace quen::tools
