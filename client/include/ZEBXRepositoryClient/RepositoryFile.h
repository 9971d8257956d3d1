// SPDX-License-Identifier: MIT
// One file on its way between a workstation and the repository: identifying texts, a
// type and the body as base64.  Its record, seven fields each ended by "#", is
// described in docs/formats.md.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Repository {

enum enmFileType : std::int32_t { FileTypeNone = 0, FileTypeNCF = 4, FileTypeFOC = 5 };

class ZEBX_EXPORT CRepositoryFile {
public:
    CString GetFileId() const { return m_fileId; }
    void SetFileId(const char16_t* id) { m_fileId = Platform::TextOf(id); }
    CString GetFileManagerId() const { return m_fileManagerId; }
    void SetFileManagerId(const char16_t* id) { m_fileManagerId = Platform::TextOf(id); }
    CString GetOriginId() const { return m_originId; }
    void SetOriginId(const char16_t* id) { m_originId = Platform::TextOf(id); }
    // The bare name, without folder.
    CString GetFileName() const { return m_fileName; }
    void SetFileName(const char16_t* name) { m_fileName = Platform::TextOf(name); }
    CString GetCustomParameter() const { return m_customParameter; }
    void SetCustomParameter(const char16_t* text) { m_customParameter = Platform::TextOf(text); }

    // The file's bytes as base64 text, never the raw bytes.  SetFileContent also says
    // that the new content is not saved yet; a change through the reference does not.
    // A text that would not fit into memory reads as the empty text.
    std::string& GetFileContent();
    const std::string& GetFileContent() const;
    void SetFileContent(std::string base64);

    // The same content as raw bytes, for whoever takes or gives these: the disk, a
    // repository that keeps bytes.  A file that was loaded or set by its bytes holds them
    // and makes the base64 text when that is first asked for.
    //
    // GetFileBytes: the bytes held, else those that the text gives as far as it is base64,
    // decoded into `buffer`; valid until the file or `buffer` changes.  Empty when memory
    // ends.
    bool HasFileBytes() const { return m_bytes.has_value(); }
    std::string_view GetFileBytes(std::string& buffer) const;
    void SetFileBytes(std::string bytes);

    enmFileType GetFileType() const { return m_fileType; }
    void SetFileType(enmFileType type) { m_fileType = type; }
    std::int32_t GetIsSaved() const { return m_isSaved; }
    void SetIsSaved(std::int32_t saved) { m_isSaved = saved; }

    // Reads the whole file into the content and takes the file name from the part of
    // the path after its last "\" ("/" does not separate).  Returns 1, or 0 when the
    // file could not be opened and read: then the content is empty and the name as it
    // was.  A file of 4 GiB or more counts as one that cannot be read.
    int LoadFile(const char16_t* path);

    // Writes the decoded content to `folder` followed directly by `name`, or by the
    // file's own name when `name` is null; no folder is created.  Always returns 1,
    // also when the file could not be written.
    int SaveFile(const char16_t* folder, const char16_t* name);

    // Replaces `record` by this file's record / appends the record to the stream.
    void Serialize(CString& record) const;
    void Serialize(WStringStream& stream) const;

    // Reads a record, UTF-16 or in the ANSI code page.  Fields that the text lacks keep
    // their values.  Always returns 1; malformed base64 is read as far as it goes and a
    // malformed number as 0.
    int Deserialize(const char16_t* record);
    int Deserialize(const std::string& record);

private:
    const std::string& MakeText() const;

    CString m_fileId;
    CString m_fileManagerId;
    CString m_originId;
    CString m_fileName;
    CString m_customParameter;
    // Without m_bytes, m_text is the content; with it, the text that was made of it or
    // nothing yet.
    std::optional<std::string> m_bytes;
    mutable std::string m_text;
    mutable bool m_isTextMade = false;
    bool m_isTextLent = false; // somebody may change m_text behind this object's back
    enmFileType m_fileType = FileTypeNone;
    std::int32_t m_isSaved = 0;
};

} // namespace Repository
