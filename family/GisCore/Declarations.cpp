// SPDX-License-Identifier: MIT
#include "Declarations.h"

#include "Texts.h"
#include "WholeNumber.h"
#include "XmlSource.h"
#include "ZEBXGisCore/XmlFile.h"

#include "platform/os/FileName.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis {
namespace {

// What a file system takes, less what is put behind the tag.
constexpr std::size_t kMaxTagBytes = 200;
constexpr CStringView kPrevious = u".previous";

// Throws XmlFault, without a place.
[[noreturn]] void Refuse(Message message, const CString& tag, CStringView second = {}) {
    throw XmlFault{0, {}, Text(message, {tag, second})};
}

Message ReasonFor(Platform::FileNameFault fault) {
    using Platform::FileNameFault;
    switch (fault) {
    case FileNameFault::Empty:
        return Message::TagEmpty;
    case FileNameFault::IsFolder:
        return Message::TagIsFolder;
    case FileNameFault::Separator:
    case FileNameFault::Colon:
        return Message::TagSeparator;
    case FileNameFault::Control:
        return Message::TagControl;
    case FileNameFault::NotText:
        return Message::TagNoText;
    case FileNameFault::TooLong:
        return Message::TagTooLong;
    case FileNameFault::Reserved:
        break;
    }
    return Message::TagReserved;
}

// The tag becomes the name of a file.
void CheckTag(const CString& tag) {
    if (const auto fault = Platform::FaultOfFileName(tag))
        Refuse(ReasonFor(*fault), tag);
    if (Platform::ToUtf8(tag).size() > kMaxTagBytes)
        Refuse(Message::TagTooLong, tag);
    // Its file would be the one that keeps what another tag's file held before.
    if (Platform::FoldCase(tag).ends_with(kPrevious))
        Refuse(Message::TagOfThePrevious, tag, kPrevious);
}

std::vector<enmEntityType> ReadEntityTypes(const CString& text) {
    std::vector<enmEntityType> types;
    for (std::size_t i = 0; (i = text.find_first_not_of(u" \t\r\n", i)) != CString::npos;) {
        const std::size_t end = std::min(text.find_first_of(u" \t\r\n", i), text.size());
        const auto number = WholeNumber(CStringView(text).substr(i, end - i));
        if (!number)
            throw XmlFault{0, {}, Text(Message::NoEntityTypes, {text})};
        types.push_back(static_cast<enmEntityType>(*number));
        i = end;
    }
    return types;
}

Declaration ReadDeclaration(const pugi::xml_node& element) {
    Declaration declaration;
    declaration.tag = TextOf(element, "tag");
    CheckTag(declaration.tag);
    declaration.entityTypes = ReadEntityTypes(TextOf(element, "entityTypes"));
    for (const pugi::xml_node name : element.children("name")) {
        const CString text = Platform::FromUtf8(name.child_value());
        if (!Platform::Trim(text).empty())
            declaration.names.emplace(TextOf(name, "language"), Platform::Trim(text));
    }
    return declaration;
}

// A tag that differs by case alone would have the other one's file.
bool IsNew(const Declaration& declaration, const std::vector<Declaration>& known) {
    for (const Declaration& other : known) {
        if (other.tag == declaration.tag)
            return false;
        if (Platform::FoldCase(other.tag) == Platform::FoldCase(declaration.tag))
            Refuse(Message::TagDiffersByCase, declaration.tag, other.tag);
    }
    return true;
}

void ReadAll(CStringView path, const XmlSource& source, std::vector<Declaration>& declarations,
             std::vector<CString>& problems) {
    if (std::string_view(source.Root().name()) != "definitions")
        throw XmlFault{source.LineOf(source.Root()),
                       {},
                       Text(Message::OtherRoot, {Platform::FromUtf8(source.Root().name())})};
    for (const pugi::xml_node element : source.Root().children("repository")) {
        try {
            const Declaration declaration = ReadDeclaration(element);
            if (IsNew(declaration, declarations))
                declarations.push_back(declaration);
        } catch (XmlFault& fault) {
            fault.line = source.LineOf(element);
            problems.push_back(Told(path, fault));
        }
    }
}

} // namespace

CString Declaration::NameIn(const CString& language) const {
    for (const CString& wanted : {language, CString(u"en")}) {
        if (const auto found = names.find(wanted); found != names.end())
            return found->second;
    }
    return names.empty() ? tag : names.begin()->second;
}

bool Declaration::Allows(enmEntityType type) const {
    return entityTypes.empty() || std::ranges::find(entityTypes, type) != entityTypes.end();
}

void ReadDeclarations(CStringView path, std::vector<Declaration>& declarations,
                      std::vector<CString>& problems) {
    std::string utf8;
    CString problem;
    const XmlFileState state = ReadXmlFile(path, utf8, problem);
    if (state == XmlFileState::Unusable)
        problems.push_back(problem);
    if (state != XmlFileState::Read)
        return;
    try {
        ReadAll(path, XmlSource(std::move(utf8)), declarations, problems);
    } catch (const XmlFault& fault) {
        problems.push_back(Told(path, fault));
    }
}

} // namespace ZEBGis
