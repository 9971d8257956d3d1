// SPDX-License-Identifier: MIT
// What this workstation would send of a kind, and what stands where the kind's stored files
// are fetched to.
#pragma once

#include "ZEBXRepositoryClient/LocalContent.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include <optional>

namespace App {

// One file that would be looked at when its kind is sent.  Its content is read when asked for
// and kept by nobody, so that thousands of files need no more memory than one.
class LocalFile {
public:
    explicit LocalFile(CString path);
    // A file that a file manager handed out, content included.
    explicit LocalFile(boost::shared_ptr<Repository::CRepositoryFile> record);

    const CString& Name() const { return m_name; }
    // Empty for a file manager's.
    const CString& Path() const { return m_path; }
    // Nothing when there is no readable file: it would not be sent.
    std::optional<std::string> Read() const;
    bool IsReadable() const { return Read().has_value(); }
    // As Read, without reading; nothing for what is no file.
    std::optional<std::uint64_t> SizeBytes() const;

private:
    CString m_path;
    boost::shared_ptr<Repository::CRepositoryFile> m_record; // empty: the path's file
    CString m_name;
};

// In the order of sending.
std::vector<LocalFile> LocalFilesOf(const Repository::CNCFMetadata& kind);
std::vector<LocalFile> LocalFilesOf(Repository::CFOCMetadata& kind);
// What the file manager of that identifier hands out; nothing without one.
std::vector<LocalFile> LocalFilesOf(const boost::shared_ptr<Repository::IFileManager>& manager);

} // namespace App
