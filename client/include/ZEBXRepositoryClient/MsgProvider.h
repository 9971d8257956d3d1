// SPDX-License-Identifier: MIT
// Texts by message number, for modules that do not know the family's core library.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Repository {

class ZEBX_EXPORT IMsgProvider {
public:
    // Fills `buffer` with the text of that message and returns it.
    virtual CString GetMsg(CString& buffer, int number) = 0;

protected:
    ~IMsgProvider() = default;
};

} // namespace Repository
