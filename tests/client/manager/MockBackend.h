// SPDX-License-Identifier: MIT
// A storage backend whose calls a test expects one by one.
#pragma once

#include "ZEBXRepositoryClient/StorageBackend.h"

#include <gmock/gmock.h>

class MockBackend : public Repository::StorageBackend {
    template<class Record>
    using Records = std::vector<boost::shared_ptr<Record>>;
    using Item = Repository::CNetRepositoryItem;
    using CatalogueItem = Repository::CNetCatalogueItem;
    using Files = Repository::RepositoryFiles;
    using File = boost::shared_ptr<Repository::CRepositoryFile>;
    using Text = const char16_t*;
    using Texts = std::vector<CString>;

public:
    MockBackend();
    ~MockBackend() override;

    MOCK_METHOD(void, SetSettingsPath, (Text), (override));
    MOCK_METHOD(void, SaveSettings, (), (override));
    MOCK_METHOD(void, LoadSettings, (), (override));
    MOCK_METHOD(int, GetNameMsgNum, (), (override));
    MOCK_METHOD(int, ApplyConnectionParameters, (), (override));
    MOCK_METHOD(int, HasConnectionParameters, (), (override));
    MOCK_METHOD(void, SetVersion, (Text), (override));
    MOCK_METHOD(int, IsMultipleGSSupported, (), (override));
    MOCK_METHOD(int, GetAvailableGS, (Texts&), (override));
    MOCK_METHOD(int, LoadGS, (CString&, Texts&, Text), (override));
    MOCK_METHOD(int, SaveGS, (Text, const Files&, Text), (override));
    MOCK_METHOD(File, GetRepositoryFile, (Text), (override));
    MOCK_METHOD(int, RegisterContent, (int, Text, int), (override));
    MOCK_METHOD(int, AmIAdmin, (), (override));
    MOCK_METHOD(int, AddRepositoryFiles, (const Files&), (override));
    MOCK_METHOD(int, GetRepositoryFileIds, (int, Text, Texts&), (override));
    MOCK_METHOD(int, GetRepositoryItems, (Text, Records<Item>&), (override));
    MOCK_METHOD(int, DeleteRepositoryItem, (Text, Text), (override));
    MOCK_METHOD(int, RenameRepositoryItem, (Text, Text, Text), (override));
    MOCK_METHOD(boost::shared_ptr<Item>, GetRepositoryItemById, (Text, Text, int), (override));
    MOCK_METHOD(int, AddRepositoryItem, (Text, const boost::shared_ptr<Item>&), (override));
    MOCK_METHOD(int, GetChildCatalogItems, (Text, Text, Records<CatalogueItem>&, int), (override));
    MOCK_METHOD(boost::shared_ptr<CatalogueItem>, GetCatalogItemById, (Text, Text, int),
                (override));
    MOCK_METHOD(int, AddCatalogItem, (boost::shared_ptr<CatalogueItem>), (override));
    MOCK_METHOD(int, DeleteCatalogItem, (Text, Text), (override));
    MOCK_METHOD(int, IsRepositoryAccessible, (), (override));
    MOCK_METHOD(int, EditConnectionParameters, (), (override));
};

// A NUL-terminated text that is not null and reads so.
MATCHER_P(TextIs, text, "reads " + testing::PrintToString(CString(text))) {
    return arg && CStringView(arg) == CStringView(text);
}
