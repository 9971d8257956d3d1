// SPDX-License-Identifier: MIT
// A named value of a catalogue item.
#pragma once

#include "ZEBXNetworkCore/DataBox.h"

#include <utility>

namespace ZEBGis::Data {

class ZEBX_EXPORT CPropertyEx {
public:
    CPropertyEx(const char16_t* name, CDataBox value)
        : m_name(Platform::TextOf(name)), m_value(std::move(value)) {}

    CString GetName() const { return m_name; }
    const CDataBox& GetValue() const { return m_value; }

private:
    CString m_name;
    CDataBox m_value;
};

} // namespace ZEBGis::Data
