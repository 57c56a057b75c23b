#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace contract {

/// Random choices that are the same for a seed wherever the program was built. (The distributions of the standard
/// library are not; its engine is.)
class Choices {
public:
    explicit Choices(std::uint32_t seed) : m_engine(seed) {}

    /// A number from 0 to `end` - 1; `end` is not 0.
    std::size_t below(std::size_t end) { return m_engine() % end; }

    int between(int first, int last)
    {
        return first + static_cast<int>(below(static_cast<std::size_t>(last - first) + 1));
    }

    /// True in `percent` of 100 cases.
    bool chance(std::size_t percent) { return below(100) < percent; }

    template <class T>
    T const& of(std::vector<T> const& all)
    {
        return all[below(all.size())];
    }

    /// Up to `length` of these characters.
    std::string text(std::string const& alphabet, std::size_t length)
    {
        std::string result;
        for (auto left = below(length + 1); left > 0; --left) {
            result += alphabet[below(alphabet.size())];
        }
        return result;
    }

private:
    std::mt19937 m_engine;
};

} // namespace contract
