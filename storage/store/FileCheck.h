// SPDX-License-Identifier: MIT
// What the repository takes in: names, texts and contents are checked before anything is
// written, and everything that is wrong is told at once.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"
#include "storage/StorageError.h"

#include <map>

namespace Storage {

inline constexpr std::uint64_t kMaxFileBytes = std::uint64_t(512) * 1024 * 1024;

// What is wrong so far.
class Refusals {
public:
    void Add(MessageNumber number, std::vector<CString> values) {
        m_messages.push_back({number, std::move(values)});
    }
    // Throws Refused with all of it.
    void ThrowIfAny() {
        if (!m_messages.empty())
            throw StorageError(Problem::Refused, std::move(m_messages));
    }

private:
    std::vector<Message> m_messages;
};

// The rules for a file's name and size, `owner` being its kind or item.
void CheckNameAndSize(const CString& name, CStringView owner, std::uint64_t sizeBytes,
                      std::uint64_t maxFileBytes, Refusals& refusals);
// The rule for two names that are the same when case does not count: that it does not matter.
void CheckSameCase(const CString& name, CStringView owner, const CString& other,
                   Refusals& refusals);

// Throws Refused unless UTF-8 carries every text exactly; `name` and `owner` tell the user
// which record it is.
void CheckTexts(std::initializer_list<CStringView> texts, CStringView name, CStringView owner);

// A kind's files by case-folded name, those that were sent twice once.
using FilesByName = std::map<CString, const Repository::CRepositoryFile*>;
using KindKey = std::pair<std::int32_t, CString>; // content code and kind id

// Checks files that are sent for kinds, and sorts them.  Throws Refused.
std::map<KindKey, FilesByName> CheckKindFiles(const Repository::RepositoryFiles& files,
                                              std::uint64_t maxFileBytes);

// Checks files that travel with something, called `owner`; empty ones at the end of the
// list, which items read from their records have, are dropped.  Throws Refused.
std::vector<const Repository::CRepositoryFile*>
CheckHeldFiles(const Repository::RepositoryFiles& files, CStringView owner,
               std::uint64_t maxFileBytes);

// Throws Interrupted when the user asked to stop: the call that was about to keep the file
// is then undone whole.
void StopIfInterrupted(const Repository::CRepositoryFile& next, CStringView owner);

// The bytes of a file's content: its own, or decoded into `buffer`.  Throws Refused when the
// content is not base64 to its end.
std::string_view DecodeContent(const Repository::CRepositoryFile& file, CStringView owner,
                               std::string& buffer);

} // namespace Storage
