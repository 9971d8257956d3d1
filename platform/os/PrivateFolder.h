// SPDX-License-Identifier: MIT
// A folder of this user's own in which a program keeps what nobody else may see, by its
// descriptor: whatever somebody puts into its place later is not touched.
//
// Names are plain ones, ASCII, without separators.  Errors are the operating system's; none is
// thrown.  Links are never followed.  The files of one folder may be used in several threads.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace Platform {

class PrivateFolder;

class ZEBX_EXPORT PrivateFile {
public:
    PrivateFile() = default;
    ~PrivateFile() { Close(); }
    PrivateFile(const PrivateFile&) = delete;
    PrivateFile& operator=(const PrivateFile&) = delete;

    bool IsOpen() const { return m_descriptor != -1; }
    std::error_code GetSize(std::uint64_t& bytes) const;
    // Fills `into`; EIO when the file ends before.
    std::error_code ReadAt(std::uint64_t offset, char* into, std::size_t size) const;
    std::error_code Append(std::string_view bytes);
    // Makes now the time of the last change.
    std::error_code Touch();
    void Close();

private:
    friend class PrivateFolder;
    int m_descriptor = -1;
};

class ZEBX_EXPORT PrivateFolder {
public:
    struct Entry {
        std::string name;
        std::uint64_t sizeBytes = 0;
        std::int64_t changedNs = 0; // since 1970
    };

    PrivateFolder() = default;
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    // Makes what is missing and takes everybody else's rights away.  ELOOP or ENOTDIR for
    // something else in its place, EPERM for a folder of somebody else.
    std::error_code Open(CStringView path);
    bool IsOpen() const { return m_descriptor != -1; }

    // This user's regular files, in no order.
    std::error_code List(std::vector<Entry>& entries) const;
    // When a name came or went last, as the file system counts it.
    std::error_code GetChange(std::int64_t& changedNs) const;
    std::error_code GetFreeBytes(std::uint64_t& bytes) const;

    std::error_code OpenFile(const std::string& name, PrivateFile& file) const;
    // EEXIST when there is something of that name.
    std::error_code CreateFile(const std::string& name, PrivateFile& file) const;
    // Over what has the name already.
    std::error_code Rename(const std::string& from, const std::string& to) const;
    std::error_code Remove(const std::string& name) const;

private:
    int m_descriptor = -1;
};

} // namespace Platform
