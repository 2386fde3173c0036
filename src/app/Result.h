#pragma once

#include "app/Errors.h"

#include <variant>

namespace tarnwick {

// The outcome of a synchronous operation that can fail: a value or the error that stopped it.
template <typename T>
class Result {
public:
    Result(T value)
        : m_value(std::move(value)) {}
    Result(Error error)
        : m_value(std::move(error)) {}
    template <typename E>
    requires std::is_constructible_v<Error::Variant, E> Result(E error)
        : m_value(Error(std::move(error))) {}

    bool ok() const { return std::holds_alternative<T>(m_value); }
    explicit operator bool() const { return ok(); }

    const T& value() const& { return std::get<T>(m_value); }
    T&& value() && { return std::get<T>(std::move(m_value)); }
    const T* operator->() const { return &value(); }
    const Error& error() const { return std::get<Error>(m_value); }

private:
    std::variant<T, Error> m_value;
};

} // namespace tarnwick
