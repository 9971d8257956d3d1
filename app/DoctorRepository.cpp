// SPDX-License-Identifier: MIT
#include "app/Doctor.h"
#include "app/MovedKinds.h"
#include "app/Print.h"
#include "app/Storage.h"

#include "platform/os/Environment.h"
#include "platform/os/FreeSpace.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Numbers.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace App {
namespace {

using Storage::Problem;

// Less room than this is a warning even where nothing needs it yet.
constexpr std::uint64_t kLeastFreeBytes = std::uint64_t{100} * 1024 * 1024;

// Clocks of workstations that nobody sets by hand are closer together.
constexpr std::int64_t kClockSlackSeconds = 300;

void ExaminePlugin(Patient& patient, const Tell& tell) {
    try {
        patient.plugin = FindStoragePlugin();
    } catch (const AppError& error) {
        tell({"plugin", Message::LabelPlugin, Health::Failure, error.Text(), {}, error.Status()});
        return;
    }
    if (!patient.manager.IsInitialized()) {
        tell({"plugin",
              Message::LabelPlugin,
              Health::Failure,
              WhyNoPlugin(patient.plugin),
              {},
              ExitStatus::Configuration});
        return;
    }
    for (const auto& useless : patient.plugin.useless)
        tell({"plugin", Message::LabelPlugin, Health::Warning,
              useless.file + u": " + useless.reason, Text(Message::AdviceUseless)});
    tell({"plugin", Message::LabelPlugin, Health::Ok,
          patient.manager.GetRepositroyStorageName() + u" (" + patient.plugin.file + u")"});
}

// Of a plug-in without an administration only this much is known.
void ExamineAccess(Patient& patient, const Tell& tell) {
    patient.isReachable = patient.manager.IsRepositoryAccessible() != 0;
    if (patient.isReachable)
        tell({"repository", Message::LabelRepository, Health::Ok, Text(Message::Reachable)});
    else
        tell({"repository",
              Message::LabelRepository,
              Health::Failure,
              Text(Message::NotReachable, {patient.manager.GetRepositroyStorageName()}),
              {},
              ExitStatus::NotReachable});
}

void ExamineState(Patient& patient, const Tell& tell) {
    const auto& state = patient.state = patient.plugin.administration->State();
    const bool areSettingsWrong = state.problem == Problem::Configuration;
    // The texts of the storage say what to do.
    tell({"storage-settings",
          Message::DoctorStorageSettings,
          areSettingsWrong ? Health::Failure : Health::Ok,
          areSettingsWrong ? state.problemText : state.address,
          {},
          ExitStatus::Configuration});
    if (areSettingsWrong)
        return;
    patient.isReachable = state.problem == Problem::None;
    if (!patient.isReachable) {
        tell({"repository",
              Message::LabelRepository,
              Health::Failure,
              state.problemText,
              {},
              StatusOf(state.problem)});
        return;
    }
    tell({"repository", Message::LabelRepository, Health::Ok,
          Text(Message::RepositoryHolds,
               {state.engine, Platform::ToText(state.revision), Platform::ToText(state.files)})});
    tell({"schema", Message::DoctorSchema, Health::Ok, Platform::ToText(state.schemaVersion)});
}

void ExamineRights(const Patient& patient, const Tell& tell) {
    if (patient.manager.AmIAdmin())
        tell({"rights", Message::LabelRights, Health::Ok, Text(Message::RightsWrite)});
    else
        tell({"rights", Message::LabelRights, Health::Warning, Text(Message::RightsRead),
              Text(Message::AdviceRights)});
}

struct Room {
    const char* id;
    Message label;
    CString path;
    std::uint64_t neededBytes; // that a transfer of everything may take at most
};

CString MebiBytes(std::uint64_t bytes) {
    return Platform::ToText(static_cast<std::int64_t>(bytes / (std::uint64_t{1024} * 1024)));
}

void ExamineRoom(const Room& room, const Tell& tell) {
    const auto free = Platform::FreeSpace(room.path);
    const std::uint64_t wanted = std::max(room.neededBytes, kLeastFreeBytes);
    if (!free)
        tell({room.id,
              room.label,
              Health::Warning,
              Text(Message::RoomUnknown, {ShownPath(room.path)}),
              {}});
    else if (*free < wanted)
        tell({room.id, room.label, Health::Warning,
              Text(Message::RoomLittle, {MebiBytes(*free), MebiBytes(wanted)}),
              Text(Message::AdviceRoom)});
    else
        tell({room.id, room.label, Health::Ok, Text(Message::RoomFree, {MebiBytes(*free)})});
}

std::uint64_t StoredBytes(Storage::RepositoryAdministration& administration) {
    std::vector<Storage::StoredFile> files;
    std::vector<Storage::StoredGS> settings;
    CString problemText;
    administration.List(files, settings, problemText);
    std::uint64_t bytes = 0;
    for (const auto& file : files)
        bytes += static_cast<std::uint64_t>(file.sizeBytes);
    return bytes;
}

std::uint64_t LocalBytes(Repository::CRepositoryStorageManager& manager) {
    std::uint64_t bytes = 0;
    for (const MovedKind& kind : MovedKinds(manager, ParseSelection({}), Dependents::Always)) {
        for (const LocalFile& file : kind.files)
            bytes += file.SizeBytes().value_or(0);
    }
    return bytes;
}

// The path of "sqlite:/srv/zeb/repository.db"; empty: the repository is no file.
CString FileOf(const CString& address) {
    constexpr CStringView kScheme = u"sqlite:";
    return address.starts_with(kScheme) ? address.substr(kScheme.size()) : CString();
}

// Seconds of "2026-11-21T08:05:19Z"; nothing for another text.
std::optional<std::int64_t> SecondsOf(const CString& time) {
    using namespace std::chrono;
    if (time.size() != 20 || time[10] != u'T')
        return std::nullopt;
    const auto number = [&time](std::size_t start, std::size_t size) {
        return Platform::ToInteger(CStringView(time).substr(start, size));
    };
    const year_month_day date(year(number(0, 4)), month(static_cast<unsigned>(number(5, 2))),
                              day(static_cast<unsigned>(number(8, 2))));
    if (!date.ok())
        return std::nullopt;
    const auto moment =
        sys_days(date) + hours(number(11, 2)) + minutes(number(14, 2)) + seconds(number(17, 2));
    return duration_cast<seconds>(moment.time_since_epoch()).count();
}

void ExamineClock(const Storage::RepositoryState& state, const Tell& tell) {
    const CString now = Platform::UtcNow();
    const auto newest = SecondsOf(state.revisionTime);
    const auto here = SecondsOf(now);
    if (newest && here && *newest > *here + kClockSlackSeconds)
        tell({"clock", Message::DoctorClock, Health::Warning,
              Text(Message::ClockBehind, {now, state.revisionTime}), Text(Message::AdviceClock)});
    else
        tell({"clock", Message::DoctorClock, Health::Ok, now});
}

} // namespace

void ExamineRepository(Patient& patient, const Tell& tell) {
    ExaminePlugin(patient, tell);
    if (!patient.manager.IsInitialized())
        return;
    if (patient.plugin.administration)
        ExamineState(patient, tell);
    else
        ExamineAccess(patient, tell);
    if (patient.isReachable)
        ExamineRights(patient, tell);
}

void ExamineSurroundings(const Patient& patient, const Tell& tell) {
    auto* administration = patient.isReachable ? patient.plugin.administration : nullptr;
    const CString support =
        Platform::UserSettings::Instance()->Get(Platform::Setting::Support).value;
    ExamineRoom({"support-space", Message::DoctorSupportRoom, support,
                 administration ? StoredBytes(*administration) : 0},
                tell);
    if (!administration)
        return;
    if (const CString file = FileOf(patient.state.address); !file.empty())
        ExamineRoom(
            {"repository-space", Message::DoctorRepositoryRoom, file, LocalBytes(patient.manager)},
            tell);
    ExamineClock(patient.state, tell);
}

} // namespace App
