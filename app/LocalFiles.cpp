// SPDX-License-Identifier: MIT
#include "app/LocalFiles.h"

#include "ZEBXRepositoryClient/Base64.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"

#include <utility>

namespace App {
namespace {

std::vector<LocalFile> FilesAt(std::vector<CString> paths) {
    std::vector<LocalFile> files;
    files.reserve(paths.size());
    for (CString& path : paths)
        files.emplace_back(std::move(path));
    return files;
}

} // namespace

LocalFile::LocalFile(CString path)
    : m_path(std::move(path)), m_name(Platform::FileNameOf(m_path)) {}

LocalFile::LocalFile(boost::shared_ptr<Repository::CRepositoryFile> record)
    : m_record(std::move(record)), m_name(m_record->GetFileName()) {}

std::optional<std::string> LocalFile::Read() const {
    if (m_record)
        return Repository::Base64Decode(std::as_const(*m_record).GetFileContent());
    CString name;
    std::string bytes;
    if (!Repository::ReadLocalFile(m_path, name, bytes))
        return std::nullopt;
    return bytes;
}

std::optional<std::uint64_t> LocalFile::SizeBytes() const {
    return m_record ? Read()->size() : Platform::FileSize(m_path);
}

std::vector<LocalFile> LocalFilesOf(const Repository::CNCFMetadata& kind) {
    return FilesAt(Repository::LocalPaths(kind));
}

std::vector<LocalFile> LocalFilesOf(Repository::CFOCMetadata& kind) {
    if (const auto fileManager = kind.GetFileManager())
        return LocalFilesOf(fileManager);
    return FilesAt(Repository::LocalPaths(kind));
}

std::vector<LocalFile> LocalFilesOf(const boost::shared_ptr<Repository::IFileManager>& manager) {
    std::vector<boost::shared_ptr<Repository::CRepositoryFile>> records;
    if (manager)
        manager->GetFiles(records, nullptr);
    std::vector<LocalFile> files;
    for (const auto& record : records) {
        if (record)
            files.emplace_back(record);
    }
    return files;
}

} // namespace App
