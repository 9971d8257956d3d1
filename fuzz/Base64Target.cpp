// SPDX-License-Identifier: MIT
// The base64 codec against its naive twin, the input taken as bytes and as base64.
#include "Target.h"
#include "ZEBXRepositoryClient/Base64.h"
#include "client/util/AnsiText.h"
#include "platform/text/Windows1250.h"
#include "support/NaiveBase64.h"

using namespace Fuzz;

namespace {

void CheckAsBytes(std::string_view bytes) {
    const std::string text =
        Repository::Base64Encode(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    Require(text == NaiveBase64::Encode(bytes), "bytes are encoded as the naive way does");
    Require(Repository::Base64Decode(text) == bytes, "what was encoded is decoded again");
    const std::size_t padding = text.size() - std::min(text.find('='), text.size());
    Require(Repository::Base64Decode(std::string_view(text).substr(0, text.size() - padding)) ==
                bytes,
            "the last group may lack its =");
}

void CheckAsBase64(std::string_view text) {
    const std::string bytes = Repository::Base64Decode(text);
    Require(bytes == NaiveBase64::Decode(text), "any text is decoded as the naive way does");
    Require(bytes.size() <= text.size() / 4 * 3 + 2, "no more bytes than the text has room for");
    Require(Repository::Base64Decode(NaiveBase64::Encode(bytes)) == bytes,
            "what was decoded survives");
}

void CheckAsText(const CString& text) {
    const CStringView read = ToFirstNul(CStringView(text));
    const CString base64 = Repository::EncodeBase64Text(text);
    Require(Repository::DecodeBase64Text(base64) == Platform::FromAnsi(Platform::ToAnsi(read)),
            "a text comes back as the code page has it");
    Require(base64.size() == (read.size() + 2) / 3 * 4, "a byte is written for each code unit");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckAsBytes(BytesOf(data, size));
    CheckAsBase64(BytesOf(data, size));
    CheckAsText(TextOf(data, size));
    return 0;
}
