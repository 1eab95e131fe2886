/// Errors as values: what went wrong, where, and what to do about it. Nothing in this layer throws
/// for a wrong model or a wrong file; a function that can fail returns a Result, which holds either
/// its value or the Error.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <variant>

namespace nuv
{

/// One failure. `code` is stable and meant for programs ("model.duplicate-variable"), `text` and
/// `hint` are meant for people. `line` and `column` count from 1; 0 says that there is no such
/// place.
struct Error
{
    std::string code;        ///< the same in every version; empty where nothing is wrong
    std::string text;        ///< what is wrong, without a full stop
    std::string hint;        ///< what to do about it; empty where nothing helps
    std::string file;        ///< as messages call it; empty for none
    std::size_t line = 0;    ///< of the file
    std::size_t column = 0;  ///< of the line, in characters
};

/// A value or the Error that took its place. Ask before taking: `if (result) use(*result); else
/// tell(result.GetError());`
template <class Value>
class [[nodiscard]] Result
{
public:
    ///@{
    /// Holds one or the other; implicit, so that a function returns either.
    Result(Value value) : m_content(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_content(std::in_place_index<1>, std::move(error)) {}
    ///@}

    ///@{
    /// Whether it holds a value.
    [[nodiscard]] bool Ok() const noexcept
    {
        return m_content.index() == 0;
    }
    explicit operator bool() const noexcept
    {
        return Ok();
    }
    ///@}

    ///@{
    /// The value. Only after Ok().
    [[nodiscard]] Value& operator*() & noexcept
    {
        return *std::get_if<0>(&m_content);
    }
    [[nodiscard]] const Value& operator*() const& noexcept
    {
        return *std::get_if<0>(&m_content);
    }
    [[nodiscard]] Value&& operator*() && noexcept
    {
        return std::move(*std::get_if<0>(&m_content));
    }
    [[nodiscard]] Value* operator->() noexcept
    {
        return std::get_if<0>(&m_content);
    }
    [[nodiscard]] const Value* operator->() const noexcept
    {
        return std::get_if<0>(&m_content);
    }
    ///@}

    /// The failure. Only after !Ok().
    [[nodiscard]] const Error& GetError() const noexcept
    {
        return *std::get_if<1>(&m_content);
    }

private:
    std::variant<Value, Error> m_content;
};

}  // namespace nuv
