// SPDX-License-Identifier: MIT
#include "app/Definitions.h"
#include "app/Doctor.h"

#include "ZEBXNetworkCore/CatalogManager.h"
#include "platform/text/Numbers.h"

namespace App {
namespace {

using ZEBGis::CRepositoryManager;
using ZEBGis::Data::CCatalogManager;

// What came of reading everything of one sort.
class Reading {
public:
    Reading(const Tell& tell, const char* id, Message label)
        : m_tell(tell), m_id(id), m_label(label) {}

    void TellDeclarations(const std::vector<CString>& problems) {
        for (const CString& problem : problems)
            m_tell({m_id, m_label, Health::Warning, problem, Text(Message::AdviceDeclaration)});
        m_isWell = m_isWell && problems.empty();
    }
    void CountRead(std::size_t items) {
        ++m_files;
        m_items += static_cast<std::int64_t>(items);
    }
    void TellUnread(const CString& problem) {
        m_tell({m_id, m_label, Health::Failure, problem, Text(Message::AdviceUnreadCatalogue),
                ExitStatus::LocalFile});
        m_isWell = false;
    }
    void Finish() const {
        if (m_isWell)
            m_tell({m_id, m_label, Health::Ok,
                    Text(Message::DeclaredWithItems,
                         {Platform::ToText(m_files), Platform::ToText(m_items)})});
    }

private:
    const Tell& m_tell;
    const char* m_id;
    Message m_label;
    bool m_isWell = true;
    std::int64_t m_files = 0;
    std::int64_t m_items = 0;
};

} // namespace

void ExamineCatalogues(const Tell& tell) {
    auto& catalogues = *CCatalogManager::Instance();
    Reading reading(tell, "catalogues", Message::DoctorCatalogues);
    reading.TellDeclarations(catalogues.GetRegistryProblems());
    for (const auto& metadata : catalogues.GetCatalogRegistry()) {
        const auto catalogue =
            catalogues.GetCatalog(metadata->GetCatalogReference().c_str(), /*load*/ 1);
        if (catalogue)
            reading.CountRead(catalogue->GetItemCount());
        else
            reading.TellUnread(catalogues.GetProblem());
    }
    reading.Finish();
}

void ExamineDefinitions(const Tell& tell) {
    auto& definitions = *CRepositoryManager::Instance();
    Reading reading(tell, "definitions", Message::DoctorDefinitions);
    reading.TellDeclarations(definitions.GetDeclarationProblems());
    for (const auto& [tag, factory] : definitions.GetRepositoryFactories()) {
        CString problem;
        const LocalDefinitions here(definitions.ReadDefinitions(tag.c_str(), problem), {factory});
        if (here)
            reading.CountRead(here->GetRepositoryItemList().GetCount());
        else
            reading.TellUnread(problem);
    }
    reading.Finish();
}

} // namespace App
