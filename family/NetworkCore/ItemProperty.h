// SPDX-License-Identifier: MIT
// A property as the XML text has it: a value that does not fit its type, and a type that is
// not known, stay as they are.
#pragma once

#include "ZEBXNetworkCore/DataBox.h"

#include "XmlNode.h"

#include <memory>

namespace ZEBGis::Data {

struct ItemProperty {
    // What other tools put into the element.
    struct Extras {
        XmlAttributes attributes;
        XmlNodes nodes;
    };

    // The value as its type reads it; as a text when it does not fit.
    CDataBox GetValue() const;
    void SetValue(const CDataBox& box);

    CString name;
    CString type; // empty: text
    CString value;
    std::shared_ptr<const Extras> extras; // null: none
};

} // namespace ZEBGis::Data
