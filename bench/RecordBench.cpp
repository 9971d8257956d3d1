// SPDX-License-Identifier: MIT
// Each record to its text and back, with one file of 100 KB.
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "ZEBXRepositoryClient/NetRepositoryItem.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

using namespace Repository;

namespace {

boost::shared_ptr<CRepositoryFile> MakeFile() {
    auto file = boost::make_shared<CRepositoryFile>();
    file->SetFileId(u"17");
    file->SetFileManagerId(u"NCF");
    file->SetOriginId(u"002_NODE");
    file->SetFileName(u"čvor 1.dwg");
    file->SetCustomParameter(u"002_NODE");
    file->SetFileContent(std::string(133'336, 'A'));
    file->SetFileType(FileTypeNCF);
    return file;
}

template<class Item>
Item MakeItem() {
    Item item;
    item.SetName(u"čvor");
    item.GetFiles()->push_back(MakeFile());
    return item;
}

CString TextOf(const CRepositoryFile& file) {
    CString text;
    file.Serialize(text);
    return text;
}

template<class Item>
CString TextOf(const Item& item) {
    return item.Serialize();
}

template<class Record>
void Write(benchmark::State& state, const Record& record) {
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(TextOf(record));
}

template<class Record>
void Read(benchmark::State& state, const Record& record) {
    const CString text = TextOf(record);
    for ([[maybe_unused]] auto _ : state) {
        Record read;
        read.Deserialize(text.c_str());
        benchmark::DoNotOptimize(read);
    }
}

} // namespace

BENCHMARK_CAPTURE(Write, RepositoryFile, *MakeFile());
BENCHMARK_CAPTURE(Read, RepositoryFile, *MakeFile());
BENCHMARK_CAPTURE(Write, RepositoryItem, MakeItem<CNetRepositoryItem>());
BENCHMARK_CAPTURE(Read, RepositoryItem, MakeItem<CNetRepositoryItem>());
BENCHMARK_CAPTURE(Write, CatalogueItem, MakeItem<CNetCatalogueItem>());
BENCHMARK_CAPTURE(Read, CatalogueItem, MakeItem<CNetCatalogueItem>());
