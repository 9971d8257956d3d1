// SPDX-License-Identifier: MIT
#include "platform/os/FileSystem.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <algorithm>
#include <iterator>

namespace Platform {
namespace {

struct NetworkFileSystem {
    std::uint32_t type; // statfs(2)
    const char16_t* name;
};

// Source: linux/magic.h and statfs(2).
constexpr NetworkFileSystem kNetworkFileSystems[] = {
    {0x00006969, u"NFS"},  {0x0000517B, u"SMB"},    {0xFF534D42, u"CIFS"},
    {0xFE534D42, u"SMB"},  {0x5346414F, u"AFS"},    {0x6B414653, u"AFS"},
    {0x73757245, u"Coda"}, {0x0000564C, u"NCP"},    {0x65735546, u"FUSE"},
    {0x00C36400, u"Ceph"}, {0x0BD00BD0, u"Lustre"}, {0x01021997, u"9P"},
    {0x01161970, u"GFS2"}, {0x7461636F, u"OCFS2"},  {0x786F4256, u"VirtualBox folder"},
    {0x47504653, u"GPFS"}, {0x013111A8, u"IBRIX"},  {0xAAD7AAEA, u"PanFS"},
};

} // namespace

CString NetworkFileSystemOf(CStringView path) {
    std::uint32_t type = 0;
    if (System::FileSystemType(LookUp(path), type))
        return {};
    const auto found = std::find_if(std::begin(kNetworkFileSystems), std::end(kNetworkFileSystems),
                                    [&](const auto& each) { return each.type == type; });
    return found == std::end(kNetworkFileSystems) ? CString() : found->name;
}

} // namespace Platform
