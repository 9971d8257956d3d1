// SPDX-License-Identifier: MIT
// What the tests of whole catalogues' transfers start from: a workstation with catalogues of
// its own, the trace, the told steps, and a repository behind the scripted backend.
#pragma once

#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "client/manager/LocalCatalogues.h"
#include "client/manager/ManagerTest.h"
#include "client/manager/TraceLines.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"

using ZEBGis::Data::CCatalogManager;

// Notes each step as a word.
class NotedSteps : public Repository::ICatalogueSteps {
public:
    void SetPosition(int row) override { m_steps.push_back(Platform::ToText(row)); }
    void SetText(const CString& text) override { m_steps.push_back(text); }
    void ItemLoaded() override { m_steps.emplace_back(u"loaded"); }
    void ItemSent() override { m_steps.emplace_back(u"sent"); }
    void ItemLeftOut(const Repository::CNetCatalogueItem& item) override {
        m_steps.push_back(u"left out " + item.GetCatalogueId());
    }
    void ItemNotSent(const ZEBGis::Data::CCatalogItem& item) override {
        m_steps.push_back(u"not sent " + item.GetGUID());
    }

    // Since the last call.
    std::vector<CString> Take() { return std::exchange(m_steps, {}); }

private:
    std::vector<CString> m_steps;
};

class CatalogueTransferTest : public ManagerTest {
protected:
    using NetItem = boost::shared_ptr<Repository::CNetCatalogueItem>;

    static CatalogueDeclaration Hidden(const CString& reference) {
        auto declaration = Declared(reference);
        declaration.hidden = true;
        return declaration;
    }

    static NetItem Record(const CString& id, const CString& parent = u"") {
        return RecordOf(*Leaf(id, id), parent);
    }
    static NetItem GroupRecord(const CString& id, const CString& parent = u"") {
        return RecordOf(*Group(id, id), parent);
    }

    void ExpectAccessible(int answer) {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillOnce(testing::Return(answer));
    }

    // From here on the repository holds these records, in this order, whatever the tag.
    void NetIs(const std::vector<NetItem>& records) {
        for (const NetItem& record : records) {
            net[record->GetCatalogueId()] = record;
            below[record->GetParentId()].push_back(record);
        }
        using testing::_;
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillRepeatedly([this] {
            return goneAfter-- > 0 ? 1 : 0;
        });
        EXPECT_CALL(backend, GetChildCatalogItems(_, _, _, 0))
            .WillRepeatedly(
                [this](auto, const char16_t* parent, std::vector<NetItem>& items, auto) {
                    const CString id(Platform::TextOf(parent));
                    if (notListed && *notListed == id)
                        return 0;
                    items = below[id];
                    return 1;
                });
        EXPECT_CALL(backend, GetCatalogItemById(_, _, 1))
            .WillRepeatedly([this](auto, const char16_t* id, auto) { return net[id]; });
    }

    // The catalogue in memory.
    static CString ShownOutline(const char16_t* reference) {
        const auto catalogue = CCatalogManager::Instance()->GetCatalog(reference, 0);
        return catalogue ? OutlineOf(*catalogue) : CString();
    }

    std::map<CString, NetItem> net;
    std::map<CString, std::vector<NetItem>> below;
    std::optional<CString> notListed;
    int goneAfter = 1'000'000; // answers of IsRepositoryAccessible

    TraceLines trace{workstation};
    NotedSteps steps;
    Repository::CCatalogueTransfer transfer{manager, steps};

private:
    static NetItem RecordOf(const ZEBGis::Data::CCatalogItem& item, const CString& parent) {
        auto record = boost::make_shared<Repository::CNetCatalogueItem>();
        record->SetCatalogueId(item.GetGUID().c_str());
        record->SetParentId(parent.c_str());
        record->SetIsGroup(item.IsGroup());
        record->SetName(item.GetName().c_str());
        record->SetItemContent(XmlOf(item).c_str());
        return record;
    }
};
