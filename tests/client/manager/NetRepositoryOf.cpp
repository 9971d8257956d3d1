// SPDX-License-Identifier: MIT
#include "client/manager/NetRepositoryOf.h"

using Manager = Repository::CRepositoryStorageManager;

namespace {

struct Picture {
    using Pointer = boost::shared_ptr<Repository::CNetRepository> Manager::*;
    friend Pointer PointerTo(Picture);
};

// An explicit instantiation may name private members, which C++20 allows here alone.
template<class Tag, typename Tag::Pointer pointer>
struct Reach {
    friend typename Tag::Pointer PointerTo(Tag) { return pointer; }
};
template struct Reach<Picture, &Manager::m_netRepository>;

} // namespace

boost::shared_ptr<Repository::CNetRepository>& NetRepositoryOf(Manager& manager) {
    return manager.*PointerTo(Picture());
}
