// The modal stack: the one door through which every front end reaches the dialog models.
//
// Whatever a front end shows (Win32 windows, the page of `railwright wizard`, an event script),
// it shows the modal stack: the dialogs shown modally, innermost last (the wizard, frmWarn over
// it), and the message box that is waiting for an answer, if any. A front end
//
//   - reads the stack only through const access (ModalStack's const members, `const
//     DialogModel&`, `const Control&`) or its JSON state (State()), and
//   - hands every user action to the stack as a UserEvent, which Dispatch applies to the top of
//     the stack under the dialogs' rules, or refuses with a reason.
//
// What only the model may do (Control::SetValue, SetText, SetVisible... which bypass the click
// and leave handlers and the reachability rule) stays out of a front end's reach because it never
// holds a non-const model: ModalUserInterface implements UserInterface::ShowModal and ShowMessage
// once, final, and asks its subclass (the front end) only for the next event. We chose const
// access over a pass-key on every setter: the dialog models call their setters hundreds of times,
// and a front end built on ModalUserInterface never sees anything it could call them on.
//
// The rules Dispatch applies:
//   - click, select and type reach only a control that is visible and enabled, inside frames
//     that are all visible and enabled; select only a combo box, type only a text box; a control
//     array needs an index and a single control takes none;
//   - pick goes to the view of the top dialog (frmWizard's `Viewer`) through the picker
//     registered with SetPicker (the owner of the scene registers it: one resolution for every
//     front end, see host/scene's PickGroup);
//   - answer goes only to a waiting message box, and only with one of its buttons;
//   - while a message box waits, nothing else is accepted.
// Refusals are texts for the user and for script reports, e.g. "\"txtMass\" is disabled",
// "the frame \"fraWheels\" around \"txtWheels\" is hidden", "\"cboRoute\" has no entry \"X\"".
//
// Threads: the stack and the dialog models belong to one thread, the one that calls ShowModal.
// A front end that cannot block its own loop (the web server) runs the plug-in on a thread of
// its own and hands events over in NextEvent, which blocks that thread until the person acts.
//
// The JSON state (State()), one object:
//
//   { "revision": 42,                     changes with every change of anything below
//     "stack": [                          outermost first; the last entry has the events
//       { "kind": "dialog", "name": "frmWizard", "caption": "...",
//         "left": 256, "top": 192, "width": 760, "height": 496,     pixels at 96 dpi
//         "font": { "name": "Tahoma", "size": 8.25 },                points
//         "defaultButton": 12, "cancelButton": 13,                   control ids, or null
//         "controls": [
//           { "id": 0,                    position in this list; "container" refers to it
//             "name": "optSteps", "index": 0,         index -1: not a control array
//             "kind": "optionButton",     label, textBox, checkBox, optionButton, comboBox,
//                                         commandButton, frame, view
//             "caption": "Start", "text": "", "value": 1,
//             "list": [], "listIndex": -1,
//             "visible": true, "enabled": true,
//             "container": 3,             id of the frame holding it, or null (the form)
//             "left": 8, "top": 8, "width": 120, "height": 24,   within the container
//             "font": { "name": "Tahoma", "size": 8.25 },        null for the view
//             "toolTip": "", "tabIndex": 0 } ] },
//       { "kind": "question", "caption": "Railwright", "text": "Reset all parts?",
//         "icon": "question",             information, exclamation, critical, question, none
//         "buttons": "yesNo" } ] }        ok or yesNo
//
// A control's position is relative to its container (the form's client area when it has none),
// as the dialogs were designed; a control is shown only when it and every container around it is
// visible. "value" is 0 or 1 for check boxes and option buttons.
//
// A front end that goes away (a closed page) ends its waits: NextEvent returns nothing. A waiting
// question is then answered "No" (an OK box "OK"), the safe answer: nothing is overwritten or
// reset on a guess. A dialog is closed as by its close box, which for the wizard is Cancel: the
// model is not changed.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "support/DialogModel.h"
#include "support/Platform.h"

namespace railwright::support {

// A group in the view: by name (the first group of that name in Scripting.Group order) or by
// its index in that order.
using GroupTarget = std::variant<std::string, int32_t>;

enum class UserEventKind { Click, Select, Type, Pick, Answer };

// One thing a user does, as the event script writes it.
struct UserEvent {
    UserEventKind kind = UserEventKind::Click;
    std::string control;       // the control's name (Click, Select, Type)
    std::optional<int> index;  // the element of a control array
    std::string text;          // the entry (Select) or the text (Type)
    GroupTarget group;         // the group to pick (Pick)
    MessageAnswer answer = MessageAnswer::Ok;  // the button pressed (Answer)

    // The event as a short text for messages, e.g. click "optSteps" 4.
    std::string Describe() const;
    bool operator==(const UserEvent&) const = default;
};

// Why an event was not applied, in words for the user.
struct Refusal {
    std::string reason;
};

// A message box waiting for its answer; its caption is always kMessageCaption.
struct Question {
    std::string text;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;
};

class ModalStack {
public:
    // Selects a group in the view; an error text when there is no such group, empty when the
    // pick was made. For a model document: host::scene::Scene::PickGroup.
    using Picker = std::function<std::string(const GroupTarget& group)>;

    struct Entry {
        const DialogModel* dialog = nullptr;  // or a question
        std::optional<Question> question;
    };

    // Outermost first.
    const std::vector<Entry>& Entries() const { return entries_; }
    bool Empty() const { return entries_.empty(); }
    // The topmost dialog (below a waiting question, if any), or null.
    const DialogModel* TopDialog() const;
    // The question waiting on top, or null.
    const Question* WaitingQuestion() const;

    // Applies the event to the top of the stack, or refuses it.
    [[nodiscard]] std::optional<Refusal> Dispatch(const UserEvent& event);

    // Grows with every change of the stack or of any control or dialog on it.
    uint64_t Revision() const;
    // The whole state, in the format above.
    nlohmann::json State() const;

    void SetPicker(Picker picker) { picker_ = std::move(picker); }

private:
    friend class ModalUserInterface;
    void PushDialog(DialogModel& dialog);
    void PopDialog();
    void PushQuestion(Question question);
    // Removes the question and its answer.
    void PopQuestion();
    DialogModel* MutableTopDialog();

    std::optional<Refusal> DispatchToDialog(DialogModel& dialog, const UserEvent& event);

    std::vector<Entry> entries_;
    std::vector<DialogModel*> dialogs_;  // the same dialogs as entries_, writable
    std::optional<MessageAnswer> answer_;
    Picker picker_;
    uint64_t base_ = 0;  // see Revision()
};

// The name of a message box icon in the state and in the script's echo: "information",
// "exclamation", "critical", "question" or "none".
std::string_view IconName(MessageIcon icon);

// The state of one dialog, as an entry of ModalStack::State()'s "stack".
nlohmann::json DialogState(const DialogModel& dialog);

// A user interface whose dialogs and message boxes go through a modal stack: the base of every
// front end. ShowModal pushes the dialog, loads it and dispatches the front end's events until
// the dialog is unloaded; ShowMessage pushes the question and dispatches events until it is
// answered. Both are final, so that no front end holds a writable dialog.
class ModalUserInterface : public UserInterface {
public:
    MessageAnswer ShowMessage(std::string_view text, MessageIcon icon,
                              MessageButtons buttons) final;
    void ShowModal(DialogModel& dialog) final;

    const ModalStack& Modals() const { return stack_; }
    // The picker of the view's picks (see ModalStack::SetPicker).
    void SetPicker(ModalStack::Picker picker) { stack_.SetPicker(std::move(picker)); }

protected:
    // Waits for the person's next action on the top of the stack; nothing when the front end has
    // gone away (or, for a script, has no more events). Called again after every event, applied
    // or refused, so it is also where a front end shows the state anew.
    virtual std::optional<UserEvent> NextEvent(const ModalStack& stack) = 0;
    // The event was refused; the stack is unchanged.
    virtual void Refused(const UserEvent& event, const Refusal& refusal) { (void)event, (void)refusal; }
    // A question was answered (or given the default answer when the front end went away).
    virtual void Answered(const Question& question, MessageAnswer answer) {
        (void)question, (void)answer;
    }
    // A dialog was unloaded; it leaves the stack right after.
    virtual void Closed(const DialogModel& dialog) { (void)dialog; }

private:
    ModalStack stack_;
};

}  // namespace railwright::support
