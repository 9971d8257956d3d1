// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryFile.h"

#include "ZEBXRepositoryClient/LocalContent.h"
#include "client/records/RepositoryFileRecord.h"
#include "client/records/RepositoryFileWriter.h"
#include "client/util/AnsiText.h"
#include "client/util/Border.h"
#include "client/util/Codec.h"
#include "client/util/Split.h"
#include "client/util/UnreadFiles.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"

#include <new>
#include <utility>

namespace Repository {
namespace {

constexpr std::uint64_t kUnreadableBytes = std::uint64_t{1} << 32;

CString WideOf(CStringView token) {
    return CString(token);
}
CString WideOf(std::string_view token) {
    return AnsiToWide(token);
}

// The content stays base64 text.
std::string ContentOf(CStringView token) {
    return WideToAnsi(token);
}
std::string ContentOf(std::string_view token) {
    return std::string(token);
}

// As GetFileBytes, where the end of memory would look like an empty file: throws then.
std::string_view BytesOf(const CRepositoryFile& file, std::string& buffer) {
    if (file.HasFileBytes())
        return file.GetFileBytes(buffer);
    buffer = DecodeBase64(file.GetFileContent());
    return buffer;
}

template<class View>
void ReadFields(CRepositoryFile& file, View record) {
    std::vector<View> tokens = SplitFields(record, '#');
    // Behind the last "#" begins no field: "A#M#" has two and leaves the others alone.
    if (tokens.size() > 1 && tokens.back().empty())
        tokens.pop_back();
    const std::size_t count = tokens.size();
    file.SetFileId(WideOf(tokens[0]).c_str()); // there is one token at least
    if (count > 1)
        file.SetFileManagerId(WideOf(tokens[1]).c_str());
    if (count > 2)
        file.SetOriginId(WideOf(tokens[2]).c_str());
    if (count > 3)
        file.SetFileName(WideOf(tokens[3]).c_str());
    if (count > 4)
        file.SetCustomParameter(DecodeBase64Text(WideOf(tokens[4])).c_str());
    if (count > 5)
        file.SetFileContent(ContentOf(tokens[5]));
    if (count > 6)
        file.SetFileType(static_cast<enmFileType>(Platform::ToInteger(WideOf(tokens[6]))));
}

} // namespace

void AppendRecord(const CRepositoryFile& file, CString& text) {
    const CString parameter = EncodeBase64Text(file.GetCustomParameter());
    const std::string& base64 = file.GetFileContent();
    if (std::string buffer; base64.empty() && !file.GetFileBytes(buffer).empty())
        throw std::bad_alloc(); // what the reference cannot tell
    const CString content = AnsiToWide(base64);
    constexpr std::size_t kShortFields = 256;
    text.reserve(text.size() + parameter.size() + content.size() + kShortFields);
    text += file.GetFileId() + u'#';
    text += file.GetFileManagerId() + u'#';
    text += file.GetOriginId() + u'#';
    text += file.GetFileName() + u'#';
    text += parameter;
    text += u'#';
    text += content;
    text += u'#';
    text += Platform::ToText(file.GetFileType()) + u'#';
}

void ReadRecord(CRepositoryFile& file, CStringView record) {
    ReadFields(file, record);
}

bool ReadLocalFile(CStringView path, CString& name, std::string& bytes) {
    bytes.clear();
    return AtBorder(false, [&] {
        const auto sizeBytes = Platform::FileSize(path);
        const bool tooLarge = sizeBytes.value_or(0) >= kUnreadableBytes;
        const std::error_code error = tooLarge ? std::make_error_code(std::errc::file_too_large)
                                               : Platform::ReadFile(path, bytes);
        RememberUnread(path, error);
        if (error)
            return false;
        name = Platform::FileNameOf(path);
        return true;
    });
}

const std::string& CRepositoryFile::MakeText() const {
    if (m_bytes && !m_isTextMade) {
        m_text = EncodeBase64(*m_bytes);
        m_isTextMade = true;
    }
    return m_text;
}

std::string& CRepositoryFile::GetFileContent() {
    AtBorder([this] { MakeText(); });
    m_bytes.reset();
    m_isTextLent = true;
    return m_text;
}

const std::string& CRepositoryFile::GetFileContent() const {
    AtBorder([this] { MakeText(); });
    return m_text;
}

void CRepositoryFile::SetFileContent(std::string base64) {
    m_isSaved = 0;
    m_bytes.reset();
    m_text = std::move(base64);
}

std::string_view CRepositoryFile::GetFileBytes(std::string& buffer) const {
    if (m_bytes)
        return *m_bytes;
    buffer = AtBorder(std::string(), [this] { return DecodeBase64(m_text); });
    return buffer;
}

void CRepositoryFile::SetFileBytes(std::string bytes) {
    SetFileContent({});
    m_isTextMade = false;
    m_bytes = std::move(bytes);
    if (m_isTextLent)
        GetFileContent();
}

int CRepositoryFile::LoadFile(const char16_t* path) {
    SetFileContent({});
    return AtBorder(0, [&] {
        CString name;
        std::string bytes;
        if (!ReadLocalFile(Platform::TextOf(path), name, bytes))
            return 0;
        SetFileBytes(std::move(bytes));
        m_fileName = std::move(name);
        return 1;
    });
}

// Always 1: callers rely on it and find failures by other means. Kept.
int CRepositoryFile::SaveFile(const char16_t* folder, const char16_t* name) {
    WriteRepositoryFile(*this, folder, name);
    return 1;
}

bool WriteRepositoryFile(const CRepositoryFile& file, const char16_t* folder,
                         const char16_t* name) noexcept {
    return AtBorder(false, [&] {
        const CString target =
            CString(Platform::TextOf(folder)) + (name ? CString(name) : file.GetFileName());
        std::string buffer;
        return !Platform::WriteFile(target, BytesOf(file, buffer));
    });
}

bool WriteRepositoryFile(const CRepositoryFile& file, Platform::FolderWriter& writer) noexcept {
    return AtBorder(false, [&] {
        std::string buffer;
        return !writer.Write(file.GetFileName(), BytesOf(file, buffer));
    });
}

void CRepositoryFile::Serialize(CString& record) const {
    record = AtBorder(CString(), [this] {
        CString text;
        AppendRecord(*this, text);
        return text;
    });
}

void CRepositoryFile::Serialize(WStringStream& stream) const {
    AtBorder([&] {
        CString text;
        AppendRecord(*this, text);
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    });
}

int CRepositoryFile::Deserialize(const char16_t* record) {
    AtBorder([&] { ReadFields(*this, Platform::TextOf(record)); });
    return 1;
}

int CRepositoryFile::Deserialize(const std::string& record) {
    AtBorder([&] { ReadFields(*this, std::string_view(record)); });
    return 1;
}

} // namespace Repository
