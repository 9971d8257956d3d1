// SPDX-License-Identifier: MIT
// The installation as the family's modules see it: its folders, its message table,
// the optional kinds that are switched on, and the local general settings (GS).
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <map>

namespace ZEBGis {

class ZEBX_EXPORT CModuleConfiguration {
public:
    static CModuleConfiguration* Instance();

    // The folder named by `key`, with a "\" at its end: "install" the installation
    // folder, "support" the support folder; case does not matter.  Any other key gives
    // the empty text.  The folder need not exist.
    CString GetPath(const char16_t* key) const;

    // The text of a message in the user's language (messages/<language> in the
    // installation folder).  A number that the table lacks gives a text that names the
    // number; never empty, never fails.
    CString GetMsg(int number) const;

    // Non-zero when the optional kind of that identifier is switched on in zebx.ini
    // ([kinds] enabled); exact and case-sensitive.
    int IsMetadataIdEnabled(const char16_t* id) const;

    // The local GS as one text, byte for byte what the file holds (see
    // Platform::FromUtf8); empty when there is none or it cannot be read.
    CString GetCurrentGSXML() const;

    // Makes `xml` the local GS.  Written whole or not at all; what was there before is
    // kept beside it as GeneralSettings.previous.xml.  The same text again writes
    // nothing.  `reserved` is not used.  Returns 1, or 0 when it could not be written,
    // and then the old GS stands.
    int ForceSaveGSLocal(const char16_t* xml, const char16_t* reserved);

private:
    CModuleConfiguration() = default;
    mutable CString m_messagesPath; // the file that m_messages was read from
    mutable std::map<int, CString> m_messages;
};

} // namespace ZEBGis
