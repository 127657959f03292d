// The event script: a JSON list of user actions replayed against the dialog models.
//
//   { "events": [ { "click": "chkMSTS" },
//                 { "select": "cboProjectType", "text": "Rail Vehicle" },
//                 { "type": "txtMass", "text": "120" },
//                 { "click": "optSteps", "index": 4 },
//                 { "pick": "Body" },            (or a group index: { "pick": 3 })
//                 { "click": "cmdFinish" } ],
//     "answers": [ "Yes" ] }
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/ModalStack.h"

namespace railwright::ui::script {

// A script's events are the user events of the modal stack; a script never holds an answer among
// them (answers are a list of their own).
using EventKind = support::UserEventKind;
using ScriptEvent = support::UserEvent;

enum class Answer { Yes, No };

struct EventScript {
    std::vector<ScriptEvent> events;
    std::vector<Answer> answers;
};

struct ParseResult {
    std::optional<EventScript> script;
    std::string error;  // what is wrong, when script is empty
};

// Parses a script's JSON text; errors name the fault and, where it lies in an event, the event's
// position (1-based).
ParseResult ParseEventScript(std::string_view json);

struct EventParseResult {
    std::optional<support::UserEvent> event;
    std::string error;  // what is wrong, when event is empty
};

// Parses one event as a live front end sends it: an event of the script's "events", or the
// answer to the waiting message box, { "answer": "Yes" } ("No", "OK").
EventParseResult ParseUserEvent(std::string_view json);

}  // namespace railwright::ui::script
