// SPDX-License-Identifier: MIT
// The steps that the transfers of drawings (NCF) and of configuration files (FOC) share:
// how a file is collected and labelled, and the lines of the workspace log.
#pragma once

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "ZEBXWorkspaceCore/WsManager.h"

namespace Repository {

// What marks a file as one of its kind's.
struct FileLabel {
    const char16_t* fileManagerId;
    const char16_t* originId;
    CString kindId;
    enmFileType type;
};

// Loads the file, labels it and appends it to `files`; what cannot be loaded (a folder that
// matched a pattern, a file that is not there) is left out without a word.
void CollectFile(const CString& path, const FileLabel& label, RepositoryFiles& files);

// Says in the workspace log whether the file was written.
void LogFetchedFile(const CRepositoryFile& file, bool isWritten);

// One line of the workspace log that is about nothing but its text.
void LogLine(ZEBGis::Workspace::enmMessageType type, const CString& text);

// The line for a kind that could not be sent, by the number of its display name.
void LogKindNotSent(int kindMsgNum);

} // namespace Repository
