// SPDX-License-Identifier: MIT
#include "platform/os/FileSearch.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/os/System.h"
#include "platform/text/CaseFold.h"

#include <algorithm>
#include <utility>

namespace Platform {
namespace {

// Whether `name` matches `pattern`.  After a mismatch the last "*" takes one unit more;
// earlier ones never need to, so the cost is at most the product of the lengths.
bool Matches(CStringView name, CStringView pattern) {
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t starPattern = CStringView::npos;
    std::size_t starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            starPattern = p++;
            starName = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (starPattern != CStringView::npos) {
            p = starPattern + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == CStringView::npos;
}

} // namespace

std::vector<CString> FindFiles(CStringView pattern, std::error_code* error) {
    const std::size_t nameStart = pattern.find_last_of(u"\\/") + 1;
    const CStringView folder = nameStart == 0 ? u"." : pattern.substr(0, nameStart);
    std::vector<std::string> natives;
    const std::error_code failure = System::ListNames(LookUp(folder), natives);
    if (error)
        *error = failure;
    if (failure)
        return {};
    // Not every file system lists these two.
    natives.insert(natives.end(), {".", ".."});

    const CString foldedPattern = FoldCase(pattern.substr(nameStart));
    std::vector<std::pair<CString, CString>> found; // in their order: folded name, name
    for (const std::string& native : natives) {
        if (IsPassingName(native))
            continue;
        CString name = PathFromNative(native);
        CString folded = FoldCase(name);
        if (Matches(folded, foldedPattern))
            found.emplace_back(std::move(folded), std::move(name));
    }
    std::sort(found.begin(), found.end());

    std::vector<CString> names;
    for (auto& [folded, name] : found)
        names.push_back(std::move(name));
    return names;
}

} // namespace Platform
