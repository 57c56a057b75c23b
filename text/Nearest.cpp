#include "text/Nearest.h"

#include <algorithm>
#include <cstddef>

namespace ostrel::text {
namespace {

char folded(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// How many letters were added, left out, replaced, or swapped with their neighbours.
std::size_t distanceOf(std::string_view left, std::string_view right)
{
    // One row of the usual table for each letter on the left; swapping looks back two rows.
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(right.size() + 1);
    for (std::size_t j = 0; j <= right.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::vector<std::size_t> row(right.size() + 1);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const bool same = folded(left[i - 1]) == folded(right[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && folded(left[i - 1]) == folded(right[j - 2]) &&
                                 folded(left[i - 2]) == folded(right[j - 1]);
            if (swapped) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last[right.size()];
}

} // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known)
{
    std::string_view found;
    std::size_t least = 0;
    for (const std::string_view candidate : known) {
        // Slips of the pen, and not another word: one letter of three.
        const std::size_t limit = candidate.size() / 3;
        if (word.size() > candidate.size() + limit || candidate.size() > word.size() + limit) {
            continue;
        }
        const std::size_t distance = distanceOf(word, candidate);
        if (distance <= limit && (found.empty() || distance < least)) {
            found = candidate;
            least = distance;
        }
    }
    return found;
}

} // namespace ostrel::text
