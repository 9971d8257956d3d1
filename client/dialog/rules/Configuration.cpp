// SPDX-License-Identifier: MIT
#include "client/dialog/rules/Configuration.h"

#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"
#include "client/util/Trace.h"

namespace Repository {

bool Configuration::HasConnectionParameters() const {
    return Storage().HasConnectionParameters() != 0;
}

bool Configuration::IsAdmin(TraceScope& trace) const {
    const bool isAdmin = m_manager.AmIAdmin() != 0;
    trace.WriteLine(isAdmin ? "Admin mode ON" : "Admin mode OFF");
    return isAdmin;
}

void Configuration::EditConnection() const {
    Storage().EditConnectionParameters();
    Storage().ApplyConnectionParameters();
}

void Configuration::LoadAll(const LoadAllActions& actions) {
    TraceScope trace(kMainDialogSource, __LINE__,
                     "CDlgNetworkRepositoryConfiguration::OnBnClickedButtonLoadall");
    AtBorder(actions.foc);
    trace.WriteLine("Marker");
    AtBorder(actions.ncf);
    trace.WriteLine("Marker");
    AtBorder(actions.gs);
    trace.WriteLine("Marker");
    AtBorder(actions.catalogues);
}

StorageBackend& Configuration::Storage() const {
    return *static_cast<StorageBackend*>(m_manager.GetStorage().get());
}

} // namespace Repository
