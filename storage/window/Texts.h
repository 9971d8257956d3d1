// SPDX-License-Identifier: MIT
// The connection window's texts: 20210 to 20259 of the message table.
#pragma once

#include "platform/text/Text.h"

#include <initializer_list>

namespace Storage {

enum class WindowText : int {
    Title = 20210,
    Where = 20211,
    ThisComputer = 20212,
    Server = 20213,
    ServiceName = 20214,
    File = 20215,
    Choose = 20216,
    Create = 20217,
    Host = 20218,
    Port = 20219,
    Database = 20220,
    User = 20221,
    Tls = 20222,
    Service = 20223,
    Passwords = 20224,
    Test = 20225,
    Ok = 20226,
    Cancel = 20227,
    Result = 20228,

    ChooseTitle = 20229,
    ChooseFilter = 20230,

    // The report of a test.
    Worked = 20231,  // text of the step
    Warning = 20232, // text of the step
    Failed = 20233,  // text of the step
    Works = 20234,
    WorksNot = 20235,
    NothingInUse = 20236,

    TlsNotSet = 20237,
    TlsDisable = 20238, // then libpq's modes in their order
    TlsVerifyFull = 20243,

    // Fields that cannot stay as they are.
    NoFile = 20244,
    NotWholePath = 20245,
    NoHost = 20246,
    NotHostAlone = 20247,
    NotAPort = 20248,
    PortBesideHosts = 20249,
    NotUserAlone = 20250,
    NoService = 20251,
};

// In the user's language, "%s" filled with `values`.
CString Msg(WindowText text, std::initializer_list<CStringView> values = {});

} // namespace Storage
