// SPDX-License-Identifier: MIT
// The settings of this user's programs: folders, language, enabled optional kinds
// and logging, each from the first place that has it: an option of the command line,
// the environment, the file zebx.ini, a default.  docs/formats.md describes zebx.ini.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Platform {

enum class Setting {
    Config,       // path of zebx.ini itself:  --config, ZEBX_CONFIG
    Install,      // installation folder:      --install, ZEBX_INSTALL, [folders] install
    Support,      // support folder:           --support, ZEBX_SUPPORT, [folders] support
    Language,     // "en" or "hr":  --language, ZEBX_LANGUAGE, [general] language, LC_ALL...
    EnabledKinds, // identifiers by comma:     [kinds] enabled
    Schema,       // of a server's repository: ZEBX_SCHEMA, [repository] schema; not checked here
    Trace,        // "on" or "off":            ZEBX_TRACE, [logging] trace
    TraceFile,    // path:                     [logging] trace_file
    WorkspaceLog  // path:                     [logging] workspace_log
};

enum class SettingOrigin { Option, Environment, File, Default };

struct SettingValue {
    CString value;
    SettingOrigin origin = SettingOrigin::Default;
    CString place = {}; // the variable's name or the file's path; else empty
    int line = 0;       // in the file; else 0
};

// A line of zebx.ini or a variable that was not understood, and what was done instead.
struct SettingProblem {
    CString file; // path of zebx.ini, or the variable's name
    int line = 0; // counted from 1; 0 when the file as a whole or a variable is meant
    CString text; // English
};

class ZEBX_EXPORT UserSettings {
public:
    static UserSettings* Instance();

    // The value in force and where it came from.  Folders end with "\"; a relative
    // path of an option or a variable counts from the current folder, one of zebx.ini
    // from that file's folder; "/" separates as "\" does.  An empty value counts as none.
    SettingValue Get(Setting setting);

    // Sets what the command line says; wins over every other place and is not checked.
    void SetOption(Setting setting, CStringView value);

    // What was wrong with the variables and with zebx.ini, the latter in line order.  A
    // missing file is no problem.
    std::vector<SettingProblem> Problems();

    // Forgets the options and what was read from zebx.ini; it is read again when asked.
    void Reset();

private:
    UserSettings() = default;
    void ReadFileOnce();

    struct FileValue {
        CString value;
        int line = 0;
    };
    std::optional<FileValue> FromFile(Setting setting);

    // What decides where zebx.ini lies when nobody names it; nothing when somebody does.
    using Surroundings = std::pair<std::string, std::string>;
    std::optional<Surroundings> SurroundingsOfDefaultFile() const;

    std::map<Setting, CString> m_options;
    CString m_filePath; // the zebx.ini that m_file and m_problems were read from
    bool m_fileRead = false;
    std::optional<Surroundings> m_surroundings; // for which m_filePath was found
    std::map<CString, FileValue> m_file;        // by "section.key"
    std::vector<SettingProblem> m_problems;
};

} // namespace Platform
