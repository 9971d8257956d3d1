// SPDX-License-Identifier: MIT
// The record of a file read in the plainest way, and files compared: what the targets of the
// three records hold the real reader against. The format is described in docs/formats.md.
#pragma once

#include "Target.h"
#include "ZEBXRepositoryClient/RepositoryFile.h"
#include "platform/text/Windows1250.h"
#include "support/NaiveBase64.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace Fuzz {

// A file whose every field differs from a new one's, to see which ones a record leaves alone.
inline Repository::CRepositoryFile FilledFile() {
    Repository::CRepositoryFile file;
    file.SetFileId(u"old id");
    file.SetFileManagerId(u"old manager");
    file.SetOriginId(u"old origin");
    file.SetFileName(u"old name");
    file.SetCustomParameter(u"old parameter");
    file.SetFileContent("old content");
    file.SetFileType(Repository::FileTypeFOC);
    return file;
}

inline bool AreSame(const Repository::CRepositoryFile& a, const Repository::CRepositoryFile& b) {
    return a.GetFileId() == b.GetFileId() && a.GetFileManagerId() == b.GetFileManagerId() &&
           a.GetOriginId() == b.GetOriginId() && a.GetFileName() == b.GetFileName() &&
           a.GetCustomParameter() == b.GetCustomParameter() &&
           a.GetFileContent() == b.GetFileContent() && a.GetFileType() == b.GetFileType();
}

inline CString RecordOf(const Repository::CRepositoryFile& file) {
    CString record;
    file.Serialize(record);
    return record;
}

template<class View>
std::vector<View> NaiveSplit(View text, typename View::value_type separator) {
    std::vector<View> pieces(1, text.substr(0, 0));
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == separator)
            pieces.push_back(text.substr(i + 1, 0));
        else
            pieces.back() = View(pieces.back().data(), pieces.back().size() + 1);
    return pieces;
}

inline CString TwinText(std::string_view ansi) {
    return Platform::FromAnsi(ToFirstNul(ansi));
}
inline CString TwinText(CStringView text) {
    return CString(text);
}
inline std::string TwinBytes(std::string_view ansi) {
    return std::string(ansi);
}
inline std::string TwinBytes(CStringView text) {
    return Platform::ToAnsi(text);
}

inline CString TwinBase64Text(CStringView text) {
    return TwinText(NaiveBase64::Decode(Platform::ToAnsi(text)));
}

inline std::int32_t TwinNumber(CStringView text) {
    const long number = std::strtol(Platform::ToAnsi(text).c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long>(number,
                                                      std::numeric_limits<std::int32_t>::min(),
                                                      std::numeric_limits<std::int32_t>::max()));
}

// `record` is UTF-16 without a NUL, or bytes of the code page.
template<class View>
void TwinDeserialize(Repository::CRepositoryFile& file, View record) {
    std::vector<View> fields = NaiveSplit(record, '#');
    if (fields.size() > 1 && fields.back().empty())
        fields.pop_back();
    fields.resize(std::min<std::size_t>(fields.size(), 7));
    switch (fields.size()) {
    case 7:
        file.SetFileType(static_cast<Repository::enmFileType>(TwinNumber(TwinText(fields[6]))));
        [[fallthrough]];
    case 6:
        file.SetFileContent(TwinBytes(fields[5]));
        [[fallthrough]];
    case 5:
        file.SetCustomParameter(TwinBase64Text(TwinText(fields[4])).c_str());
        [[fallthrough]];
    case 4:
        file.SetFileName(TwinText(fields[3]).c_str());
        [[fallthrough]];
    case 3:
        file.SetOriginId(TwinText(fields[2]).c_str());
        [[fallthrough]];
    case 2:
        file.SetFileManagerId(TwinText(fields[1]).c_str());
        [[fallthrough]];
    default:
        file.SetFileId(TwinText(fields[0]).c_str());
    }
}

} // namespace Fuzz
