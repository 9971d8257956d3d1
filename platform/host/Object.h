// SPDX-License-Identifier: MIT
// The root of the host's class library, as the family's classes derive from it.
#pragma once

#include "platform/Export.h"

class CArchive;
class CDumpContext;

class ZEBX_EXPORT CObject {
public:
    // The class's name, for diagnostics.
    virtual const char* GetRuntimeClass() const { return "CObject"; }
    virtual ~CObject() = default;
    // The archive serialization and the two diagnostics do nothing by default.
    virtual void Serialize(CArchive&) {}
    virtual void AssertValid() const {}
    virtual void Dump(CDumpContext&) const {}

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};
