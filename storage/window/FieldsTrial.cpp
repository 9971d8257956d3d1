// SPDX-License-Identifier: MIT
#include "storage/window/FieldsTrial.h"

#include <algorithm>

namespace Storage {
namespace {

WindowText LeadOf(StepResult result) {
    switch (result) {
    case StepResult::Worked:
        return WindowText::Worked;
    case StepResult::Warning:
        return WindowText::Warning;
    case StepResult::Failed:
        break;
    }
    return WindowText::Failed;
}

// A line each, and what it comes to.
CString ReportOf(const std::vector<ConnectionStep>& steps, bool works) {
    CString report;
    for (const ConnectionStep& step : steps)
        report += Msg(LeadOf(step.result), {step.text}) + u"\n";
    return report + Msg(works ? WindowText::Works : WindowText::WorksNot);
}

Connection ConnectionOf(const ConnectionFields& fields, bool create,
                        IConnectionParameters& parameters) {
    CString address = fields.Address();
    if (address == parameters.DefaultAddress())
        address.clear();
    return {address, create && fields.place == Place::File};
}

} // namespace

FieldsTrial TestFields(const ConnectionFields& fields, bool create,
                       IConnectionParameters& parameters) {
    FieldsTrial result;
    std::vector<ConnectionStep> steps;
    for (const FieldProblem& problem : fields.Problems()) {
        steps.push_back({StepResult::Failed, Msg(problem.text)});
        if (!result.wrong)
            result.wrong = problem.field;
    }
    if (!result.wrong) {
        result.connection = ConnectionOf(fields, create, parameters);
        steps = parameters.Test(result.connection);
        result.works = !steps.empty() && std::ranges::none_of(steps, [](const auto& step) {
            return step.result == StepResult::Failed;
        });
    }
    result.report = ReportOf(steps, result.works);
    return result;
}

} // namespace Storage
