// SPDX-License-Identifier: MIT
// The XML reader beside pugixml's load_buffer, on the same documents; pugixml is given the
// UTF-8 that is its own form, and the UTF-16 that this system's records have.
#include "client/util/XmlDocument.h"
#include "platform/text/Utf8.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

using Repository::XmlDocument;

namespace {

CString OneLargeElement() {
    CString text = u"<nci catId=\"17\" name=\"čvor\" content=\"";
    text.resize(text.size() + 9'000'000, u'A');
    return text + u"\"></nci>";
}

CString ManySmallElements() {
    CString text = u"<catalogue>";
    for (int i = 0; i < 100'000; ++i)
        text += u"<item guid=\"0f8fad5b-d9cb\" name=\"DN 100\"><value>100</value></item>";
    return text + u"</catalogue>";
}

void CountCharacters(benchmark::State& state, const CString& text) {
    state.counters["characters"] = benchmark::Counter(
        static_cast<double>(text.size()), benchmark::Counter::kIsIterationInvariantRate);
}

void OwnReader(benchmark::State& state, const CString& text) {
    for ([[maybe_unused]] auto _ : state) {
        XmlDocument document;
        document.SetText(text.c_str());
        benchmark::DoNotOptimize(document.FindElement(nullptr));
    }
    CountCharacters(state, text);
}

void Load(benchmark::State& state, const void* data, std::size_t size, const CString& text) {
    for ([[maybe_unused]] auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(document.load_buffer(data, size));
    }
    CountCharacters(state, text);
}

void PugixmlUtf8(benchmark::State& state, const CString& text) {
    const std::string utf8 = Platform::ToUtf8(text);
    Load(state, utf8.data(), utf8.size(), text);
}

void PugixmlUtf16(benchmark::State& state, const CString& text) {
    const CString marked = u"\uFEFF" + text;
    Load(state, marked.data(), marked.size() * sizeof(char16_t), text);
}

} // namespace

BENCHMARK_CAPTURE(OwnReader, OneLargeElement, OneLargeElement())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PugixmlUtf8, OneLargeElement, OneLargeElement())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PugixmlUtf16, OneLargeElement, OneLargeElement())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OwnReader, ManySmallElements, ManySmallElements())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PugixmlUtf8, ManySmallElements, ManySmallElements())
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PugixmlUtf16, ManySmallElements, ManySmallElements())
    ->Unit(benchmark::kMillisecond);
