// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetRepositoryItem.h"

#include "client/records/RepositoryFileRecord.h"
#include "client/util/AnsiText.h"
#include "client/util/Border.h"
#include "client/util/Split.h"
#include "platform/text/Numbers.h"

#include <boost/make_shared.hpp>

namespace Repository {

CString CNetRepositoryItem::Serialize() const {
    return AtBorder(CString(), [this] {
        CString text = m_id + u'$';
        text += EncodeBase64Text(m_name) + u'$';
        text += Platform::ToText(m_entityType) + u'$';
        text += Platform::ToText(m_topologyFunction) + u'$';
        text += Platform::ToText(m_topologyType) + u'$';
        text += EncodeBase64Text(m_configurationXml) + u'$';
        // The tag before the name, unlike in the item: kept, readers count on it.
        text += EncodeBase64Text(m_repositoryTag) + u'$';
        text += EncodeBase64Text(m_repositoryName) + u'$';
        const std::size_t withoutFiles = text.size();
        for (const auto& file : m_files)
            if (file) {
                AppendRecord(*file, text);
                text += u'|';
            }
        if (text.size() > withoutFiles)
            text += u'$';
        return text;
    });
}

int CNetRepositoryItem::Deserialize(const char16_t* record) {
    m_files.clear(); // also when the text is then rejected: kept
    return AtBorder(0, [&] {
        const auto tokens = SplitFields(Platform::TextOf(record), u'$');
        if (tokens.size() < 8)
            return 0;
        m_id = tokens[0];
        m_name = DecodeBase64Text(tokens[1]);
        m_entityType = Platform::ToInteger(tokens[2]);
        m_topologyFunction = Platform::ToInteger(tokens[3]);
        m_topologyType = Platform::ToInteger(tokens[4]);
        m_configurationXml = DecodeBase64Text(tokens[5]);
        m_repositoryTag = DecodeBase64Text(tokens[6]);
        m_repositoryName = DecodeBase64Text(tokens[7]);
        if (tokens.size() == 8)
            return 1;
        // The empty piece behind the last "|" becomes a file as well: kept.
        for (const CStringView piece : SplitFields(tokens[8], u'|')) {
            const auto file = boost::make_shared<CRepositoryFile>();
            ReadRecord(*file, piece);
            m_files.push_back(file);
        }
        return 1;
    });
}

} // namespace Repository
