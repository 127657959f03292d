#include "ui/script/EventScript.h"

#include <nlohmann/json.hpp>

#include "support/JsonNesting.h"

namespace railwright::ui::script {
namespace {

using nlohmann::json;

// So that a hostile file cannot exhaust the stack of the parser.
constexpr size_t kMaxNesting = 64;

std::optional<std::string> ParseEvent(const json& item, ScriptEvent& event) {
    if (!item.is_object()) {
        return "is not an object";
    }
    const char* kinds[] = {"click", "select", "type", "pick"};
    int found = 0;
    for (int k = 0; k < 4; ++k) {
        if (item.contains(kinds[k])) {
            event.kind = static_cast<EventKind>(k);
            ++found;
        }
    }
    if (found != 1) {
        return "needs exactly one of \"click\", \"select\", \"type\" or \"pick\"";
    }
    for (const auto& [key, value] : item.items()) {
        if (key != "click" && key != "select" && key != "type" && key != "pick" &&
            key != "text" && key != "index") {
            return "has an unknown member \"" + key + "\"";
        }
    }
    if (event.kind == EventKind::Pick) {
        const json& group = item["pick"];
        if (group.is_string()) {
            event.group = group.get<std::string>();
        } else if (group.is_number_integer() && group.get<int64_t>() >= 0 &&
                   group.get<int64_t>() <= INT32_MAX) {
            event.group = static_cast<int32_t>(group.get<int64_t>());
        } else {
            return "\"pick\" must be a group name or a group index";
        }
        return std::nullopt;
    }
    const json& control = item[kinds[static_cast<int>(event.kind)]];
    if (!control.is_string() || control.get<std::string>().empty()) {
        return "names no control";
    }
    event.control = control.get<std::string>();
    if (item.contains("index")) {
        const json& index = item["index"];
        if (!index.is_number_integer() || index.get<int64_t>() < 0 || index.get<int64_t>() > 1000) {
            return "\"index\" must be a whole number from 0";
        }
        event.index = static_cast<int>(index.get<int64_t>());
    }
    const bool needsText = event.kind == EventKind::Select || event.kind == EventKind::Type;
    if (needsText) {
        if (!item.contains("text") || !item["text"].is_string()) {
            return "needs a \"text\"";
        }
        event.text = item["text"].get<std::string>();
    } else if (item.contains("text")) {
        return "takes no \"text\"";
    }
    return std::nullopt;
}

}  // namespace

EventParseResult ParseUserEvent(std::string_view text) {
    EventParseResult result;
    if (support::JsonNestingDepth(text) > kMaxNesting) {
        result.error = "the JSON is nested too deeply";
        return result;
    }
    const json item = json::parse(text, nullptr, false);
    if (item.is_discarded()) {
        result.error = "the event is not valid JSON";
        return result;
    }
    support::UserEvent event;
    if (item.is_object() && item.contains("answer")) {
        const json& answer = item["answer"];
        if (item.size() != 1 || !answer.is_string()) {
            result.error = "an answer is { \"answer\": \"Yes\" }, \"No\" or \"OK\"";
            return result;
        }
        event.kind = support::UserEventKind::Answer;
        if (answer == "Yes") {
            event.answer = support::MessageAnswer::Yes;
        } else if (answer == "No") {
            event.answer = support::MessageAnswer::No;
        } else if (answer == "OK") {
            event.answer = support::MessageAnswer::Ok;
        } else {
            result.error = "an answer must be \"Yes\", \"No\" or \"OK\", not " + answer.dump();
            return result;
        }
        result.event = std::move(event);
        return result;
    }
    if (const std::optional<std::string> fault = ParseEvent(item, event)) {
        result.error = "the event " + *fault;
        return result;
    }
    result.event = std::move(event);
    return result;
}

ParseResult ParseEventScript(std::string_view text) {
    ParseResult result;
    if (support::JsonNestingDepth(text) > kMaxNesting) {
        result.error = "the JSON is nested too deeply";
        return result;
    }
    const json document = json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        result.error = "it is not valid JSON";
        return result;
    }
    if (!document.is_object() || !document.contains("events") || !document["events"].is_array()) {
        result.error = "it needs an object with an \"events\" list";
        return result;
    }
    for (const auto& [key, value] : document.items()) {
        if (key != "events" && key != "answers") {
            result.error = "unknown member \"" + key + "\"";
            return result;
        }
    }
    EventScript script;
    size_t position = 0;
    for (const json& item : document["events"]) {
        ++position;
        ScriptEvent event;
        if (const std::optional<std::string> fault = ParseEvent(item, event)) {
            result.error = "event " + std::to_string(position) + " " + *fault;
            return result;
        }
        script.events.push_back(std::move(event));
    }
    if (document.contains("answers")) {
        const json& answers = document["answers"];
        if (!answers.is_array()) {
            result.error = "\"answers\" must be a list";
            return result;
        }
        for (const json& answer : answers) {
            if (answer == "Yes") {
                script.answers.push_back(Answer::Yes);
            } else if (answer == "No") {
                script.answers.push_back(Answer::No);
            } else {
                result.error = "an answer must be \"Yes\" or \"No\", not " + answer.dump();
                return result;
            }
        }
    }
    result.script = std::move(script);
    return result;
}

}  // namespace railwright::ui::script
