// SPDX-License-Identifier: MIT
// The module's only command: whether the installation has every drawing that the
// assembly-schemes catalogue names.
#pragma once

namespace Repository {

void CheckAssemblySchemes();

} // namespace Repository
