// The modal stack as a front end that can go away (a page in a browser) sees it: the state it
// reads before each event, and what happens to a dialog or a question when it goes.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/Fakes.h"
#include "support/FontWiz.h"
#include "support/ModalStack.h"
#include "support/Warn.h"

namespace railwright::support {
namespace {

using nlohmann::json;

// Hands over its events one by one, noting the state it would show before each, and goes away
// when it has none left.
class PageFrontEnd : public ModalUserInterface {
public:
    explicit PageFrontEnd(std::vector<UserEvent> events) : events_(std::move(events)) {}

    void Repaint(DialogModel&) override {}
    void PumpMessages() override {}
    ScreenSize Screen() override { return {1024, 768}; }

    std::vector<json> shown;
    std::vector<std::string> refusals;

protected:
    std::optional<UserEvent> NextEvent(const ModalStack& stack) override {
        shown.push_back(stack.State());
        if (next_ == events_.size()) {
            return std::nullopt;
        }
        return events_[next_++];
    }
    void Refused(const UserEvent&, const Refusal& refusal) override {
        refusals.push_back(refusal.reason);
    }

private:
    std::vector<UserEvent> events_;
    size_t next_ = 0;
};

UserEvent Event(UserEventKind kind, std::string control, std::string text = {}) {
    UserEvent event;
    event.kind = kind;
    event.control = std::move(control);
    event.text = std::move(text);
    return event;
}

const json& Control(const json& dialog, std::string_view name) {
    for (const json& control : dialog["controls"]) {
        if (control["name"] == name) {
            return control;
        }
    }
    throw std::invalid_argument("no control " + std::string(name));
}

TEST(ModalStack, ShowsTheNoticeAsOneDialogWithItsButtonsAndGeometry) {
    testing::MemorySettingsStore settings;
    testing::NoFileSystem files;
    testing::FakeProcesses processes;
    testing::FakeSystemInfo system;
    PageFrontEnd page({Event(UserEventKind::Click, "chkContinueToReceiveWarning"),
                       Event(UserEventKind::Type, "lblWarning", "x")});
    Platform platform{files, processes, settings, system, page};
    FontWiz fonts(system);
    ShowWarning(platform, fonts, "Polyforge", "Mind the gap.", "Gap");

    // Before the first event, after the load; then after the click; then after the refusal.
    ASSERT_EQ(page.shown.size(), 3u);
    const json& before = page.shown[0]["stack"];
    ASSERT_EQ(before.size(), 1u);
    const json& notice = before[0];
    EXPECT_EQ(notice["name"], "frmWarn");
    EXPECT_EQ(notice["caption"], "Railwright");
    const json& ok = Control(notice, "cmdOK");
    EXPECT_EQ(notice["defaultButton"], ok["id"]);
    EXPECT_EQ(notice["cancelButton"], ok["id"]);
    EXPECT_EQ(Control(notice, "lblWarning")["caption"], "Mind the gap.");
    EXPECT_EQ(Control(notice, "chkContinueToReceiveWarning")["value"], 1);
    EXPECT_EQ(ok["font"], json({{"name", "Segoe UI"}, {"size", 9}}));
    for (const json& control : notice["controls"]) {
        EXPECT_LE(control["left"].get<int>() + control["width"].get<int>(), notice["width"]);
        EXPECT_LE(control["top"].get<int>() + control["height"].get<int>(), notice["height"]);
        EXPECT_GT(control["width"].get<int>(), 0);
    }

    const json& after = page.shown[1];
    EXPECT_EQ(Control(after["stack"][0], "chkContinueToReceiveWarning")["value"], 0);
    EXPECT_GT(after["revision"], page.shown[0]["revision"]);
    // A refused event changes nothing, so the revision stays.
    EXPECT_EQ(page.refusals.size(), 1u);
    EXPECT_EQ(page.shown[2]["revision"], after["revision"]);
    // The page went: the notice closed as by its close box, keeping the user's choice.
    EXPECT_EQ(settings.GetSetting("Polyforge", "Tips", "Gap", ""), "0");
    EXPECT_TRUE(page.Modals().Empty());
}

TEST(ModalStack, AQuestionWhosePageWentAwayGetsTheSafeAnswer) {
    struct Case {
        MessageButtons buttons;
        MessageAnswer answer;
        const char* buttonsName;
    };
    for (const Case& gone : {Case{MessageButtons::YesNo, MessageAnswer::No, "yesNo"},
                             Case{MessageButtons::Ok, MessageAnswer::Ok, "ok"}}) {
        PageFrontEnd page({});
        EXPECT_EQ(page.ShowMessage("Reset all parts?", MessageIcon::Question, gone.buttons),
                  gone.answer);
        ASSERT_EQ(page.shown.size(), 1u);
        EXPECT_EQ(page.shown[0]["stack"],
                  json::parse(R"([{ "kind": "question", "caption": "Railwright",
                                    "text": "Reset all parts?", "icon": "question", "buttons": ")" +
                              std::string(gone.buttonsName) + R"(" }])"));
        EXPECT_TRUE(page.Modals().Empty());
    }
}

}  // namespace
}  // namespace railwright::support
