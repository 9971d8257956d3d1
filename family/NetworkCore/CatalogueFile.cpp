// SPDX-License-Identifier: MIT
#include "CatalogueFile.h"

#include "CatalogueXml.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/os/File.h"
#include "platform/os/FileName.h"
#include "platform/os/Path.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>

namespace ZEBGis::Data {
namespace {

constexpr CStringView kFolder = u"Catalogues\\";
constexpr CStringView kFile = u".xml";
constexpr CStringView kPrevious = u".previous";
constexpr std::size_t kMostNameBytes = 255;

CString PathOf(CStringView support, CStringView reference) {
    if (support.empty())
        throw CatalogueError{CatalogueText(CatalogueMessage::NoSupportFolder)};
    return CString(support).append(kFolder).append(reference);
}

CString Shown(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

// One look at the whole text is enough while nothing is wrong; the items are looked at for the
// one that is to be named.
CString ReasonWhy(const CCatalog& catalog, CStringView text) {
    CString reason = TextProblem(text);
    if (reason.empty() && !catalog.GetItembyGuid(u""))
        return reason;
    CString problem = CatalogueXml::ProblemOf(catalog);
    return problem.empty() ? reason : problem;
}

} // namespace

CatalogPtr ReadCatalogueFile(CStringView support, CStringView reference) {
    const CString path = PathOf(support, reference).append(kFile);
    auto catalog = boost::make_shared<CCatalog>();
    std::string utf8;
    CString problem;
    switch (ReadXmlFile(path, utf8, problem)) {
    case XmlFileState::Missing:
        break;
    case XmlFileState::Unusable:
        throw CatalogueError{problem};
    case XmlFileState::Read:
        CatalogueXml::ReadCatalogue(XmlSource(Shown(path), std::move(utf8)), reference, *catalog);
    }
    return catalog;
}

void WriteCatalogueFile(CStringView support, CStringView reference, const CCatalog& catalog,
                        bool keepPrevious) {
    const CString stem = PathOf(support, reference);
    const CString path = CString(stem).append(kFile);
    // A file for nothing would only say that there is nothing.
    if (catalog.GetItemCount() == 0 && !Platform::PathExists(path))
        return;
    const CString text = CatalogueXml::TextOf(catalog, reference);
    if (const CString reason = ReasonWhy(catalog, text); !reason.empty())
        throw CatalogueError{CatalogueText(CatalogueMessage::NotWritten, {Shown(path), reason})};
    const CString previous = keepPrevious ? CString(stem).append(kPrevious).append(kFile) : u"";
    CString problem;
    if (!WriteXmlFile(path, previous, Platform::ToUtf8(text), problem))
        throw CatalogueError{problem};
}

bool IsFileReference(CStringView reference) {
    // "A.previous.xml" is what the file of "A" held before.
    return !Platform::FaultOfFileName(reference) && TextProblem(reference).empty() &&
           !Platform::FoldCase(reference).ends_with(kPrevious) &&
           Platform::ToUtf8(reference).size() + kPrevious.size() + kFile.size() <= kMostNameBytes;
}

} // namespace ZEBGis::Data
