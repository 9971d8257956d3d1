// SPDX-License-Identifier: MIT
// The kinds of content that move between an installation and the repository: folders of
// drawings (NCF) and named sets of configuration files (FOC), and the file managers that
// know files by other means.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"

#include <boost/shared_ptr.hpp>
#include <vector>

namespace Repository {

// Where a kind's folder lies.  Any value but 0 means the support folder.
enum enmBaseFolder : std::int32_t { BaseFolderInstall = 0, BaseFolderSupport = 1 };

// How a drawing kind names its files.  Any value but 1 means a pattern.
enum enmNCFType : std::int32_t { NCFTypePattern = 0, NCFTypeSingleFile = 1 };

// Content codes, as the storage backend is told them.
inline constexpr int kContentNCF = 4;
inline constexpr int kContentFOC = 5;

class ZEBX_EXPORT IFileManager {
public:
    // Appends the files that belong to the item and are to be sent; `itemId` may be null.
    virtual void GetFiles(std::vector<boost::shared_ptr<CRepositoryFile>>& files,
                          const char16_t* itemId) = 0;
    // Puts fetched files in place; `flag` is 0 and `argument` null unless a caller of
    // another module agrees otherwise with its own file manager.
    virtual void PutFiles(std::vector<boost::shared_ptr<CRepositoryFile>>& files, int flag,
                          const void* argument = nullptr) = 0;
    // The identifier under which the manager is registered.
    virtual CString GetId() = 0;

protected:
    ~IFileManager() = default;
};

// The file manager of the general settings: they travel as text alone, so it does nothing.
class ZEBX_EXPORT CGSFileManager : public IFileManager {
public:
    virtual ~CGSFileManager() = default;
    void GetFiles(std::vector<boost::shared_ptr<CRepositoryFile>>& files,
                  const char16_t* itemId) override;
    void PutFiles(std::vector<boost::shared_ptr<CRepositoryFile>>& files, int flag,
                  const void* argument) override;
    CString GetId() override;
};

// A named set of configuration files.
class ZEBX_EXPORT CFOCMetadata {
public:
    CFOCMetadata(const char16_t* id, int msgNum, enmBaseFolder baseFolder,
                 const char16_t* subfolder, const char16_t* fileManagerId, int optional);

    CString GetId() const { return m_id; }
    // The lists themselves, filled by whoever registers the kind: names of the files, and
    // identifiers of the drawing kinds that travel along.
    std::vector<CString>& GetFileNames() { return m_fileNames; }
    std::vector<CString>& GetDependentNCFs() { return m_dependentNcfs; }
    // Number of the message that is the kind's display name.
    int GetMsgNum() const { return m_msgNum; }
    CString GetFileManagerId() const { return m_fileManagerId; }
    // The registered file manager of that identifier; empty when there is none.
    boost::shared_ptr<IFileManager> GetFileManager() const;
    enmBaseFolder GetBaseFolder() const { return m_baseFolder; }
    // With a "\" at its end; empty when the kind has no subfolder.
    CString GetSubfolder() const;
    int IsOptional() const { return m_optional; }

private:
    CString m_id;
    std::vector<CString> m_fileNames;
    std::vector<CString> m_dependentNcfs;
    int m_msgNum;
    CString m_fileManagerId;
    enmBaseFolder m_baseFolder;
    CString m_subfolder;
    int m_optional;
};

// A folder of drawings.
class ZEBX_EXPORT CNCFMetadata {
public:
    CNCFMetadata(const char16_t* id, int msgNum, enmBaseFolder baseFolder,
                 const char16_t* subfolder, enmNCFType type, const char16_t* file, int optional);

    CString GetId() const { return m_id; }
    int GetMsgNum() const { return m_msgNum; }
    enmBaseFolder GetBaseFolder() const { return m_baseFolder; }
    CString GetSubfolder() const;
    enmNCFType GetType() const { return m_type; }
    // One file's name or a pattern, as the type says.
    CString GetFile() const { return m_file; }
    int IsOptional() const { return m_optional; }

private:
    CString m_id;
    int m_msgNum;
    enmBaseFolder m_baseFolder;
    CString m_subfolder;
    enmNCFType m_type;
    CString m_file;
    int m_optional;
};

} // namespace Repository
