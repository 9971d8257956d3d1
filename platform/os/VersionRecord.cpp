// SPDX-License-Identifier: MIT
#include "platform/os/VersionRecord.h"

#include "platform/os/File.h"
#include "platform/text/Numbers.h"

#include <bit>
#include <cstring>

#include <elf.h>

namespace Platform {
namespace {

static_assert(std::endian::native == std::endian::little, "ELF structures are read as they lie");

constexpr std::string_view kSectionName = ".zebx.version";
constexpr std::string_view kMagic = "ZEBXVER1";
constexpr std::size_t kRecordSize = kMagic.size() + 4 * sizeof(std::uint16_t);

// `size` bytes of `file` at `offset`; empty when the file ends before.
std::string_view Part(std::string_view file, std::uint64_t offset, std::uint64_t size) {
    if (offset > file.size() || size > file.size() - offset)
        return {};
    return file.substr(offset, size);
}

template<typename Structure>
std::optional<Structure> StructureAt(std::string_view file, std::uint64_t offset) {
    const std::string_view bytes = Part(file, offset, sizeof(Structure));
    if (bytes.empty())
        return std::nullopt;
    Structure structure;
    std::memcpy(&structure, bytes.data(), sizeof(structure));
    return structure;
}

bool IsSupported(const Elf64_Ehdr& header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == ELFCLASS64 && header.e_ident[EI_DATA] == ELFDATA2LSB &&
           header.e_shentsize == sizeof(Elf64_Shdr);
}

std::optional<Elf64_Shdr> SectionAt(std::string_view file, const Elf64_Ehdr& header,
                                    unsigned index) {
    const std::uint64_t distance = std::uint64_t{index} * sizeof(Elf64_Shdr);
    if (index >= header.e_shnum || header.e_shoff > file.size())
        return std::nullopt;
    return StructureAt<Elf64_Shdr>(file, header.e_shoff + distance);
}

std::string_view ContentOf(std::string_view file, const Elf64_Shdr& section) {
    return section.sh_type == SHT_NOBITS ? std::string_view()
                                         : Part(file, section.sh_offset, section.sh_size);
}

// The name at `offset` of the table of names; empty when it has no end.
std::string_view NameAt(std::string_view names, std::uint32_t offset) {
    if (offset >= names.size())
        return {};
    names.remove_prefix(offset);
    const std::size_t end = names.find('\0');
    return end == std::string_view::npos ? std::string_view() : names.substr(0, end);
}

std::string_view FindSection(std::string_view file, std::string_view name) {
    const auto header = StructureAt<Elf64_Ehdr>(file, 0);
    if (!header || !IsSupported(*header))
        return {};
    const auto nameSection = SectionAt(file, *header, header->e_shstrndx);
    if (!nameSection)
        return {};
    const std::string_view names = ContentOf(file, *nameSection);
    for (unsigned index = 0; index < header->e_shnum; ++index) {
        const auto section = SectionAt(file, *header, index);
        if (!section)
            break;
        if (NameAt(names, section->sh_name) == name)
            return ContentOf(file, *section);
    }
    return {};
}

} // namespace

std::optional<FileVersion> ReadFileVersion(CStringView path) {
    std::string file;
    if (ReadFile(path, file))
        return std::nullopt;
    const std::string_view record = FindSection(file, kSectionName);
    if (record.size() < kRecordSize || !record.starts_with(kMagic))
        return std::nullopt;
    FileVersion version;
    std::memcpy(version.data(), record.data() + kMagic.size(), sizeof(version));
    return version;
}

CString ReadFileVersionText(CStringView path) {
    CString text;
    if (const auto version = ReadFileVersion(path))
        for (const std::uint16_t part : *version)
            text += (text.empty() ? u"" : u".") + ToText(part);
    return text;
}

} // namespace Platform
