// SPDX-License-Identifier: MIT
// The test of what the window's fields say, and its report.
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"
#include "storage/window/ConnectionFields.h"

namespace Storage {

struct FieldsTrial {
    bool works = false;
    CString report; // a line a step, each led by a sign and a word
    // The first field that cannot stay as it is; then nothing was tried.
    std::optional<Field> wrong;
    Connection connection; // what was tried
};

// Tries the connection that the fields make.  `create` counts for a file.  The address of the
// user's own repository becomes the empty one, which follows the user's folders.
FieldsTrial TestFields(const ConnectionFields& fields, bool create,
                       IConnectionParameters& parameters);

} // namespace Storage
