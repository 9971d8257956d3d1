// SPDX-License-Identifier: MIT
// What the tests of whole catalogues' transfers start from: a workstation with catalogues of
// its own, the trace, the told steps, and a repository behind the scripted backend.
#pragma once

#include "ZEBXGisCore/CoreProgressBar.h"
#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "client/manager/LocalCatalogues.h"
#include "client/manager/ManagerTest.h"
#include "client/manager/TraceLines.h"
#include "platform/host/FileSteps.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"

#include <optional>

using ZEBGis::Data::CCatalogManager;

// Notes what the progress bar shows and each item's step as a word.
class NotedSteps : private ZEBGis::IProgressView {
public:
    NotedSteps() {
        ZEBGis::SetProgressView(this);
        Platform::SetFileStepListener([this](Platform::FileStep step) { Note(step); });
    }
    virtual ~NotedSteps() {
        Platform::SetFileStepListener({});
        ZEBGis::SetProgressView(nullptr);
    }
    NotedSteps(const NotedSteps&) = delete;
    NotedSteps& operator=(const NotedSteps&) = delete;

    // Since the last call.
    std::vector<CString> Take() { return std::exchange(m_steps, {}); }
    // Of the progress bar; none while it is hidden.
    const std::optional<ZEBGis::ProgressState>& Shown() const { return m_shown; }

private:
    void Update(const ZEBGis::ProgressState& state) override {
        if (!m_shown)
            m_steps.push_back(state.caption + u" of " + Platform::ToText(state.to));
        else if (m_shown->text != state.text)
            m_steps.push_back(state.text);
        else
            m_steps.push_back(Platform::ToText(state.position));
        m_shown = state;
    }
    void Hide() override {
        m_steps.emplace_back(u"hidden");
        m_shown.reset();
    }
    void Note(Platform::FileStep step) {
        if (step == Platform::FileStep::ItemLoaded)
            m_steps.emplace_back(u"loaded");
        else if (step == Platform::FileStep::ItemSent)
            m_steps.emplace_back(u"sent");
        else
            ADD_FAILURE() << "another step";
    }

    std::vector<CString> m_steps;
    std::optional<ZEBGis::ProgressState> m_shown;
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

    // What the progress bar says when it appears.
    static CString Loading(int rows) { return Msg(8530) + u" of " + Platform::ToText(rows); }
    static WorkspaceLines::Line LeftOut(const CString& id) {
        return {4, Platform::Fill(Msg(22005), {id, id, u"PIPES"})};
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
    Repository::CCatalogueTransfer transfer{manager};

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
