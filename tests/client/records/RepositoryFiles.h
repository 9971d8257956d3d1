// SPDX-License-Identifier: MIT
// Files for the records' tests, and their comparison.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

// A file whose every field differs from that of another `name`.
inline Repository::CRepositoryFile FileNamed(const CString& name) {
    Repository::CRepositoryFile file;
    file.SetFileId((u"id of " + name).c_str());
    file.SetFileManagerId((u"manager of " + name).c_str());
    file.SetOriginId((u"origin of " + name).c_str());
    file.SetFileName(name.c_str());
    file.SetCustomParameter((u"Šifra #$|@ od " + name).c_str());
    file.SetFileContent("TWFu");
    file.SetFileType(Repository::FileTypeNCF);
    return file;
}

inline boost::shared_ptr<Repository::CRepositoryFile> SharedFileNamed(const CString& name) {
    return boost::make_shared<Repository::CRepositoryFile>(FileNamed(name));
}

// The seven fields of the record.
inline void ExpectEqual(const Repository::CRepositoryFile& file,
                        const Repository::CRepositoryFile& expected) {
    EXPECT_EQ(file.GetFileId(), expected.GetFileId());
    EXPECT_EQ(file.GetFileManagerId(), expected.GetFileManagerId());
    EXPECT_EQ(file.GetOriginId(), expected.GetOriginId());
    EXPECT_EQ(file.GetFileName(), expected.GetFileName());
    EXPECT_EQ(file.GetCustomParameter(), expected.GetCustomParameter());
    EXPECT_EQ(file.GetFileContent(), expected.GetFileContent());
    EXPECT_EQ(file.GetFileType(), expected.GetFileType());
}

inline CString RecordOf(const Repository::CRepositoryFile& file) {
    CString record;
    file.Serialize(record);
    return record;
}
