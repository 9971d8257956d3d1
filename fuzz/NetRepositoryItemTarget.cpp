// SPDX-License-Identifier: MIT
// The record of a definition against a plain reading of it.
#include "FileTwin.h"
#include "ZEBXRepositoryClient/NetRepositoryItem.h"

#include <boost/make_shared.hpp>

using namespace Fuzz;
using Repository::CNetRepositoryItem;
using Repository::CRepositoryFile;

namespace {

constexpr CStringView kEmptyFile = u"######0#|";

CNetRepositoryItem FilledItem() {
    CNetRepositoryItem item;
    item.SetId(u"old id");
    item.SetName(u"old name");
    item.SetEntityType(1);
    item.SetTopologyFunction(2);
    item.SetTopologyType(3);
    item.SetConfigurationXML(u"<old/>");
    item.SetRepositoryName(u"old repository");
    item.SetRepositoryTag(u"old tag");
    item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>(FilledFile()));
    return item;
}

bool AreSame(CNetRepositoryItem& a, CNetRepositoryItem& b) {
    return a.GetId() == b.GetId() && a.GetName() == b.GetName() &&
           a.GetEntityType() == b.GetEntityType() &&
           a.GetTopologyFunction() == b.GetTopologyFunction() &&
           a.GetTopologyType() == b.GetTopologyType() &&
           a.GetConfigurationXML() == b.GetConfigurationXML() &&
           a.GetRepositoryName() == b.GetRepositoryName() &&
           a.GetRepositoryTag() == b.GetRepositoryTag() &&
           std::equal(a.GetFiles()->begin(), a.GetFiles()->end(), b.GetFiles()->begin(),
                      b.GetFiles()->end(),
                      [](const auto& x, const auto& y) { return Fuzz::AreSame(*x, *y); });
}

int TwinDeserialize(CNetRepositoryItem& item, CStringView record) {
    item.GetFiles()->clear();
    const auto fields = NaiveSplit(record, u'$');
    if (fields.size() < 8)
        return 0;
    item.SetId(CString(fields[0]).c_str());
    item.SetName(TwinBase64Text(fields[1]).c_str());
    item.SetEntityType(TwinNumber(fields[2]));
    item.SetTopologyFunction(TwinNumber(fields[3]));
    item.SetTopologyType(TwinNumber(fields[4]));
    item.SetConfigurationXML(TwinBase64Text(fields[5]).c_str());
    item.SetRepositoryTag(TwinBase64Text(fields[6]).c_str());
    item.SetRepositoryName(TwinBase64Text(fields[7]).c_str());
    if (fields.size() > 8)
        for (const CStringView piece : NaiveSplit(fields[8], u'|')) {
            item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>());
            Fuzz::TwinDeserialize(*item.GetFiles()->back(), piece);
        }
    return 1;
}

// A reader gets one more, empty, file than was written.
void CheckRoundTrip(CNetRepositoryItem item) {
    const CString record = item.Serialize();
    const bool hasFiles = !item.GetFiles()->empty();
    CNetRepositoryItem read = FilledItem();
    Require(read.Deserialize(record.c_str()) == 1, "a record that was written is read");
    item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>());
    Require(AreSame(read, item), "every field survives, and one empty file comes along");
    const CString withoutEnd = hasFiles ? record.substr(0, record.size() - 1) : record;
    Require(read.Serialize() == withoutEnd + CString(kEmptyFile) + u"$",
            "written again, the record has the empty file and is else the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString record = TextOf(data, size);
    CNetRepositoryItem item = FilledItem();
    CNetRepositoryItem twin = FilledItem();
    const int result = item.Deserialize(record.c_str());
    Require(result == TwinDeserialize(twin, ToFirstNul(CStringView(record))),
            "a record is refused only when it has fewer than eight fields");
    Require(AreSame(item, twin), "a record is read as its plain reading");
    CheckRoundTrip(item);
    return 0;
}
