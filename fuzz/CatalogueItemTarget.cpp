// SPDX-License-Identifier: MIT
// The element of a catalogue's item: what is read is written so that it is read again, and an
// element made of pieces of the input comes back as these pieces.
#include "FileTwin.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"

#include <boost/make_shared.hpp>

using namespace Fuzz;
using Repository::CNetCatalogueItem;
using Repository::CRepositoryFile;

namespace {

bool AreSame(CNetCatalogueItem& a, CNetCatalogueItem& b) {
    return a.GetCatalogueId() == b.GetCatalogueId() && a.GetCatalogueTag() == b.GetCatalogueTag() &&
           a.GetIsGroup() == b.GetIsGroup() && a.GetParentId() == b.GetParentId() &&
           a.GetName() == b.GetName() && a.GetCatalogueName() == b.GetCatalogueName() &&
           a.GetItemContent() == b.GetItemContent() &&
           std::equal(a.GetFiles()->begin(), a.GetFiles()->end(), b.GetFiles()->begin(),
                      b.GetFiles()->end(),
                      [](const auto& x, const auto& y) { return Fuzz::AreSame(*x, *y); });
}

// Plain attributes are written as they stand.
bool CanBePlain(const CString& text) {
    return text.find_first_of(u"\"<&") == text.npos;
}

bool IsWritable(const CNetCatalogueItem& item) {
    return CanBePlain(item.GetCatalogueId()) && CanBePlain(item.GetCatalogueTag()) &&
           CanBePlain(item.GetParentId()) && CanBePlain(item.GetName()) &&
           CanBePlain(item.GetCatalogueName());
}

void CheckRoundTrip(CNetCatalogueItem& item) {
    const CString doubled = item.Serialize();
    WStringStream stream;
    item.Serialize(stream);
    const CString single = stream.str();
    Require(doubled == single + u"</nci>", "the text form has the closing tag twice");
    for (const CString& text : {single, doubled}) {
        CNetCatalogueItem read;
        Require(read.Deserialize(text.c_str()) == 1, "an element that was written is read");
        Require(AreSame(read, item), "every field and file survives");
        Require(read.Serialize() == doubled, "the element is written the same again");
    }
}

// Reading is the same each time; files go behind those that are there.
void CheckTwice(const CString& text, CNetCatalogueItem& once) {
    CNetCatalogueItem twice = once;
    Require(twice.Deserialize(text.c_str()) == 1, "an element is read as often as one likes");
    const std::size_t files = once.GetFiles()->size();
    Require(twice.GetFiles()->size() == 2 * files, "files go behind those that are there");
    twice.GetFiles()->erase(twice.GetFiles()->begin(),
                            twice.GetFiles()->begin() + static_cast<std::ptrdiff_t>(files));
    Require(AreSame(twice, once), "reading is the same each time");
}

void CheckAsElement(const CString& text) {
    CNetCatalogueItem item;
    if (item.Deserialize(text.c_str()) == 0) {
        CNetCatalogueItem newItem;
        Require(AreSame(item, newItem), "a text that is refused changes nothing");
        return;
    }
    CheckTwice(text, item);
    if (IsWritable(item))
        CheckRoundTrip(item);
}

// The text in the code page's characters, as a base64 field brings it back.
CString AsBase64Brings(CStringView text) {
    return Platform::FromAnsi(Platform::ToAnsi(text));
}

// Each line of the input is a field; those behind the seventh are records of files.
void CheckAsFields(const CString& text) {
    auto lines = NaiveSplit(ToFirstNul(CStringView(text)), u'\n');
    lines.resize(std::max<std::size_t>(lines.size(), 7));
    CNetCatalogueItem item;
    item.SetCatalogueId(CString(lines[0]).c_str());
    item.SetCatalogueTag(CString(lines[1]).c_str());
    item.SetIsGroup(TwinNumber(lines[2]));
    item.SetParentId(CString(lines[3]).c_str());
    item.SetName(CString(lines[4]).c_str());
    item.SetCatalogueName(CString(lines[5]).c_str());
    item.SetItemContent(AsBase64Brings(lines[6]).c_str());
    for (std::size_t i = 7; i < lines.size(); ++i) {
        CString record = AsBase64Brings(lines[i]);
        std::replace(record.begin(), record.end(), u'@', u'a');
        item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>());
        item.GetFiles()->back()->Deserialize(record.c_str());
    }
    if (IsWritable(item))
        CheckRoundTrip(item);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = TextOf(data, size);
    CheckAsElement(text);
    CheckAsFields(text);
    return 0;
}
