// SPDX-License-Identifier: MIT
#include "app/Suggest.h"

#include "app/Texts.h"

#include "platform/text/CaseFold.h"

#include <algorithm>

namespace App {
namespace {

// Letters changed, left out, added, or swapped with their neighbour.
std::size_t Distance(CStringView a, CStringView b) {
    std::vector<std::vector<std::size_t>> steps(a.size() + 1,
                                                std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const bool same = a[i - 1] == b[j - 1];
            steps[i][j] = std::min(
                {steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
        }
    }
    return steps[a.size()][b.size()];
}

} // namespace

std::vector<CString> Nearest(CStringView word, const std::vector<CString>& known) {
    constexpr std::size_t kLongest = 100; // nobody mistypes that much
    constexpr std::size_t kMost = 2;
    if (word.empty() || word.size() > kLongest)
        return {};
    const CString folded = Platform::FoldCase(word);
    const std::size_t limit = std::max<std::size_t>(1, folded.size() / 3);
    std::vector<std::pair<std::size_t, CString>> near;
    for (const CString& candidate : known) {
        const CString name = Platform::FoldCase(candidate);
        const bool begins = folded.size() > 1 && name.starts_with(folded);
        const std::size_t distance = begins ? 1 : Distance(folded, name);
        if (distance <= limit)
            near.emplace_back(distance, candidate);
    }
    std::ranges::stable_sort(near, {}, &std::pair<std::size_t, CString>::first);
    std::vector<CString> nearest;
    for (const auto& [distance, name] : near) {
        if (distance == near.front().first && nearest.size() < kMost)
            nearest.push_back(name);
    }
    return nearest;
}

CString DidYouMean(CStringView word, const std::vector<CString>& known) {
    const std::vector<CString> nearest = Nearest(word, known);
    if (nearest.empty())
        return {};
    if (nearest.size() == 1)
        return u"\n" + Text(Message::DidYouMean, {nearest.front()});
    return u"\n" + Text(Message::DidYouMeanEither, {nearest.front(), nearest.back()});
}

} // namespace App
