// SPDX-License-Identifier: MIT
#include "client/util/Split.h"

#include <boost/algorithm/string/split.hpp>

#include <algorithm>

namespace Repository {
namespace {

template<class View>
std::vector<View> Split(View text, typename View::value_type delimiter) {
    std::vector<View> pieces;
    boost::algorithm::split(
        pieces, text, [delimiter](auto character) { return character == delimiter; },
        boost::algorithm::token_compress_off);
    return pieces;
}

} // namespace

std::vector<CStringView> SplitFields(CStringView text, char16_t delimiter) {
    return Split(text, delimiter);
}

std::vector<std::string_view> SplitFields(std::string_view text, char delimiter) {
    return Split(text, delimiter);
}

void SplitNonEmpty(CStringView text, char16_t separator, std::vector<CStringView>& pieces) {
    pieces.clear();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (end > begin)
            pieces.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

} // namespace Repository
