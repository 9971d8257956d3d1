// SPDX-License-Identifier: MIT
#include "storage/window/ServerUri.h"
#include "storage/window/PercentEncoding.h"

#include <gtest/gtest.h>

namespace Storage {
namespace {

ServerUri Read(CStringView text) {
    auto uri = ServerUri::Parse(text);
    EXPECT_TRUE(uri) << testing::PrintToString(CString(text));
    return uri.value_or(ServerUri());
}

CString ValueIn(CStringView text, CStringView keyword) {
    return Read(text).Value(keyword);
}

CString WithValue(CStringView text, CStringView keyword, CStringView value) {
    ServerUri uri = Read(text);
    uri.SetValue(keyword, value);
    return uri.Text();
}

TEST(PercentEncoding, EncodesAllButPlainCharactersOverUtf8) {
    EXPECT_EQ(PercentEncode(u"aZ09-._~"), u"aZ09-._~");
    EXPECT_EQ(PercentEncode(u"a b/č%@:"), u"a%20b%2F%C4%8D%25%40%3A");
    EXPECT_EQ(PercentEncode(u"::1%eth0", u":"), u"::1%25eth0");
    EXPECT_EQ(PercentEncode(u""), u"");
}

TEST(PercentEncoding, DecodesWhatItEncodes) {
    EXPECT_EQ(PercentDecode(u"a%20b%2f%C4%8D%25"), u"a b/č%");
    EXPECT_EQ(PercentDecode(u"plain+č"), u"plain+č");
    const CString bytesThatAreNoText = {u'\xDCFF', u'a'};
    EXPECT_EQ(PercentEncode(bytesThatAreNoText), u"%FFa");
    EXPECT_EQ(PercentDecode(u"%FFa"), bytesThatAreNoText);
}

TEST(PercentEncoding, WhatIsCutOrNullIsNoEncoding) {
    for (const CStringView text : {u"%", u"a%2", u"%zz", u"%2x", u"%00"})
        EXPECT_FALSE(PercentDecode(text)) << testing::PrintToString(CString(text));
}

TEST(ServerUri, PartsAreFoundAndDecoded) {
    const ServerUri uri =
        Read(u"postgresql://ana%40zeb@db.example:5433/z%20e%2Fb?sslmode=require&service=s");
    EXPECT_EQ(uri.Value(u"user"), u"ana@zeb");
    EXPECT_EQ(uri.Value(u"host"), u"db.example");
    EXPECT_EQ(uri.Value(u"port"), u"5433");
    EXPECT_EQ(uri.Value(u"dbname"), u"z e/b");
    EXPECT_EQ(uri.Value(u"sslmode"), u"require");
    EXPECT_EQ(uri.Value(u"service"), u"s");
    EXPECT_EQ(uri.Value(u"options"), u"");
}

TEST(ServerUri, WhatNobodyChangesComesOutAsItWentIn) {
    for (const CStringView text :
         {u"postgresql://", u"postgres://h", u"PostgreSQL://h/", u"postgresql://h:/db",
          u"postgresql://@h", u"postgresql:///", u"postgresql:///db?host=/tmp&port=5433",
          u"postgresql://%61na@h:5432/d%2fb?", u"postgresql://h/d?a=1&b=&=d&", u"postgresql://h?",
          u"postgresql://[::1]:5432/d", u"postgresql://[fe80::1%25eth0]/d",
          u"postgresql://one:5432,[::1]:5433,three/d?target_session_attrs=any",
          u"postgresql://%2Fvar%2Frun/d", u"postgresql://h/d?options=-c%20geqo%3Doff",
          u"postgresql://h/d?application_name=a@b&x=%7e", u"postgresql://h/žaba"}) {
        EXPECT_EQ(Read(text).Text(), text);
        // Set to what it is, nothing changes either.
        ServerUri uri = Read(text);
        for (const CStringView keyword : {u"host", u"port", u"user", u"dbname", u"sslmode"})
            uri.SetValue(keyword, uri.Value(keyword));
        EXPECT_EQ(uri.Text(), text);
    }
}

TEST(ServerUri, APasswordIsGoneWhereverItStands) {
    EXPECT_EQ(Read(u"postgresql://ana:secret@h/d").Text(), u"postgresql://ana@h/d");
    EXPECT_EQ(Read(u"postgresql://ana:@h/d").Text(), u"postgresql://ana@h/d");
    EXPECT_EQ(Read(u"postgresql://:secret@h/d").Text(), u"postgresql://@h/d");
    EXPECT_EQ(Read(u"postgresql://ana:se:cr%40et@h/d").Text(), u"postgresql://ana@h/d");
    EXPECT_EQ(Read(u"postgresql://h/d?password=secret").Text(), u"postgresql://h/d");
    EXPECT_EQ(Read(u"postgresql://h/d?a=1&password=secret&b=2").Text(),
              u"postgresql://h/d?a=1&b=2");
    EXPECT_EQ(Read(u"postgresql://h/d?pass%77ord=secret&PASSWORD=x&sslpassword=y").Text(),
              u"postgresql://h/d");
    EXPECT_EQ(Read(u"postgresql://h/d?scram_client_key=a&scram_server_key=b&"
                   u"oauth_client_secret=c&passfile=/p")
                  .Text(),
              u"postgresql://h/d?passfile=/p");
}

TEST(ServerUri, WhereItIsUnclearWhatIsAPasswordNothingIsRead) {
    for (const CStringView text :
         {u"postgresql://ana:se/cret@h/d", u"postgresql://ana:se?cret@h/d",
          u"postgresql://ana:se@cret@h/d", u"postgresql://h?application_name=a@b",
          u"postgresql://ana:secret", u"postgresql://ana:secret/d",
          u"postgresql://ana:secret,h:5432/d", u"postgresql://h,ana:secret/d"})
        EXPECT_FALSE(ServerUri::Parse(text)) << testing::PrintToString(CString(text));
}

TEST(ServerUri, NoPieceOfAPasswordIsLeftWhateverStandsInIt) {
    for (char16_t unit = u' '; unit <= u'~'; ++unit)
        for (const CStringView before : {u"postgresql://ana:", u"postgresql://h/d?password=",
                                         u"postgresql://ana@h?a=1&sslpassword="}) {
            CString secret = u"one";
            secret.append(1, unit).append(u"two");
            const CString after = before.find(u'?') == CStringView::npos ? u"@h/d" : u"&b=2";
            const auto uri = ServerUri::Parse(CString(before).append(secret).append(after));
            const CString text = uri ? uri->Text() : CString();
            EXPECT_EQ(text.find(u"one"), CString::npos) << int(unit);
            EXPECT_EQ(text.find(u"two"), CString::npos) << int(unit);
        }
}

TEST(ServerUri, WhatIsNoneIsNotRead) {
    for (const CStringView text :
         {u"", u"postgresql:", u"postgresql:/h", u"mysql://h", u"://h", u"h/d", u"sqlite:/srv/r.db",
          u"postgresql://%zz/d", u"postgresql://h/%", u"postgresql://h/d?a=%0",
          u"postgresql://[::1/d", u"postgresql://[::1]x/d", u"postgresql://a%00b/d",
          u"postgresql://h/d?a", u"postgresql://h/d?a=1&&b=2"})
        EXPECT_FALSE(ServerUri::Parse(text)) << testing::PrintToString(CString(text));
}

TEST(ServerUri, AnAddressOfIpv6StandsInBracketsAndIsShownWithout) {
    EXPECT_EQ(ValueIn(u"postgresql://[2001:db8::1]:5432/d", u"host"), u"2001:db8::1");
    EXPECT_EQ(ValueIn(u"postgresql://[2001:db8::1]:5432/d", u"port"), u"5432");
    EXPECT_EQ(ValueIn(u"postgresql://[fe80::1%25eth0]/d", u"host"), u"fe80::1%eth0");
    EXPECT_EQ(WithValue(u"postgresql://h:1/d", u"host", u"fe80::1%eth0"),
              u"postgresql://[fe80::1%25eth0]:1/d");
    EXPECT_EQ(WithValue(u"postgresql://h/d", u"host", u"[::1]"), u"postgresql://[::1]/d");
}

TEST(ServerUri, SeveralHostsStandAsTheyAre) {
    const CStringView text = u"postgresql://one:5432,[::1]:5433,%2Ftmp/d";
    EXPECT_EQ(ValueIn(text, u"host"), u"one:5432,[::1]:5433,%2Ftmp");
    EXPECT_EQ(ValueIn(text, u"port"), u"");
    EXPECT_EQ(WithValue(text, u"dbname", u"e"), u"postgresql://one:5432,[::1]:5433,%2Ftmp/e");
    EXPECT_EQ(WithValue(text, u"host", u"a:1,b"), u"postgresql://a:1,b/d");
}

TEST(ServerUri, APortOfSeveralHostsIsNotThatOfTheLastOne) {
    EXPECT_EQ(WithValue(u"postgresql://h:5433/d", u"host", u"a,b"),
              u"postgresql://a,b/d?port=5433");
    EXPECT_EQ(WithValue(u"postgresql://a,b/d", u"port", u"5433"), u"postgresql://a,b/d?port=5433");
}

TEST(ServerUri, AValueIsSetWhereItStandsOrWhereItUsuallyDoes) {
    EXPECT_EQ(WithValue(u"postgresql:///d?host=/tmp&a=1", u"host", u"/run"),
              u"postgresql:///d?host=%2Frun&a=1");
    EXPECT_EQ(WithValue(u"postgresql:///d?a=1", u"host", u"/run"), u"postgresql://%2Frun/d?a=1");
    EXPECT_EQ(WithValue(u"postgresql://h", u"dbname", u"d b"), u"postgresql://h/d%20b");
    EXPECT_EQ(WithValue(u"postgresql://h", u"user", u"ana@zeb"), u"postgresql://ana%40zeb@h");
    EXPECT_EQ(WithValue(u"postgresql://h?a=1", u"sslmode", u"require"),
              u"postgresql://h?a=1&sslmode=require");
    EXPECT_EQ(WithValue(u"postgresql://h?sslmode=allow&a=1", u"sslmode", u"require"),
              u"postgresql://h?sslmode=require&a=1");
}

TEST(ServerUri, OfSeveralValuesTheLastCountsAndCountsBeforeTheAuthority) {
    const CStringView text = u"postgresql://one/d?host=two&host=three";
    EXPECT_EQ(ValueIn(text, u"host"), u"three");
    EXPECT_EQ(WithValue(text, u"host", u"four"), u"postgresql://one/d?host=two&host=four");
}

TEST(ServerUri, AnEmptyValueTakesItOut) {
    EXPECT_EQ(WithValue(u"postgresql://ana@h:1/d?sslmode=allow", u"user", u""),
              u"postgresql://h:1/d?sslmode=allow");
    EXPECT_EQ(WithValue(u"postgresql://h:1/d", u"port", u""), u"postgresql://h/d");
    EXPECT_EQ(WithValue(u"postgresql://h/d", u"dbname", u""), u"postgresql://h");
    EXPECT_EQ(WithValue(u"postgresql://one?host=two&a=1&host=three", u"host", u""),
              u"postgresql://?a=1");
    EXPECT_EQ(WithValue(u"postgresql://h?sslmode=allow", u"sslmode", u""), u"postgresql://h");
}

} // namespace
} // namespace Storage
