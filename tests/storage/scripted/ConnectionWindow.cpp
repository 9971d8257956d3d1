// SPDX-License-Identifier: MIT
// A connection window that shows nothing: it does what a test says.
#include "storage/scripted/ConnectionWindow.h"

namespace {

ConnectionWindowScript g_script;

} // namespace

extern "C" ZEBX_EXPORT int EditRepositoryConnection(Storage::IConnectionParameters& parameters,
                                                    Storage::Connection& edited) {
    return g_script.onEdit ? g_script.onEdit(parameters, edited) : 0;
}

extern "C" ZEBX_EXPORT void WhyNoWindows(CString& reason) {
    reason = g_script.whyNoWindows;
}

extern "C" ZEBX_EXPORT void SetConnectionWindowScript(const ConnectionWindowScript& script) {
    g_script = script;
}
