// SPDX-License-Identifier: MIT
#include "storage/content/ContentHash.h"

#include "storage/StorageError.h"

#include <charconv>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

namespace Storage {
namespace {

// libcrypto would take itself down before the objects that live as long as the process: a store
// hashes for its cache, and a server's connection is closed, after that.  Counts when it is the
// first use.
const int g_staysToTheEnd = OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);

[[noreturn]] void ThrowCryptoFailure() {
    throw StorageError(Problem::Internal, MessageNumber::Internal, {u"libcrypto"});
}

} // namespace

std::string ContentHash(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1)
        ThrowCryptoFailure();
    return {reinterpret_cast<const char*>(digest), size};
}

RunningHash::RunningHash() : m_context(EVP_MD_CTX_new()) {
    if (!m_context || EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr) != 1) {
        EVP_MD_CTX_free(m_context);
        ThrowCryptoFailure();
    }
}

RunningHash::~RunningHash() {
    EVP_MD_CTX_free(m_context);
}

void RunningHash::Add(std::string_view bytes) {
    if (EVP_DigestUpdate(m_context, bytes.data(), bytes.size()) != 1)
        ThrowCryptoFailure();
}

std::string RunningHash::Take() {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (EVP_DigestFinal_ex(m_context, digest, &size) != 1)
        ThrowCryptoFailure();
    return {reinterpret_cast<const char*>(digest), size};
}

std::string ToHexadecimal(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text;
}

std::string FromHexadecimal(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        unsigned char byte = 0;
        std::from_chars(&digits[i], &digits[i] + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string RandomName() {
    unsigned char bytes[8];
    if (RAND_bytes(bytes, sizeof(bytes)) != 1)
        ThrowCryptoFailure();
    return ToHexadecimal({reinterpret_cast<const char*>(bytes), sizeof(bytes)});
}

} // namespace Storage
