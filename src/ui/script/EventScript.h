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

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace railwright::ui::script {

enum class EventKind { Click, Select, Type, Pick };

struct ScriptEvent {
    EventKind kind = EventKind::Click;
    std::string control;       // the control's name (Click, Select, Type)
    std::optional<int> index;  // the element of a control array
    std::string text;          // the entry (Select) or the text (Type)
    std::variant<std::string, int32_t> group;  // the group to pick, by name or index (Pick)

    // The event as a short text for messages, e.g. click "optSteps" 4.
    std::string Describe() const;
};

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

}  // namespace railwright::ui::script
