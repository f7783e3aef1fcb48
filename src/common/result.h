#pragma once

#include <optional>
#include <string>
#include <utility>

namespace glimmer {

/// Why an operation could not be done, as one English sentence for a person.
struct Failure {
    std::string message;
};

/// The outcome of an operation that the user or the world can make fail: a value, or a sentence that says
/// what went wrong. Programming errors are assertions instead (assertion.h).
template <class T>
class Result {
public:
    Result(T value) : value_(std::move(value)) {}  // NOLINT(google-explicit-constructor): reads as "return value;"
    Result(Failure failure) : failure_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool ok() const { return value_.has_value(); }
    explicit operator bool() const { return ok(); }

    /// The value. Only when ok().
    T& operator*() { return *value_; }
    const T& operator*() const { return *value_; }
    T* operator->() { return &*value_; }
    const T* operator->() const { return &*value_; }
    /// Moves the value out. Only when ok().
    T take() { return std::move(*value_); }

    /// The reason; empty when ok().
    [[nodiscard]] const std::string& message() const { return failure_.message; }
    /// The reason again, to be returned as another Result.
    [[nodiscard]] Failure failure() const { return failure_; }

private:
    std::optional<T> value_;
    Failure failure_;
};

/// A Result without a value: done, or the sentence that says why not.
class Status {
public:
    Status() = default;
    Status(Failure failure) : failure_(std::move(failure)), ok_(false) {}  // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool ok() const { return ok_; }
    explicit operator bool() const { return ok_; }
    [[nodiscard]] const std::string& message() const { return failure_.message; }
    [[nodiscard]] Failure failure() const { return failure_; }

private:
    Failure failure_;
    bool ok_ = true;
};

}  // namespace glimmer
