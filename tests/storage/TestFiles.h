// SPDX-License-Identifier: MIT
// Files and items to send, and what a test expects a call to throw.
#pragma once

#include "ZEBXRepositoryClient/Base64.h"
#include "storage/StorageError.h"
#include "storage/store/Store.h"

#include <boost/make_shared.hpp>

namespace Storage {

inline RepositoryFilePtr MakeFile(const CString& name, std::string_view bytes,
                                  const CString& kind = u"001_LABEL",
                                  Repository::enmFileType type = Repository::FileTypeNCF) {
    auto file = boost::make_shared<Repository::CRepositoryFile>();
    file->SetFileManagerId(u"NCF");
    file->SetOriginId(kind.c_str());
    file->SetFileName(name.c_str());
    file->SetCustomParameter(kind.c_str());
    file->SetFileType(type);
    file->SetFileContent(
        Repository::Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    return file;
}

inline std::string BytesOf(const RepositoryFilePtr& file) {
    return file ? Repository::Base64Decode(file->GetFileContent()) : "(no file)";
}

// What `work` throws; nothing when it does not.
template<typename Work>
std::optional<StorageError> ErrorOf(Work work) {
    try {
        work();
    } catch (const StorageError& error) {
        return error;
    }
    return std::nullopt;
}

template<typename Work>
Problem ProblemOf(Work work) {
    const auto error = ErrorOf(work);
    return error ? error->Kind() : Problem::None;
}

// The numbers of an error's messages.
inline std::vector<MessageNumber> NumbersOf(const StorageError& error) {
    std::vector<MessageNumber> numbers;
    for (const Message& message : error.Messages())
        numbers.push_back(message.number);
    return numbers;
}

} // namespace Storage
