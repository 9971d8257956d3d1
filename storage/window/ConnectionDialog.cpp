// SPDX-License-Identifier: MIT
#include "storage/window/ConnectionDialog.h"

#include "platform/os/Path.h"
#include "platform/text/Trim.h"
#include "platform/window/WindowSystem.h"

#include <algorithm>

namespace Storage {
namespace {

using Platform::ControlClass;
using Platform::ControlTemplate;
using enum Platform::OnResize;
using Id = ConnectionDialog::Id;

constexpr ControlTemplate kControls[] = {
    {Id::Where, ControlClass::GroupBox, nullptr, 7, 7, 346, 32, GrowWide},
    {Id::ThisComputer, ControlClass::RadioButton, nullptr, 15, 20, 100, 12},
    {Id::Server, ControlClass::RadioButton, nullptr, 121, 20, 120, 12},
    {Id::ServiceName, ControlClass::RadioButton, nullptr, 247, 20, 98, 12},
    {Id::FileLabel, ControlClass::Label, nullptr, 7, 50, 83, 10},
    {Id::File, ControlClass::TextField, nullptr, 93, 48, 199, 13, GrowWide},
    {Id::Choose, ControlClass::PushButton, nullptr, 297, 47, 56, 14, MoveRight},
    {Id::Create, ControlClass::CheckBox, nullptr, 93, 65, 260, 12},
    {Id::HostLabel, ControlClass::Label, nullptr, 7, 88, 83, 10},
    {Id::Host, ControlClass::TextField, nullptr, 93, 86, 166, 13, GrowWide},
    {Id::PortLabel, ControlClass::Label, nullptr, 267, 88, 27, 10, MoveRight},
    {Id::Port, ControlClass::TextField, nullptr, 297, 86, 56, 13, MoveRight},
    {Id::DatabaseLabel, ControlClass::Label, nullptr, 7, 105, 83, 10},
    {Id::Database, ControlClass::TextField, nullptr, 93, 103, 260, 13, GrowWide},
    {Id::UserLabel, ControlClass::Label, nullptr, 7, 122, 83, 10},
    {Id::User, ControlClass::TextField, nullptr, 93, 120, 260, 13, GrowWide},
    {Id::TlsLabel, ControlClass::Label, nullptr, 7, 139, 83, 10},
    {Id::Tls, ControlClass::DropDownList, nullptr, 93, 137, 260, 92, GrowWide},
    {Id::ServiceLabel, ControlClass::Label, nullptr, 7, 162, 83, 10},
    {Id::Service, ControlClass::TextField, nullptr, 93, 160, 260, 13, GrowWide},
    {Id::Passwords, ControlClass::Label, nullptr, 7, 181, 346, 20, GrowWide},
    {Id::Test, ControlClass::PushButton, nullptr, 7, 205, 56, 14},
    {Id::Report, ControlClass::ReadOnlyText, nullptr, 7, 224, 346, 78, GrowWide | GrowTall},
    {Platform::kIdOk, ControlClass::DefaultPushButton, nullptr, 237, 308, 56, 14,
     MoveRight | MoveDown},
    {Platform::kIdCancel, ControlClass::PushButton, nullptr, 297, 308, 56, 14,
     MoveRight | MoveDown},
};

constexpr Platform::DialogTemplate kLook = {nullptr, 360, 329, kControls};

constexpr struct {
    int id;
    WindowText text;
} kTexts[] = {
    {Id::Where, WindowText::Where},
    {Id::ThisComputer, WindowText::ThisComputer},
    {Id::Server, WindowText::Server},
    {Id::ServiceName, WindowText::ServiceName},
    {Id::FileLabel, WindowText::File},
    {Id::Choose, WindowText::Choose},
    {Id::Create, WindowText::Create},
    {Id::HostLabel, WindowText::Host},
    {Id::PortLabel, WindowText::Port},
    {Id::DatabaseLabel, WindowText::Database},
    {Id::UserLabel, WindowText::User},
    {Id::TlsLabel, WindowText::Tls},
    {Id::ServiceLabel, WindowText::Service},
    {Id::Passwords, WindowText::Passwords},
    {Id::Test, WindowText::Test},
    {Platform::kIdOk, WindowText::Ok},
    {Platform::kIdCancel, WindowText::Cancel},
};

// What is chosen by which radio button.
constexpr struct {
    Place place;
    int id;
} kPlaces[] = {{Place::File, Id::ThisComputer},
               {Place::Server, Id::Server},
               {Place::Service, Id::ServiceName}};

// What belongs to a field.
constexpr struct {
    Field field;
    int id;
} kFieldControls[] = {
    {Field::File, Id::File},         {Field::File, Id::FileLabel},
    {Field::File, Id::Choose},       {Field::File, Id::Create},
    {Field::Host, Id::Host},         {Field::Host, Id::HostLabel},
    {Field::Port, Id::Port},         {Field::Port, Id::PortLabel},
    {Field::Database, Id::Database}, {Field::Database, Id::DatabaseLabel},
    {Field::User, Id::User},         {Field::User, Id::UserLabel},
    {Field::Tls, Id::Tls},           {Field::Tls, Id::TlsLabel},
    {Field::Service, Id::Service},   {Field::Service, Id::ServiceLabel},
};

// The text fields.
constexpr struct {
    int id;
    CString ConnectionFields::*text;
} kTextFields[] = {
    {Id::File, &ConnectionFields::file}, {Id::Host, &ConnectionFields::host},
    {Id::Port, &ConnectionFields::port}, {Id::Database, &ConnectionFields::database},
    {Id::User, &ConnectionFields::user}, {Id::Service, &ConnectionFields::service},
};

int ControlOf(Field field) {
    return std::ranges::find(kFieldControls, field, [](const auto& each) { return each.field; })
        ->id;
}

CString WithBackslashes(CString path) {
    std::ranges::replace(path, u'/', u'\\');
    return path;
}

CString TlsText(CStringView mode) {
    int number = static_cast<int>(WindowText::TlsDisable);
    for (const char16_t* each : TlsModes()) {
        if (mode == each)
            return Msg(static_cast<WindowText>(number));
        ++number;
    }
    return mode.empty() ? Msg(WindowText::TlsNotSet) : CString(mode);
}

} // namespace

ConnectionDialog::ConnectionDialog(IConnectionParameters& parameters)
    : Dialog(kLook), m_parameters(parameters) {}

// Filling.

bool ConnectionDialog::OnInitDialog() {
    SetTexts();
    ShowConnection();
    FillTls();
    EnableFields();
    return true;
}

void ConnectionDialog::SetTexts() {
    SetTitle(Msg(WindowText::Title));
    for (const auto& [id, text] : kTexts)
        SetText(id, Msg(text));
    SetAccessibleName(Id::Report, Msg(WindowText::Result));
}

void ConnectionDialog::ShowConnection() {
    const auto fields = ConnectionFields::Parse(m_parameters.Current().address);
    if (!fields)
        SetText(Id::Report, Msg(WindowText::NothingInUse));
    m_fields = fields.value_or(ConnectionFields());
    if (const auto own = ConnectionFields::Parse(m_parameters.DefaultAddress());
        own && m_fields.file.empty())
        m_fields.file = own->file;
    m_isTlsChosen = m_fields.place == Place::Server || !m_fields.tls.empty();
    for (const auto& [id, text] : kTextFields)
        SetText(id, m_fields.*text);
    for (const auto& [place, id] : kPlaces)
        SetChecked(id, place == m_fields.place);
}

void ConnectionDialog::FillTls() {
    m_tlsModes = {CString()};
    for (const char16_t* mode : TlsModes())
        m_tlsModes.emplace_back(mode);
    // A mode that this version does not know stays.
    if (std::ranges::find(m_tlsModes, m_fields.tls) == m_tlsModes.end())
        m_tlsModes.push_back(m_fields.tls);
    for (const CString& mode : m_tlsModes)
        DropDown(Id::Tls).Add(TlsText(mode));
    SelectTls();
}

void ConnectionDialog::SelectTls() {
    const CString mode = m_isTlsChosen ? m_fields.tls : ProposedTls(m_fields.host);
    const auto found = std::ranges::find(m_tlsModes, mode);
    DropDown(Id::Tls).Select(static_cast<int>(found - m_tlsModes.begin()));
}

void ConnectionDialog::EnableFields() {
    for (const auto& [field, id] : kFieldControls)
        Enable(id, BelongsTo(field, m_fields.place));
}

// What the user does.

void ConnectionDialog::ReadFields() {
    for (const auto& [place, id] : kPlaces)
        if (IsChecked(id))
            m_fields.place = place;
    // The settings file keeps no blanks at the ends either.
    for (const auto& [id, text] : kTextFields)
        m_fields.*text = CString(Platform::Trim(Text(id)));
    const int tls = DropDown(Id::Tls).Selected();
    if (tls >= 0)
        m_fields.tls = m_tlsModes[static_cast<std::size_t>(tls)];
}

void ConnectionDialog::OnChanged(int id) {
    if (id == Id::Tls)
        m_isTlsChosen = true;
    ReadFields();
    if (!m_isTlsChosen)
        SelectTls();
    EnableFields();
}

void ConnectionDialog::OnClicked(int id) {
    if (id == Id::Choose)
        ChooseRepository();
    else if (id == Id::Test)
        RunTest();
    else if (id != Platform::kIdOk || TestBeforeOk())
        Dialog::OnClicked(id);
}

void ConnectionDialog::ChooseRepository() {
    const CString path = WithBackslashes(Text(Id::File));
    Platform::FileQuestion question;
    question.title = Msg(WindowText::ChooseTitle);
    question.filter = Msg(WindowText::ChooseFilter);
    question.folder = CString(Platform::FolderOf(path));
    question.name = Platform::FileNameOf(path);
    question.isForSaving = IsChecked(Id::Create);
    if (auto chosen = Platform::ChooseFile(question)) {
        std::ranges::replace(*chosen, u'\\', u'/');
        SetText(Id::File, *chosen);
        ReadFields();
    }
}

// The focus goes to what tells why the window stays.
bool ConnectionDialog::TestBeforeOk() {
    SetFocus(Id::Report);
    return RunTest();
}

bool ConnectionDialog::RunTest() {
    const Platform::WaitCursor wait;
    ReadFields();
    const FieldsTrial result = TestFields(m_fields, IsChecked(Id::Create), m_parameters);
    SetText(Id::Report, result.report);
    if (result.wrong)
        SetFocus(ControlOf(*result.wrong));
    if (result.works)
        m_edited = result.connection;
    return result.works;
}

} // namespace Storage
