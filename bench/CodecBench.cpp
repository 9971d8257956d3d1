// SPDX-License-Identifier: MIT
// base64 beside OpenSSL's, windows-1250, and the splitting of fields.
#include "client/util/AnsiText.h"
#include "client/util/Codec.h"
#include "client/util/Split.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <random>

using namespace Repository;

namespace {

constexpr std::size_t kBytes = 1'000'000;

std::string RandomBytes(std::size_t size) {
    std::mt19937 random(1);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

const unsigned char* Unsigned(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void CountBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

void Base64Encode(benchmark::State& state) {
    const std::string bytes = RandomBytes(kBytes);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(EncodeBase64(bytes));
    CountBytes(state, kBytes);
}
BENCHMARK(Base64Encode);

void Base64EncodeOpenSsl(benchmark::State& state) {
    const std::string bytes = RandomBytes(kBytes);
    for ([[maybe_unused]] auto _ : state) {
        std::string text((kBytes + 2) / 3 * 4 + 1, '\0');
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), Unsigned(bytes),
                        static_cast<int>(kBytes));
        benchmark::DoNotOptimize(text);
    }
    CountBytes(state, kBytes);
}
BENCHMARK(Base64EncodeOpenSsl);

void Base64Decode(benchmark::State& state) {
    const std::string text = EncodeBase64(RandomBytes(kBytes));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(DecodeBase64(text));
    CountBytes(state, kBytes);
}
BENCHMARK(Base64Decode);

void Base64DecodeOpenSsl(benchmark::State& state) {
    const std::string text = EncodeBase64(RandomBytes(kBytes));
    for ([[maybe_unused]] auto _ : state) {
        std::string bytes(text.size() / 4 * 3, '\0');
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), Unsigned(text),
                        static_cast<int>(text.size()));
        benchmark::DoNotOptimize(bytes);
    }
    CountBytes(state, kBytes);
}
BENCHMARK(Base64DecodeOpenSsl);

// Without NULs, at which ANSI text ends.
std::string RandomAnsi() {
    std::string text = RandomBytes(kBytes);
    std::replace(text.begin(), text.end(), '\0', ' ');
    return text;
}

void Windows1250ToWide(benchmark::State& state) {
    const std::string bytes = RandomAnsi();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(AnsiToWide(bytes));
    CountBytes(state, kBytes);
}
BENCHMARK(Windows1250ToWide);

void Windows1250FromWide(benchmark::State& state) {
    const CString wide = AnsiToWide(RandomAnsi());
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(WideToAnsi(wide));
    CountBytes(state, kBytes);
}
BENCHMARK(Windows1250FromWide);

void SplitFields100000(benchmark::State& state) {
    CString text;
    for (int i = 0; i < 100'000; ++i)
        text += u"a field#";
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(SplitFields(CStringView(text), u'#'));
    state.SetItemsProcessed(state.iterations() * 100'000);
}
BENCHMARK(SplitFields100000);

} // namespace
