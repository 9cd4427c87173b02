#pragma once

#include <QString>
#include <optional>
#include <utility>
#include <variant>

namespace lumirra {

/// Why an operation gave no value. `message` is one complete sentence for the user that names the
/// file where there is one; whoever detects the failure writes it, nobody adds to it.
struct Failure {
    enum class Kind {
        Unreadable,
        Damaged,  ///< there is a picture, but not the whole truth
        Unsupported,
        TooLarge,
        NotFound,
        NotWritable,
        Invalid,
        Stopped
    };
    Kind kind = Kind::Invalid;
    QString message;
    QString file;
};

/// A value, or the reason why there is none.
template <typename Value>
class [[nodiscard]] Outcome {
  public:
    Outcome(Value value) : state_(std::move(value)) {}        // NOLINT(google-explicit-constructor)
    Outcome(Failure failure) : state_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

    explicit operator bool() const { return std::holds_alternative<Value>(state_); }
    /// Only when there is a value.
    const Value& operator*() const& { return std::get<Value>(state_); }
    Value&& operator*() && { return std::get<Value>(std::move(state_)); }
    const Value* operator->() const { return &std::get<Value>(state_); }
    /// Only when there is no value.
    const Failure& failure() const { return std::get<Failure>(state_); }

  private:
    std::variant<Value, Failure> state_;
};

/// Done, or the reason why not.
using Done = std::monostate;

}  // namespace lumirra
