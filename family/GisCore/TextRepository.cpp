// SPDX-License-Identifier: MIT
#include "TextRepository.h"

#include "platform/text/Utf8.h"

namespace ZEBGis {

TextRepository::TextRepository(CString tag, const DefinitionsText& text) : m_tag(std::move(tag)) {
    for (const auto& definition : text.Definitions())
        m_items.Add(text.MakeItem(definition));
}

CString TextRepository::CreateRepositoryXML(const char16_t* itemXml) const try {
    std::string root = "<definitions>";
    SetAttribute(root, "tag", m_tag);
    return Platform::FromUtf8(root) + CString(Platform::TextOf(itemXml)) + u"</definitions>";
} catch (...) {
    return {};
}

} // namespace ZEBGis
