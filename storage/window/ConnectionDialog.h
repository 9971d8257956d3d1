// SPDX-License-Identifier: MIT
// The connection window: the fields of an address, a test of them, OK and Cancel.  What the
// fields mean is ConnectionFields'; what OK accepts is TestFields'.
#pragma once

#include "platform/window/Dialog.h"
#include "storage/window/FieldsTrial.h"

namespace Storage {

class ConnectionDialog : public Platform::Dialog {
public:
    // The controls' identifiers.
    enum Id : int {
        Where = 100,
        ThisComputer,
        Server,
        ServiceName,
        FileLabel,
        File,
        Choose,
        Create,
        HostLabel,
        Host,
        PortLabel,
        Port,
        DatabaseLabel,
        Database,
        UserLabel,
        User,
        TlsLabel,
        Tls,
        ServiceLabel,
        Service,
        Passwords,
        Test,
        Report
    };

    explicit ConnectionDialog(IConnectionParameters& parameters);

    // What OK accepted.
    const Connection& Edited() const { return m_edited; }

protected:
    bool OnInitDialog() override;
    void OnClicked(int id) override;
    void OnChanged(int id) override;

private:
    void SetTexts();
    void ShowConnection();
    void FillTls();
    void SelectTls();
    void EnableFields();
    void ReadFields();
    void ChooseRepository();
    bool TestBeforeOk();
    bool RunTest();

    IConnectionParameters& m_parameters;
    ConnectionFields m_fields;
    std::vector<CString> m_tlsModes; // of the drop-down list's entries
    bool m_isTlsChosen = false;      // by the address or the user, not proposed
    Connection m_edited;
};

} // namespace Storage
