// SPDX-License-Identifier: MIT
#include "client/dialog/rules/Sending.h"

#include "platform/os/Path.h"
#include "platform/text/Utf8.h"

#include <functional>

namespace Repository {
namespace {

using ZEBGis::CModuleConfiguration;
using ZEBGis::Data::CCatalogMetadata;
using ZEBGis::Workspace::MessageFailure;

constexpr int kMsgAllNCFKinds = 10029;
constexpr int kMsgAllFOCKinds = 10375;
constexpr int kMsgAllCatalogues = 10376;
constexpr int kMsgGSSent = 10373;
constexpr int kMsgGSNotSent = 10374;
constexpr int kMsgSent = 10712;
constexpr int kMsgNotSent = 10713;
constexpr int kMsgFileNotRead = 22008;
constexpr int kMsgNoGS = 22009;

CString TextForAll(int msgNum) {
    return Platform::Fill(u"<%s>", {MsgText(msgNum)});
}

CString ShownPath(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

template<class Kind>
SendEntries<Kind> EntriesOf(const std::map<CString, boost::shared_ptr<Kind>>& kinds,
                            int msgForAll) {
    SendEntries<Kind> entries{{nullptr, TextForAll(msgForAll)}};
    for (const KindRow<Kind>& row : RowsOf(kinds))
        entries.push_back({row.kind, row.name});
    return entries;
}

// The manager passes over local files that it cannot read; the user must not.
int TellingUnread(const std::function<int()>& send) {
    TakeUnreadFiles(); // older ones are none of ours
    const int result = send();
    for (const UnreadFile& file : TakeUnreadFiles())
        LogMsg(MessageFailure, MsgText(kMsgFileNotRead, {ShownPath(file.path), file.reason}));
    return result;
}

} // namespace

SendEntries<CCatalogMetadata> Sending::Catalogues() {
    m_catalogues = VisibleCatalogues();
    SendEntries<CCatalogMetadata> entries{{nullptr, TextForAll(kMsgAllCatalogues)}};
    for (const CatalogueRow& row : m_catalogues)
        entries.push_back({row.metadata.get(), row.metadata->GetCatalogNameUI()});
    return entries;
}

SendEntries<CNCFMetadata> Sending::NCFKinds() const {
    return EntriesOf(m_manager.GetNCFMetadata(), kMsgAllNCFKinds);
}

SendEntries<CFOCMetadata> Sending::FOCKinds() const {
    return EntriesOf(m_manager.GetFOCMetadata(), kMsgAllFOCKinds);
}

void Sending::SendGS() const {
    const auto* const configuration = CModuleConfiguration::Instance();
    const CString xml = configuration->GetCurrentGSXML();
    if (xml.empty())
        LogMsg(MessageFailure, MsgText(kMsgNoGS, {ShownPath(configuration->GetPath(u"support"))}));
    LogOutcome(!xml.empty() && m_manager.SaveGS(xml.c_str(), nullptr) > 0, kMsgGSSent,
               kMsgGSNotSent);
}

void Sending::SendNCF(const CNCFMetadata* kind) const {
    const int isSent = TellingUnread(
        [&] { return kind ? m_manager.SaveNCF(kind->GetId().c_str()) : m_manager.SaveAllNCFs(); });
    LogOutcome(isSent != 0, kMsgSent, kMsgNotSent);
}

void Sending::SendFOC(const CFOCMetadata* kind) const {
    const int isSent = TellingUnread([&] {
        return kind ? m_manager.SaveFOC(kind->GetId().c_str(), 1) : m_manager.SaveAllFOC(1);
    });
    LogOutcome(isSent != 0, kMsgSent, kMsgNotSent);
}

void Sending::SendCatalogues(const CCatalogMetadata* catalogue) const {
    CCatalogueTransfer transfer(m_manager);
    for (const CatalogueRow& row : m_catalogues)
        if (!catalogue || catalogue == row.metadata.get())
            transfer.SendCatalog(*row.metadata);
}

} // namespace Repository
