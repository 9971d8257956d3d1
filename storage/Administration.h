// SPDX-License-Identifier: MIT
// The plug-in's export beside the backend; see its public header.
#pragma once

#include "storage/RepositoryAccess.h"

namespace Storage {

class Administration : public RepositoryAdministration {
public:
    explicit Administration(boost::shared_ptr<RepositoryAccess> access)
        : m_access(std::move(access)) {}

    Problem Connect(CStringView address, bool create, CString& problemText) override;
    RepositoryState State() override;
    Problem List(std::vector<StoredFile>& files, std::vector<StoredGS>& settings,
                 CString& problemText) override;
    Problem ListItems(std::vector<StoredItem>& catalogueItems, std::vector<StoredItem>& definitions,
                      CString& problemText) override;
    Problem Revisions(std::int64_t before, std::size_t count, std::vector<RevisionEntry>& revisions,
                      CString& problemText) override;
    Problem CheckNames(const std::vector<NamedFile>& files, CString& problemText) override;
    CString HashOf(std::string_view bytes) override;
    Problem Check(std::vector<Finding>& findings, CheckCounts& counts,
                  CString& problemText) override;
    void SetApplication(CStringView application) override;
    Problem Create(CStringView address, CString& problemText) override;
    Problem Upgrade(std::int32_t& from, std::int32_t& to, CString& problemText) override;
    Problem Grant(CStringView user, Right right, CString& problemText) override;
    Problem Users(std::vector<RepositoryUser>& users, CString& problemText) override;
    Problem Copy(CStringView from, CStringView to, const TellCopied& tell, CopyCounts& counts,
                 CString& problemText) override;
    Problem TakeLastProblem() override { return m_access->TakeLastProblem(); }

private:
    template<typename Work>
    Problem Try(CString& problemText, Work work) noexcept;

    boost::shared_ptr<RepositoryAccess> m_access;
};

} // namespace Storage
