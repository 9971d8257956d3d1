// SPDX-License-Identifier: MIT
#include "platform/os/Module.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Utf8.h"

#include <dlfcn.h>

namespace Platform {

ModuleHandle LoadModule(CStringView path, CString* reason) {
    std::string native = LookUp(path);
    if (KindOfPath(path) == PathKind::Other || native.find('\0') != std::string::npos) {
        // The loader would wait for the other end of a pipe.
        if (reason)
            *reason = CString(path) + u": not a file";
        return nullptr;
    }
    // Without a folder, the loader would search its own ones; an empty name would give
    // the program itself.
    if (native.find('/') == std::string::npos)
        native.insert(0, "./");
    void* module = ::dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!module && reason)
        *reason = FromUtf8(::dlerror());
    return module;
}

void* FindExport(ModuleHandle module, const char* name) {
    return module && name ? ::dlsym(module, name) : nullptr;
}

} // namespace Platform
