// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/Base64.h"
#include "client/util/Codec.h"
#include "support/Bytes.h"
#include "support/DocumentExample.h"
#include "support/NaiveBase64.h"

#include <cctype>
#include <gtest/gtest.h>
#include <vector>

using namespace Repository;

namespace {

// From memory that ends where the bytes do, so that a sanitizer sees a step beyond.
std::string Encoded(std::string_view bytes) {
    const std::vector<char> exact(bytes.begin(), bytes.end());
    return Base64Encode(exact.data(), static_cast<std::uint32_t>(exact.size()));
}

std::string Decoded(std::string_view text) {
    const std::vector<char> exact(text.begin(), text.end());
    return Base64Decode({exact.data(), exact.size()});
}

std::string FromHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

struct Vector {
    std::string bytes;
    std::string text;
};

// Lines "hex<tab>base64"; those that begin with "#" are remarks.
std::vector<Vector> VectorsOf(const std::string& lines) {
    std::vector<Vector> vectors;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        const std::size_t tab = line.find('\t');
        if (tab != line.npos && line[0] != '#')
            vectors.push_back({FromHex(line.substr(0, tab)), line.substr(tab + 1)});
    }
    return vectors;
}

// RFC 4648, sections 10 and 9, and again from the file of published vectors if it is here.
std::vector<Vector> PublishedVectors() {
    std::vector<Vector> vectors = {{"", ""},
                                   {"f", "Zg=="},
                                   {"fo", "Zm8="},
                                   {"foo", "Zm9v"},
                                   {"foob", "Zm9vYg=="},
                                   {"fooba", "Zm9vYmE="},
                                   {"foobar", "Zm9vYmFy"},
                                   {"\x14\xfb\x9c\x03\xd9\x7e", "FPucA9l+"},
                                   {"\x14\xfb\x9c\x03\xd9", "FPucA9k="},
                                   {"\x14\xfb\x9c\x03", "FPucAw=="}};
    for (Vector& vector :
         VectorsOf(BytesOfFile(ZEBX_SHARED_DATA "/oracles/base64/rfc4648-vectors.tsv")))
        vectors.push_back(std::move(vector));
    return vectors;
}

// A text made here and, where it is, one that others published.
std::vector<Vector> LongTexts() {
    const std::string bytes = SomeBytes(2999);
    std::vector<Vector> texts = {{bytes, NaiveBase64::Encode(bytes)}};
    const std::string folder = ZEBX_SHARED_DATA "/oracles/base64/";
    if (const std::string plain = BytesOfFile(folder + "moby_dick_plain.txt"); !plain.empty())
        texts.push_back({plain, BytesOfFile(folder + "moby_dick_base64.txt")});
    return texts;
}

} // namespace

TEST(Base64, TheAlphabetIsTheStandardOne) {
    EXPECT_EQ(kBase64Alphabet, NaiveBase64::kAlphabet);
}

TEST(Base64, PublishedVectorsAreEncodedAndDecoded) {
    for (const auto& [bytes, text] : PublishedVectors()) {
        EXPECT_EQ(Encoded(bytes), text);
        EXPECT_EQ(Decoded(text), bytes) << text;
    }
}

TEST(Base64, LongTextsAreEncodedAndDecodedWithoutALineBreak) {
    for (const auto& [bytes, text] : LongTexts()) {
        EXPECT_EQ(Encoded(bytes), text);
        EXPECT_EQ(Decoded(text), bytes);
    }
}

TEST(Base64, OneTwoAndThreeBytesGiveFourCharacters) {
    EXPECT_EQ(Encoded("M"), "TQ==");
    EXPECT_EQ(Encoded("Ma"), "TWE=");
    EXPECT_EQ(Encoded("Man"), "TWFu");
}

TEST(Base64, NoBytesGiveTheEmptyTextAlsoFromANullPointer) {
    EXPECT_EQ(Base64Encode(nullptr, 0), "");
    EXPECT_EQ(Base64Encode("x", 0), "");
}

TEST(Base64, EveryLengthIsEncodedAndDecodedAsTheNaiveWayDoes) {
    for (std::size_t length = 0; length <= 100; ++length) {
        const std::string bytes = SomeBytes(length, static_cast<unsigned>(length));
        const std::string text = Encoded(bytes);
        EXPECT_EQ(text, NaiveBase64::Encode(bytes)) << length;
        EXPECT_EQ(text.size(), (length + 2) / 3 * 4);
        EXPECT_EQ(Decoded(text), bytes) << length;
    }
}

TEST(Base64, EveryPairOfBytesSurvivesAtEveryPlaceOfAGroup) {
    std::string bytes;
    for (int first = 0; first < 256; ++first)
        for (int second = 0; second < 256; ++second)
            bytes.append({static_cast<char>(first), static_cast<char>(second)});
    EXPECT_EQ(Encoded(bytes), NaiveBase64::Encode(bytes));
    for (std::size_t offset = 0; offset < 3; ++offset)
        EXPECT_EQ(Decoded(Encoded(bytes.substr(offset))), bytes.substr(offset));
}

TEST(Base64, ALineBreakEndsTheData) {
    EXPECT_EQ(Decoded("TWFu\nTWFu"), "Man");
}

TEST(Base64, AnEqualsSignEndsTheDataWhateverFollows) {
    EXPECT_EQ(Decoded("TQ"), "M");
    EXPECT_EQ(Decoded("TQ=="), "M");
    EXPECT_EQ(Decoded("TQ==TWFuTWFu"), "M");
    EXPECT_EQ(Decoded("=TWFu"), "");
}

TEST(Base64, ASingleCharacterLeftOverAddsNothing) {
    EXPECT_EQ(Decoded("T"), "");
    EXPECT_EQ(Decoded("TWFuT"), "Man");
    EXPECT_EQ(Decoded("TWFuTWFuT"), "ManMan");
}

TEST(Base64, TwoAndThreeCharactersLeftOverAddOneAndTwoBytes) {
    EXPECT_EQ(Decoded("TWFuTW"), "ManM");
    EXPECT_EQ(Decoded("TWFuTWF"), "ManMa");
}

// Bits of the last character that belong to no byte are not looked at.
TEST(Base64, BitsBehindTheLastByteAreIgnored) {
    EXPECT_EQ(Decoded("TR"), "M");
    EXPECT_EQ(Decoded("TWH="), "Ma");
}

TEST(Base64, EveryOtherByteEndsTheDataWhereverItStands) {
    const std::string text = Encoded(SomeBytes(24));
    for (int byte = 0; byte < 256; ++byte) {
        if (byte < 0x80 && (std::isalnum(byte) || byte == '+' || byte == '/'))
            continue;
        for (std::size_t place = 0; place < text.size(); ++place) {
            std::string broken = text;
            broken[place] = static_cast<char>(byte);
            EXPECT_EQ(Decoded(broken), NaiveBase64::Decode(text.substr(0, place)))
                << byte << " at " << place;
        }
    }
}

// "\xE4" is a letter to the C library under de_DE.ISO-8859-1, in which this runs too.
TEST(Base64, ALetterOfTheProcesssLocaleBeyondAsciiEndsTheData) {
    EXPECT_EQ(Decoded("TWFu\xE4WFu"), "Man");
    EXPECT_EQ(Decoded("TWF\xE4TWFu"), "Ma");
}

TEST(Base64, AnyBytesAtAllDecodeAsTheNaiveWayDoes) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        std::string text = SomeBytes(seed % 50, seed);
        for (char& character : text)
            if (seed % 40 != 0) // mostly of the alphabet
                character = static_cast<unsigned char>(character) < 250
                                ? kBase64Alphabet[static_cast<unsigned char>(character) % 64]
                                : character;
        EXPECT_EQ(Decoded(text), NaiveBase64::Decode(text)) << seed;
    }
}

TEST(Base64, MegabytesSurvive) {
    const std::string bytes = SomeBytes(3'000'001);
    EXPECT_EQ(Base64Decode(Base64Encode(bytes.data(), 3'000'001)), bytes);
}

TEST(Base64, TheDocumentsExampleIsWhatTheCodecDoes) {
    const auto vectors = VectorsOf(DocumentExample("base64"));
    ASSERT_GE(vectors.size(), 4u);
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(Encoded(bytes), text);
        EXPECT_EQ(Decoded(text), bytes);
    }
}
