// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetCatalogueItem.h"

#include "client/records/RepositoryFileRecord.h"
#include "client/util/AnsiText.h"
#include "client/util/Border.h"
#include "client/util/Split.h"
#include "client/util/XmlDocument.h"
#include "platform/text/Numbers.h"

#include <boost/make_shared.hpp>

namespace Repository {
namespace {

constexpr CStringView kEndTag = u"</nci>";

CString FilesText(const std::vector<boost::shared_ptr<CRepositoryFile>>& files) {
    CString text;
    for (const auto& file : files)
        if (file) {
            AppendRecord(*file, text);
            text += u'@';
        }
    return text;
}

void ReadFiles(CStringView text, std::vector<boost::shared_ptr<CRepositoryFile>>& files) {
    std::vector<CStringView> pieces;
    SplitNonEmpty(text, u'@', pieces);
    for (const CStringView piece : pieces) {
        const auto file = boost::make_shared<CRepositoryFile>();
        ReadRecord(*file, piece);
        files.push_back(file);
    }
}

} // namespace

void CNetCatalogueItem::Serialize(WStringStream& stream) const {
    AtBorder([&] {
        const CString text = Serialize();
        if (!text.empty())
            stream.write(text.data(), static_cast<std::streamsize>(text.size() - kEndTag.size()));
    });
}

CString CNetCatalogueItem::Serialize() const {
    return AtBorder(CString(), [this] {
        const CString content = EncodeBase64Text(m_itemContent);
        const CString files = EncodeBase64Text(FilesText(m_files));
        constexpr std::size_t kShortFields = 512;
        CString text;
        text.reserve(content.size() + files.size() + kShortFields);
        text += u"<nci catId=\"" + m_catalogueId;
        text += u"\" catTag=\"" + m_catalogueTag;
        text += u"\" isGroup=\"" + Platform::ToText(m_isGroup);
        text += u"\" parentId=\"" + m_parentId;
        text += u"\" strName=\"" + m_name;
        text += u"\" catName=\"" + m_catalogueName;
        text += u"\" content=\"";
        text += content;
        text += u"\" files=\"";
        text += files;
        text += u"\" >";
        // Twice: kept, existing records have both.
        text += kEndTag;
        text += kEndTag;
        return text;
    });
}

int CNetCatalogueItem::Deserialize(const char16_t* text) {
    return AtBorder(0, [&] {
        XmlDocument document;
        document.SetText(text);
        if (!document.FindElement(u"nci"))
            return 0;
        // By way of the setters, so that a reference to NUL ends a text as a NUL does.
        SetCatalogueId(document.GetAttribute(u"catId").c_str());
        SetCatalogueTag(document.GetAttribute(u"catTag").c_str());
        m_isGroup = Platform::ToInteger(document.GetAttribute(u"isGroup"));
        SetParentId(document.GetAttribute(u"parentId").c_str());
        SetName(document.GetAttribute(u"strName").c_str());
        SetCatalogueName(document.GetAttribute(u"catName").c_str());
        m_itemContent = DecodeBase64Text(document.GetAttribute(u"content"));
        ReadFiles(DecodeBase64Text(document.GetAttribute(u"files")), m_files);
        return 1;
    });
}

} // namespace Repository
