// SPDX-License-Identifier: MIT
#include "AssemblySchemesCommand.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "client/util/Border.h"
#include "platform/host/Prompt.h"

namespace Repository {
namespace {

constexpr int kMsgCatalogueLibraryMissing = 22001;

} // namespace

// The drawings' names stand in a catalogue, and the family's catalogue library that reads
// catalogues does not exist yet.  A count of 0 would read as "nothing is missing", so the
// command says that it looked at nothing.
void CheckAssemblySchemes() {
    AtBorder([] {
        const auto configuration = ZEBGis::CModuleConfiguration::Instance();
        acutPrintf(u"\n%s", configuration->GetMsg(kMsgCatalogueLibraryMissing).c_str());
    });
}

} // namespace Repository
