// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/XmlFile.h"

#include "XmlEncoding.h"
#include "XmlMessages.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

namespace ZEBGis {
namespace {

// More than any catalogue needs, and little enough to be read into memory.
constexpr std::uint64_t kMostBytes = std::uint64_t{256} << 20;

CString Shown(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

CString ReasonOf(const std::error_code& error) {
    if (error == std::errc::is_a_directory)
        return XmlText(XmlMessage::Folder);
    if (error == std::errc::too_many_symbolic_link_levels)
        return XmlText(XmlMessage::Link);
    if (error == std::errc::invalid_argument)
        return XmlText(XmlMessage::NoFile);
    return Platform::FromUtf8(error.message());
}

bool IsMissing(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

CString TooLarge(std::uint64_t bytes) {
    return XmlText(XmlMessage::TooLarge, {Platform::ToText(static_cast<std::int64_t>(bytes)),
                                          Platform::ToText(kMostBytes)});
}

// Why the file cannot be used; the empty text when it can.
CString ReadUtf8(CStringView path, std::string& utf8, bool& isMissing) {
    const std::uint64_t bytes = Platform::FileSize(path).value_or(0);
    if (bytes > kMostBytes)
        return TooLarge(bytes);
    const std::error_code error = Platform::ReadFile(path, utf8);
    isMissing = IsMissing(error);
    if (error)
        return ReasonOf(error);
    return utf8.empty() ? XmlText(XmlMessage::Empty) : MakeUtf8(utf8);
}

// Why the file was not written; the empty text when it holds the bytes now.
CString Write(CStringView path, CStringView previousPath, std::string_view bytes) {
    std::string current;
    const bool hasCurrent = Platform::KindOfPath(path) == Platform::PathKind::File;
    if (hasCurrent)
        if (const std::error_code error = Platform::ReadFile(path, current))
            return ReasonOf(error);
    if (hasCurrent && current == bytes)
        return {};
    const CStringView folder = Platform::FolderOf(path);
    if (!Platform::CreateFolderChain(folder, Platform::Access::Private))
        return XmlText(XmlMessage::NoFolder, {Shown(folder)});
    // A copy, not a rename: at no moment is the workstation without its file.
    if (hasCurrent && !previousPath.empty())
        if (const auto error =
                Platform::ReplaceFile(previousPath, current, Platform::Access::Shared))
            return XmlText(XmlMessage::NotWritten, {Shown(previousPath), ReasonOf(error)});
    const std::error_code error = Platform::ReplaceFile(path, bytes, Platform::Access::Shared);
    return error ? ReasonOf(error) : CString();
}

} // namespace

XmlFileState ReadXmlFile(CStringView path, std::string& utf8, CString& problem) try {
    bool isMissing = false;
    const CString reason = ReadUtf8(path, utf8, isMissing);
    problem.clear();
    if (reason.empty())
        return XmlFileState::Read;
    utf8.clear();
    if (isMissing)
        return XmlFileState::Missing;
    problem = XmlText(XmlMessage::NotRead, {Shown(path), reason});
    return XmlFileState::Unusable;
} catch (...) {
    utf8.clear();
    problem = XmlText(XmlMessage::NoMemory);
    return XmlFileState::Unusable;
}

bool WriteXmlFile(CStringView path, CStringView previousPath, std::string_view utf8,
                  CString& problem) try {
    const CString reason = Write(path, previousPath, utf8);
    problem = reason.empty() ? CString() : XmlText(XmlMessage::NotWritten, {Shown(path), reason});
    return reason.empty();
} catch (...) {
    problem = XmlText(XmlMessage::NoMemory);
    return false;
}

} // namespace ZEBGis
