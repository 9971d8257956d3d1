// SPDX-License-Identifier: MIT
#include "storage/store/FileSending.h"

#include "platform/host/FileSteps.h"

namespace Storage {
namespace {

// Asked for at once; three such batches are in work.
constexpr std::size_t kBatchBytes = 32 << 20;
constexpr std::size_t kBatchFiles = 1000;

} // namespace

// While one batch is written the next one's answer is on its way, and the one after that is
// hashed.
void FileSending::Run() {
    std::size_t asked = 0;
    Begin();
    while (!m_batches.empty()) {
        if (asked < m_batches.size()) {
            Ask(m_batches[asked++]);
            Begin();
        }
        if (asked < 2 && asked < m_batches.size())
            continue;
        Write(m_batches.front());
        m_batches.pop_front();
        --asked;
    }
}

// Does nothing when there are no files left.
void FileSending::Begin() {
    if (m_begun == m_files.size())
        return;
    Batch& batch = m_batches.emplace_back();
    std::size_t bytes = 0;
    while (m_begun < m_files.size() && batch.contents.size() < kBatchFiles && bytes < kBatchBytes) {
        Content& content = batch.contents.emplace_back();
        content.sent = &m_files[m_begun++];
        const auto& file = *content.sent->file;
        StopIfInterrupted(file, file.GetOriginId());
        content.bytes = DecodeContent(file, file.GetOriginId(), content.buffer);
        bytes += content.bytes.size();
        m_hashes.Add(content.bytes);
    }
}

void FileSending::Ask(Batch& batch) {
    std::vector<std::string_view> hashes;
    for (Content& content : batch.contents) {
        const SentFile& sent = *content.sent;
        content.record = RecordOf(*sent.file, content.bytes, m_hashes.Take());
        content.isSame = sent.old && sent.old->record == content.record;
        content.number = hashes.size();
        if (!content.isSame)
            hashes.push_back(content.record.hash);
    }
    batch.known = std::make_unique<KnownContents>(m_call.Sql(), hashes);
}

void FileSending::Write(Batch& batch) {
    for (Content& content : batch.contents) {
        StopIfInterrupted(*content.sent->file, content.sent->file->GetOriginId());
        if (!content.isSame)
            AddOrReplace(content, *batch.known);
        Platform::TellFileStep(Platform::FileStep::Stored);
    }
}

void FileSending::AddOrReplace(Content& content, KnownContents& known) {
    m_call.KeepContent(content.bytes, content.record.hash, known.IsKnown(content.number));
    if (content.sent->old)
        EndFile(m_call, content.sent->old->id);
    InsertFile(m_call, std::nullopt, 0, content.record);
}

} // namespace Storage
