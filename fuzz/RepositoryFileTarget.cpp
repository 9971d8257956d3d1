// SPDX-License-Identifier: MIT
// The record of a file, UTF-16 and in the code page, against a plain reading of it.
#include "FileTwin.h"

using namespace Fuzz;
using Repository::CRepositoryFile;

namespace {

// What was read is written so that it is read again, whatever the record was.
void CheckRoundTrip(CRepositoryFile file) {
    const CString record = RecordOf(file);
    // Written in UTF-16, a content ends at its first NUL.
    file.SetFileContent(std::string(ToFirstNul(std::string_view(file.GetFileContent()))));

    CRepositoryFile read = FilledFile();
    Require(read.Deserialize(record.c_str()) == 1, "a record that was written is read");
    Require(AreSame(read, file), "every field survives");
    Require(RecordOf(read) == record, "the record is written the same again");

    WStringStream stream;
    stream << u"before";
    file.Serialize(stream);
    Require(stream.str() == u"before" + record, "the stream gets the same record");
}

void CheckWide(const CString& record) {
    CRepositoryFile file = FilledFile();
    Require(file.Deserialize(record.c_str()) == 1, "every wide record is read");
    CRepositoryFile twin = FilledFile();
    TwinDeserialize(twin, ToFirstNul(CStringView(record)));
    Require(AreSame(file, twin), "a wide record is read as its plain reading");
    CheckRoundTrip(file);
}

void CheckNarrow(const std::string& record) {
    CRepositoryFile file = FilledFile();
    Require(file.Deserialize(record) == 1, "every narrow record is read");
    CRepositoryFile twin = FilledFile();
    TwinDeserialize(twin, std::string_view(record));
    Require(AreSame(file, twin), "a narrow record is read as its plain reading");
    CheckRoundTrip(file);

    CRepositoryFile again = FilledFile();
    again.Deserialize(Platform::ToAnsi(RecordOf(file)));
    Require(RecordOf(again) == RecordOf(file), "both forms of a record say the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckWide(TextOf(data, size));
    CheckNarrow(std::string(BytesOf(data, size)));
    return 0;
}
