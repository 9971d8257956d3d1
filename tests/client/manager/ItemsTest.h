// SPDX-License-Identifier: MIT
// What the tests of the definitions' operations start from: an installation that declares the
// tags A, B and C, and an empty picture of the shared repository.
#pragma once

#include "ZEBXGisCore/RepositoryManager.h"
#include "client/manager/ManagerTest.h"
#include "client/manager/NetRepositoryOf.h"

class ItemsTest : public ManagerTest {
protected:
    using NetItem = boost::shared_ptr<Repository::CNetRepositoryItem>;
    using Item = std::unique_ptr<ZEBGis::CRepositoryItem>;

    ItemsTest() {
        Write(workstation.Native() / "Definitions.xml",
              "<definitions><repository tag='A'><name language='en'>Items of A</name></repository>"
              "<repository tag='B'/><repository tag='C'/></definitions>");
        Picture() = boost::make_shared<Repository::CNetRepository>();
    }
    ~ItemsTest() override { Picture() = boost::make_shared<Repository::CNetRepository>(); }

    boost::shared_ptr<Repository::CNetRepository>& Picture() { return NetRepositoryOf(manager); }

    static ZEBGis::CRepositoryManager& Definitions() {
        return *ZEBGis::CRepositoryManager::Instance();
    }
    static Item LocalItem(const char16_t* id, const char16_t* name) {
        Item item(Definitions().GetRIF(u"A")->CreateItem());
        item->SetId(id);
        item->SetName(name);
        return item;
    }
    static NetItem Stored(const char16_t* id, const char16_t* name, const CString& xml = {}) {
        const auto item = boost::make_shared<Repository::CNetRepositoryItem>();
        item->SetId(id);
        item->SetName(name);
        item->SetConfigurationXML(xml.c_str());
        return item;
    }

    // Puts a definition repository of those items into the picture.
    void Draw(const CString& tag, const std::vector<NetItem>& items) {
        const auto drawn = boost::make_shared<Repository::CNetDefinitionRepository>(tag.c_str());
        for (const NetItem& item : items)
            drawn->AddRepositoryItem(item);
        Picture()->GetRepositories()->emplace(tag, drawn);
    }
    // "id=name" of the picture's items of a tag, each; "(none)" without a definition repository.
    std::vector<CString> Drawn(const CString& tag) {
        const auto repository = Picture()->GetDefinitionRepositoryByTag(tag.c_str());
        if (!repository)
            return {u"(none)"};
        std::vector<NetItem> items;
        repository->GetRepositoryItems(items);
        std::vector<CString> texts;
        for (const NetItem& item : items)
            texts.push_back(item->GetId() + u"=" + item->GetName());
        return texts;
    }
    // The lightweight items of a tag; `result` is what the operation gave.
    std::vector<Item> Listed(const char16_t* tag, int& result) {
        std::vector<ZEBGis::CRepositoryItem*> raw;
        result = manager.GetRepositoryItemsLite(tag, raw);
        return std::vector<Item>(raw.begin(), raw.end());
    }
};
