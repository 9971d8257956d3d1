// SPDX-License-Identifier: MIT
#include "client/manager/FileManagers.h"

using Manager = Repository::CRepositoryStorageManager;

namespace {

struct Registry {
    using Pointer = Manager::FileManagers Manager::*;
    friend Pointer PointerTo(Registry);
};

// An explicit instantiation may name private members, which C++20 allows here alone.
template<class Tag, typename Tag::Pointer pointer>
struct Reach {
    friend typename Tag::Pointer PointerTo(Tag) { return pointer; }
};
template struct Reach<Registry, &Manager::m_fileManagers>;

} // namespace

Manager::FileManagers& FileManagersOf(Manager& manager) {
    return manager.*PointerTo(Registry());
}
