// SPDX-License-Identifier: MIT
#include "app/Doctor.h"
#include "app/Print.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <algorithm>
#include <ostream>

namespace App {
namespace {

CString WordFor(Health health) {
    return Text(health == Health::Ok        ? Message::HealthOk
                : health == Health::Warning ? Message::HealthWarning
                                            : Message::HealthFailure);
}

const char* NameOf(Health health) {
    if (health == Health::Ok)
        return "ok";
    return health == Health::Warning ? "warning" : "failure";
}

// Shows each diagnosis as it comes and remembers what matters in the end.
class Findings {
public:
    explicit Findings(Session& session) : m_out(session.out), m_result(session.result) {
        m_result = {{"checks", Json::array()}, {"failures", 0}, {"warnings", 0}};
        for (const Health health : {Health::Ok, Health::Warning, Health::Failure})
            m_width = std::max(m_width, WidthOf(WordFor(health)));
    }

    void Tell(const Diagnosis& diagnosis) {
        Count(diagnosis);
        const CString blanks(m_width + 2, u' ');
        CString lead = PadRight(WordFor(diagnosis.health), m_width + 2);
        CString text = Text(diagnosis.label) + u": " + diagnosis.found;
        // The storage's texts may have several lines.
        for (std::size_t start = 0; start <= text.size();) {
            const std::size_t end = std::min(text.find(u'\n', start), text.size());
            PrintWrapped(m_out, lead, CStringView(text).substr(start, end - start));
            lead = blanks;
            start = end + 1;
        }
        if (!diagnosis.advice.empty())
            PrintWrapped(m_out, blanks, diagnosis.advice);
        m_out.flush();
        m_result["checks"].push_back({{"check", diagnosis.id},
                                      {"health", NameOf(diagnosis.health)},
                                      {"found", diagnosis.found},
                                      {"advice", OrNull(diagnosis.advice)}});
    }

    void Finish() {
        m_out << '\n';
        if (m_failures == 0 && m_warnings == 0)
            PrintWrapped(m_out, u"", Text(Message::AllWell));
        else
            PrintWrapped(m_out, u"",
                         Text(Message::NotAllWell,
                              {Platform::ToText(m_failures), Platform::ToText(m_warnings)}));
    }

    ExitStatus Status() const { return m_status; }

private:
    void Count(const Diagnosis& diagnosis) {
        m_warnings += diagnosis.health == Health::Warning ? 1 : 0;
        if (diagnosis.health == Health::Failure && m_failures++ == 0)
            m_status = diagnosis.status;
        m_result["failures"] = m_failures;
        m_result["warnings"] = m_warnings;
    }

    std::ostream& m_out;
    Json& m_result;
    std::size_t m_width = 0;
    int m_warnings = 0;
    int m_failures = 0;
    ExitStatus m_status = ExitStatus::Done;
};

} // namespace

ExitStatus RunDoctor(Session& session, const Invocation&) {
    Findings findings(session);
    const Tell tell = [&findings](const Diagnosis& diagnosis) { findings.Tell(diagnosis); };
    ExamineStation(tell);
    ExamineCatalogues(tell);
    ExamineDefinitions(tell);
    Patient patient{*Repository::CRepositoryStorageManager::Instance(), {}, {}};
    ExamineRepository(patient, tell);
    ExamineSurroundings(patient, tell);
    findings.Finish();
    return findings.Status();
}

} // namespace App
