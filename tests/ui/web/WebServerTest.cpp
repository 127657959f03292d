// The server of `railwright wizard`, running, driven over HTTP as the page drives it: the state
// of every control, events to the topmost dialog, questions answered, refusals, and the rules
// that keep every other program and page out.
#include <gtest/gtest.h>

#include <httplib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <nlohmann/json.hpp>

#include "support/posix/TempFolder.h"
#include "ui/web/WebServer.h"

namespace railwright::ui::web {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using support::ControlKind;

// A dialog with what the rules need: a text box, a disabled and a hidden button, a button that
// asks a question, one that shows a second dialog of the same kind over it, and a close button.
class Form : public support::DialogModel {
public:
    explicit Form(support::UserInterface& ui, int depth = 0)
        : DialogModel(depth == 0 ? "frmOuter" : "frmInner"), ui_(ui), depth_(depth) {
        SetCaption(Name());
        txtName.Place(8, 8, 120, 20);
        txtName.SetFont({"Tahoma", 8.25});
        cmdOff.SetEnabled(false);
        fraHidden.SetVisible(false);
        cmdInside.SetContainer(fraHidden);
        cmdAsk.onClick = [this] {
            const auto answer = ui_.ShowMessage("Reset all parts?", support::MessageIcon::Question,
                                                support::MessageButtons::YesNo);
            lblAnswer.SetCaption(answer == support::MessageAnswer::Yes ? "Yes" : "No");
        };
        cmdOpen.onClick = [this] {
            Form inner(ui_, depth_ + 1);
            ui_.ShowModal(inner);
            lblAnswer.SetCaption("inner closed");
        };
        cmdClose.onClick = [this] { Unload(); };
    }
    support::Control& txtName = Add(ControlKind::TextBox, "txtName");
    support::Control& lblAnswer = Add(ControlKind::Label, "lblAnswer");
    support::Control& cmdOff = Add(ControlKind::CommandButton, "cmdOff", "Off");
    support::Control& fraHidden = Add(ControlKind::Frame, "fraHidden");
    support::Control& cmdInside = Add(ControlKind::CommandButton, "cmdInside");
    support::Control& cmdAsk = Add(ControlKind::CommandButton, "cmdAsk", "Ask");
    support::Control& cmdOpen = Add(ControlKind::CommandButton, "cmdOpen", "Open");
    support::Control& cmdClose = Add(ControlKind::CommandButton, "cmdClose", "Close");

private:
    support::UserInterface& ui_;
    int depth_;
};

// A server over a running dialog, with a page folder and a model folder in a temp folder, and a
// client that speaks to it as the page does.
class RunningServer : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(folder_ / "page/three");
        fs::create_directories(folder_ / "model/textures");
        testing::PutFile(folder_ / "page/index.html", "<!doctype html><title>page</title>");
        testing::PutFile(folder_ / "page/three/three.module.js", "export {};");
        testing::PutFile(folder_ / "model/loco.gltf", "{}");
        testing::PutFile(folder_ / "model/textures/body.png", "png");
        testing::PutFile(folder_ / "model/notes.txt", "not referenced");
        testing::PutFile(folder_ / "secret.txt", "outside");
        fs::create_symlink(folder_ / "secret.txt", folder_ / "model/escape.png");
        ServerOptions options;
        options.pageFolder = folder_ / "page";
        options.modelFolder = folder_ / "model";
        options.modelFiles = {"loco.gltf", "textures/body.png", "escape.png"};
        server_ = std::make_unique<WebServer>(ui_, options);
        ASSERT_EQ(server_->Start(), "");
        dialogs_ = std::thread([this] {
            Form form(ui_);
            ui_.ShowModal(form);
        });
        client_ = std::make_unique<httplib::Client>("127.0.0.1", server_->Port());
    }
    void TearDown() override {
        ui_.Close();
        dialogs_.join();
        server_->Stop();
    }

    std::string Path(const std::string& rest) const { return "/" + server_->Token() + "/" + rest; }

    // Posts one event and gives the answer: { "refused": ..., "state": ... }.
    json Post(const json& event) {
        const auto response = client_->Post(Path("api/event"), event.dump(), "application/json");
        EXPECT_TRUE(response);
        EXPECT_EQ(response->status, 200) << response->body;
        return json::parse(response->body);
    }
    // The state once the dialogs have taken up the last event and wait for the next.
    json StateAfter(uint64_t sequence) {
        const auto response =
            client_->Get(Path("api/state?after=" + std::to_string(sequence)).c_str());
        EXPECT_TRUE(response);
        return json::parse(response->body);
    }
    // The first state from `state` on that meets the condition: the dialogs go on after an event
    // is applied (a handler's work after a box or an inner dialog) and publish again.
    template <typename Condition>
    json Eventually(json state, Condition condition) {
        for (int attempt = 0; attempt < 20 && !condition(state); ++attempt) {
            state = StateAfter(state["sequence"].get<uint64_t>());
        }
        EXPECT_TRUE(condition(state)) << state.dump();
        return state;
    }
    static const json& Find(const json& dialog, const std::string& name) {
        for (const json& control : dialog["controls"]) {
            if (control["name"] == name) {
                return control;
            }
        }
        static const json kNone;
        ADD_FAILURE() << "no control " << name;
        return kNone;
    }
    int Status(const std::string& path, const httplib::Headers& headers = {}) {
        const auto response = client_->Get(path.c_str(), headers);
        EXPECT_TRUE(response) << path;
        EXPECT_FALSE(response && response->has_header("Access-Control-Allow-Origin"));
        return response ? response->status : -1;
    }

    testing::TempFolder temp_;
    fs::path folder_ = temp_.Path();
    WebUserInterface ui_{[] { return json{{"groups", json::array({"Main"})}}; }};
    std::unique_ptr<WebServer> server_;
    std::thread dialogs_;
    std::unique_ptr<httplib::Client> client_;
};

TEST_F(RunningServer, StateShowsEveryControlOfTheDialog) {
    // The dialogs publish before they wait; wait for the first publication of the dialog.
    json state = StateAfter(1);
    ASSERT_EQ(state["stack"].size(), 1u);
    const json& dialog = state["stack"][0];
    EXPECT_EQ(dialog["name"], "frmOuter");
    EXPECT_EQ(state["phase"], "wizard");
    EXPECT_EQ(state["groups"], json::array({"Main"}));
    const json& text = Find(dialog, "txtName");
    for (const char* member : {"id", "name", "index", "kind", "caption", "text", "value", "list",
                               "listIndex", "visible", "enabled", "container", "left", "top",
                               "width", "height", "font", "toolTip", "tabIndex"}) {
        EXPECT_TRUE(text.contains(member)) << member;
    }
    EXPECT_EQ(text["kind"], "textBox");
    EXPECT_EQ(text["width"], 120);
    EXPECT_EQ(text["font"], (json{{"name", "Tahoma"}, {"size", 8.25}}));
    EXPECT_EQ(Find(dialog, "cmdOff")["enabled"], false);
    EXPECT_EQ(Find(dialog, "cmdInside")["container"], Find(dialog, "fraHidden")["id"]);
}

TEST_F(RunningServer, EventsGoToTheTopmostDialog) {
    StateAfter(1);
    json answer = Post({{"type", "txtName"}, {"text", "Sample Diesel"}});
    EXPECT_TRUE(answer["refused"].is_null());
    EXPECT_EQ(Find(answer["state"]["stack"][0], "txtName")["text"], "Sample Diesel");

    answer = Post({{"click", "cmdOpen"}});
    ASSERT_EQ(answer["state"]["stack"].size(), 2u);
    EXPECT_EQ(answer["state"]["stack"][1]["name"], "frmInner");
    // The inner dialog takes the events: its text box changes, the outer one's stays.
    answer = Post({{"type", "txtName"}, {"text", "inner"}});
    EXPECT_EQ(Find(answer["state"]["stack"][1], "txtName")["text"], "inner");
    EXPECT_EQ(Find(answer["state"]["stack"][0], "txtName")["text"], "Sample Diesel");
    answer = Post({{"click", "cmdClose"}});
    const json state = Eventually(answer["state"], [](const json& s) {
        return s["stack"].size() == 1 && Find(s["stack"][0], "lblAnswer")["caption"] ==
                                             "inner closed";
    });
    EXPECT_EQ(state["stack"][0]["name"], "frmOuter");
}

TEST_F(RunningServer, QuestionWaitsForThePagesAnswer) {
    StateAfter(1);
    json answer = Post({{"click", "cmdAsk"}});
    const json& question = answer["state"]["stack"].back();
    EXPECT_EQ(question, (json{{"kind", "question"},
                              {"caption", "Railwright"},
                              {"text", "Reset all parts?"},
                              {"icon", "question"},
                              {"buttons", "yesNo"}}));
    EXPECT_EQ(Post({{"click", "cmdClose"}})["refused"],
              "a message box is waiting for an answer: \"Reset all parts?\"");
    EXPECT_EQ(Post({{"answer", "OK"}})["refused"], "the message box takes \"Yes\" or \"No\"");
    answer = Post({{"answer", "Yes"}});
    EXPECT_TRUE(answer["refused"].is_null());
    const json state = Eventually(answer["state"], [](const json& s) {
        return s["stack"].size() == 1 && Find(s["stack"][0], "lblAnswer")["caption"] == "Yes";
    });
    EXPECT_EQ(state["messages"], json::array({{{"text", "Reset all parts?"},
                                               {"icon", "question"},
                                               {"buttons", "yesNo"},
                                               {"answer", "Yes"}}}));
}

TEST_F(RunningServer, RefusesWhatAUserCouldNotDo) {
    StateAfter(1);
    const std::pair<json, std::string> cases[] = {
        {{{"click", "cmdOff"}}, "\"cmdOff\" is disabled"},
        {{{"click", "cmdInside"}}, "the frame \"fraHidden\" around \"cmdInside\" is hidden"},
        {{{"click", "cmdNone"}}, "frmOuter has no control \"cmdNone\""},
        {{{"select", "txtName"}, {"text", "x"}}, "\"txtName\" is not a list"},
        {{{"pick", 0}}, "there is no view to pick in"},
        {{{"answer", "Yes"}}, "no message box is waiting for an answer"},
    };
    for (const auto& [event, reason] : cases) {
        EXPECT_EQ(Post(event)["refused"], reason) << event.dump();
    }
    for (const std::string body : {"{\"click\": ", "{\"click\": \"a\", \"shout\": 1}", "[]"}) {
        const auto response = client_->Post(Path("api/event"), body, "application/json");
        ASSERT_TRUE(response);
        EXPECT_EQ(response->status, 400) << body;
    }
}

TEST_F(RunningServer, ClosedPageEndsTheDialogs) {
    StateAfter(1);
    const auto response = client_->Post(Path("api/close"), "", "application/json");
    ASSERT_TRUE(response);
    EXPECT_EQ(response->status, 204);
    dialogs_.join();
    dialogs_ = std::thread([] {});
    EXPECT_EQ(Post({{"click", "cmdAsk"}})["refused"], "the wizard is closed");
}

TEST_F(RunningServer, ServesOnlyThePageAndTheModelsReferencedFiles) {
    const struct {
        std::string path;
        int status;
    } cases[] = {
        {Path(""), 200},
        {Path("three/three.module.js"), 200},
        {Path("model/loco.gltf"), 200},
        {Path("model/textures/body.png"), 200},
        {Path("model/notes.txt"), 404},           // in the folder, not referenced
        {Path("missing.js"), 404},
        {Path("api/other"), 404},
        {Path("model/escape.png"), 403},          // a symbolic link leading out
        {Path("model/../secret.txt"), 403},
        {Path("model/%2e%2e/secret.txt"), 403},
        {Path("model//etc/passwd"), 403},         // absolute
        {Path("model/textures/./body.png"), 403},
        {Path("model/textures%5c..%5c..%5csecret.txt"), 403},
        {Path("model/C:/secret.txt"), 403},
        {"/", 403},                               // no token
        {"/" + std::string(32, '0') + "/", 403},  // another token
        {"/" + server_->Token(), 403},
    };
    for (const auto& [path, status] : cases) {
        EXPECT_EQ(Status(path), status) << path;
    }
    EXPECT_EQ(client_->Get(Path("model/loco.gltf").c_str())->body, "{}");
}

TEST_F(RunningServer, RefusesOtherHostsOriginsAndLargeBodies) {
    const std::string port = std::to_string(server_->Port());
    EXPECT_EQ(Status(Path(""), {{"Host", "localhost:" + port}}), 200);
    EXPECT_EQ(Status(Path(""), {{"Host", "attacker.example:" + port}}), 403);
    EXPECT_EQ(Status(Path(""), {{"Host", "127.0.0.1:1"}}), 403);
    EXPECT_EQ(Status(Path(""), {{"Origin", "http://127.0.0.1:" + port}}), 200);
    EXPECT_EQ(Status(Path(""), {{"Origin", "http://attacker.example"}}), 403);
    EXPECT_EQ(Status(Path(""), {{"Sec-Fetch-Site", "cross-site"}}), 403);

    const auto preflight = client_->Options(Path("api/event").c_str());
    ASSERT_TRUE(preflight);
    EXPECT_EQ(preflight->status, 403);
    EXPECT_FALSE(preflight->has_header("Access-Control-Allow-Origin"));

    const auto plain = client_->Post(Path("api/event"), "{\"click\":\"cmdOff\"}", "text/plain");
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->status, 415);
    const auto large = client_->Post(Path("api/event"), std::string(kBodyLimit + 1, ' '),
                                     "application/json");
    ASSERT_TRUE(large);
    EXPECT_EQ(large->status, 413);
}

TEST_F(RunningServer, ListensOnTheLoopbackOnlyWithA128BitToken) {
    EXPECT_EQ(server_->Token().size(), 32u);
    EXPECT_EQ(server_->Token().find_first_not_of("0123456789abcdef"), std::string::npos);
    WebUserInterface other;
    WebServer second(other, {folder_ / "page", folder_ / "model", {}, 0});
    ASSERT_EQ(second.Start(), "");
    EXPECT_NE(second.Token(), server_->Token());
    second.Stop();
    // The kernel's table of TCP sockets: the listening socket's local address is 127.0.0.1.
    std::ifstream table("/proc/net/tcp");
    std::string line;
    char port[8];
    std::snprintf(port, sizeof port, ":%04X", server_->Port());
    int listening = 0;
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string slot, local, remote, state;
        fields >> slot >> local >> remote >> state;
        if (local.size() > 5 && local.substr(local.size() - 5) == port && state == "0A") {
            EXPECT_EQ(local, std::string("0100007F") + port);
            ++listening;
        }
    }
    EXPECT_EQ(listening, 1);
}

}  // namespace
}  // namespace railwright::ui::web
