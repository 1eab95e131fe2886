/// The entries of sparse vectors as integers, one behind the other: mostly words, few longer.
#pragma once

#include "Nuv/Algebra/Rational.hpp"

#include <cstdint>
#include <map>
#include <vector>

namespace nuv
{

class IntegerEntries
{
public:
    void Reserve(std::size_t count)
    {
        m_words.reserve(count);
    }
    /// number times the scale, which is an integer.
    void Append(const ExactNumber& number, Scale scale)
    {
        const std::int64_t word = ScaledInWord(number, scale);
        if (word == 0)
            m_long.emplace(m_words.size(), Scaled(number, scale));
        m_words.push_back(word);
    }
    /// sum += entry * x.
    void AddProduct(std::size_t entry, const Integer& x, Integer& sum) const
    {
        sum.AddProduct(x, m_words[entry] != 0 ? Integer(m_words[entry]) : m_long.at(entry));
    }

private:
    std::vector<std::int64_t> m_words;      ///< 0: what is no word
    std::map<std::size_t, Integer> m_long;  ///< by number of the entry, and zeros
};

}  // namespace nuv
