// SPDX-License-Identifier: MIT
#include "app/MovedKinds.h"

#include <algorithm>
#include <map>
#include <utility>

namespace App {
namespace {

using Manager = Repository::CRepositoryStorageManager;

// Collects what the manager's operations would reach.
class Collector {
public:
    Collector(Manager& manager, Dependents dependents)
        : m_manager(manager), m_dependents(dependents) {}

    void Add(const Selected& selected) {
        if (selected.group == Group::GS)
            AddGs(selected.name.value_or(u""));
        else if (selected.group == Group::FOC)
            AddAll(selected, m_manager.GetFOCMetadata());
        else if (selected.group == Group::NCF)
            AddAll(selected, m_manager.GetNCFMetadata());
    }

    std::vector<MovedKind> Take() {
        std::vector<MovedKind> kinds;
        for (auto& [key, kind] : m_kinds)
            kinds.push_back(std::move(kind));
        return kinds;
    }

private:
    template<typename Kinds>
    void AddAll(const Selected& selected, const Kinds& kinds) {
        for (const auto& [id, kind] : kinds) {
            if (selected.name ? *selected.name == id : Repository::IsEnabled(*kind))
                AddKind(id, *kind);
        }
    }

    void AddKind(const CString& id, const Repository::CNCFMetadata& kind) {
        m_kinds[{Group::NCF, id}] = {Group::NCF, id, Repository::LocalFolder(kind),
                                     LocalFilesOf(kind)};
    }

    void AddKind(const CString& id, Repository::CFOCMetadata& kind) {
        MovedKind moved{Group::FOC, id, Repository::LocalFolder(kind), LocalFilesOf(kind)};
        const bool takesAlong = m_dependents == Dependents::Always ||
                                std::ranges::any_of(moved.files, &LocalFile::IsReadable);
        m_kinds[{Group::FOC, id}] = std::move(moved);
        if (!takesAlong)
            return;
        for (const CString& ncfId : kind.GetDependentNCFs()) {
            if (const auto drawings = m_manager.GetNCFMetadataById(ncfId.c_str()))
                AddKind(ncfId, *drawings);
        }
    }

    void AddGs(const CString& name) {
        m_kinds[{Group::GS, name}] = {
            Group::GS, name, {}, LocalFilesOf(m_manager.GetFileManagerById(u"GS"))};
    }

    Manager& m_manager;
    Dependents m_dependents;
    std::map<std::pair<Group, CString>, MovedKind> m_kinds;
};

} // namespace

std::vector<MovedKind> MovedKinds(Manager& manager, const std::vector<Selected>& selection,
                                  Dependents dependents) {
    Collector collector(manager, dependents);
    for (const Selected& selected : selection)
        collector.Add(selected);
    return collector.Take();
}

} // namespace App
