// SPDX-License-Identifier: MIT
#include "storage/store/FileCheck.h"

#include "ZEBXRepositoryClient/Base64.h"
#include "platform/host/Interruption.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/store/NameCheck.h"

#include <algorithm>

namespace Storage {
namespace {

using Repository::CRepositoryFile;

bool IsKept(CStringView text) {
    return text.find(u'\0') == CStringView::npos && Platform::IsWellFormed(text);
}

std::size_t PaddingOf(std::string_view base64) {
    const std::size_t last = base64.find_last_not_of('=');
    return base64.size() - (last == std::string_view::npos ? 0 : last + 1);
}

std::uint64_t DecodedSize(std::string_view base64) {
    const std::size_t padding = std::min<std::size_t>(PaddingOf(base64), 2);
    return base64.size() < 4 ? 0 : base64.size() / 4 * 3 - padding;
}

// Whether the decoder came to the end and nothing was hidden in the last group's spare bits.
bool IsWhole(std::string_view base64, std::string_view bytes) {
    if (base64.size() % 4 != 0 || bytes.size() != DecodedSize(base64))
        return false;
    const std::size_t tail = bytes.size() % 3;
    return tail == 0 || Repository::Base64Encode(bytes.data() + bytes.size() - tail,
                                                 static_cast<std::uint32_t>(tail)) ==
                            base64.substr(base64.size() - 4);
}

std::uint64_t ContentSize(const CRepositoryFile& file) {
    std::string unused;
    return file.HasFileBytes() ? file.GetFileBytes(unused).size()
                               : DecodedSize(file.GetFileContent());
}

void CheckFile(const CRepositoryFile& file, CStringView owner, std::uint64_t maxFileBytes,
               Refusals& refusals) {
    const CString name = file.GetFileName();
    CheckNameAndSize(name, owner, ContentSize(file), maxFileBytes, refusals);
    if (!IsKept(file.GetFileManagerId()) || !IsKept(file.GetOriginId()) ||
        !IsKept(file.GetCustomParameter()))
        refusals.Add(MessageNumber::TextNotKept, {name, CString(owner)});
}

bool IsSame(const CRepositoryFile& left, const CRepositoryFile& right) {
    return left.GetFileManagerId() == right.GetFileManagerId() &&
           left.GetCustomParameter() == right.GetCustomParameter() &&
           left.GetFileContent() == right.GetFileContent();
}

void AddToKind(FilesByName& kind, const CRepositoryFile& file, Refusals& refusals) {
    const CString name = file.GetFileName();
    const auto [found, isNew] = kind.try_emplace(Platform::FoldCase(name), &file);
    if (isNew)
        return;
    const CRepositoryFile& other = *found->second;
    CheckSameCase(name, file.GetOriginId(), other.GetFileName(), refusals);
    if (other.GetFileName() == name && !IsSame(file, other))
        refusals.Add(MessageNumber::NameTwice, {name, file.GetOriginId()});
}

bool IsEmptyFile(const boost::shared_ptr<CRepositoryFile>& file) {
    return file && file->GetFileName().empty() && !file->HasFileBytes() &&
           file->GetFileContent().empty();
}

[[noreturn]] void RefuseNothing() {
    throw StorageError(Problem::Refused, MessageNumber::NothingGiven);
}

} // namespace

void CheckNameAndSize(const CString& name, CStringView owner, std::uint64_t sizeBytes,
                      std::uint64_t maxFileBytes, Refusals& refusals) {
    if (const auto wrong = CheckName(name))
        refusals.Add(*wrong, {name, CString(owner)});
    if (sizeBytes > maxFileBytes)
        refusals.Add(MessageNumber::FileTooLarge,
                     {name, CString(owner), Platform::ToText(std::int64_t(maxFileBytes >> 20))});
}

void CheckSameCase(const CString& name, CStringView owner, const CString& other,
                   Refusals& refusals) {
    if (other != name)
        refusals.Add(MessageNumber::NameDiffersByCase, {name, CString(owner), other});
}

void CheckTexts(std::initializer_list<CStringView> texts, CStringView name, CStringView owner) {
    if (!std::all_of(texts.begin(), texts.end(), IsKept))
        throw StorageError(Problem::Refused, MessageNumber::TextNotKept,
                           {CString(name), CString(owner)});
}

std::map<KindKey, FilesByName> CheckKindFiles(const Repository::RepositoryFiles& files,
                                              std::uint64_t maxFileBytes) {
    Refusals refusals;
    std::map<KindKey, FilesByName> kinds;
    for (const auto& file : files) {
        if (!file)
            RefuseNothing();
        const KindKey kind(file->GetFileType(), file->GetOriginId());
        if (kind.first == 0 || kind.second.empty())
            refusals.Add(MessageNumber::FileWithoutKind, {file->GetFileName(), kind.second});
        CheckFile(*file, kind.second, maxFileBytes, refusals);
        AddToKind(kinds[kind], *file, refusals);
    }
    refusals.ThrowIfAny();
    return kinds;
}

std::vector<const CRepositoryFile*> CheckHeldFiles(const Repository::RepositoryFiles& files,
                                                   CStringView owner, std::uint64_t maxFileBytes) {
    Refusals refusals;
    std::map<CString, CString> names; // case-folded to sent
    std::vector<const CRepositoryFile*> held;
    auto end = files.size();
    while (end > 0 && IsEmptyFile(files[end - 1]))
        --end;
    for (std::size_t i = 0; i < end; ++i) {
        if (!files[i])
            RefuseNothing();
        CheckFile(*files[i], owner, maxFileBytes, refusals);
        const CString name = files[i]->GetFileName();
        const CString& first = names.try_emplace(Platform::FoldCase(name), name).first->second;
        CheckSameCase(name, owner, first, refusals);
        held.push_back(files[i].get());
    }
    refusals.ThrowIfAny();
    return held;
}

void StopIfInterrupted(const CRepositoryFile& next, CStringView owner) {
    if (Platform::IsInterrupted())
        throw StorageError(Problem::Interrupted, MessageNumber::Interrupted,
                           {next.GetFileName(), CString(owner)});
}

std::string_view DecodeContent(const CRepositoryFile& file, CStringView owner,
                               std::string& buffer) {
    const std::string_view bytes = file.GetFileBytes(buffer);
    if (!file.HasFileBytes() && !IsWhole(file.GetFileContent(), bytes))
        throw StorageError(Problem::Refused, MessageNumber::FileNotBase64,
                           {file.GetFileName(), CString(owner)});
    return bytes;
}

} // namespace Storage
