// The wizard as a front end lays it out, from the dialog's state alone: on every page and for
// every kind of project, each shown control lies inside its frame and overlaps no shown control
// of the same frame; every control has a size and a place of its own in the Tab order.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "support/ModalStack.h"
#include "support/posix/TempFolder.h"
#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

using nlohmann::json;

struct Rectangle {
    int64_t left = 0;
    int64_t top = 0;
    int64_t width = 0;
    int64_t height = 0;

    static Rectangle Of(const json& item) {
        return {item["left"], item["top"], item["width"], item["height"]};
    }
    bool Overlaps(const Rectangle& other) const {
        return left < other.left + other.width && other.left < left + width &&
               top < other.top + other.height && other.top < top + height;
    }
};

std::string Named(const json& control) {
    const int index = control["index"];
    return control["name"].get<std::string>() + (index >= 0 ? " " + std::to_string(index) : "");
}

// What is wrong with the layout of one dialog's state, one line per fault.
std::vector<std::string> LayoutFaults(const json& dialog) {
    const json& controls = dialog["controls"];
    std::vector<std::string> faults;
    std::set<int> tabIndices;
    const auto shown = [&controls](const json& control) {
        for (const json* item = &control; item->is_object();) {
            if (!(*item)["visible"].get<bool>()) {
                return false;
            }
            const json& container = (*item)["container"];
            item = container.is_null() ? &container : &controls[container.get<size_t>()];
        }
        return true;
    };
    for (const json& control : controls) {
        const Rectangle place = Rectangle::Of(control);
        if (place.width <= 0 || place.height <= 0) {
            faults.push_back(Named(control) + " has no size");
        }
        if (!tabIndices.insert(control["tabIndex"].get<int>()).second) {
            faults.push_back(Named(control) + " shares its place in the Tab order");
        }
        if (!shown(control)) {
            continue;
        }
        const json& container = control["container"];
        const Rectangle frame =
            Rectangle::Of(container.is_null() ? dialog : controls[container.get<size_t>()]);
        if (place.left < 0 || place.top < 0 || place.left + place.width > frame.width ||
            place.top + place.height > frame.height) {
            faults.push_back(Named(control) + " leaves its frame");
        }
        for (const json& other : controls) {
            if (other["id"] > control["id"] && other["container"] == container && shown(other) &&
                Rectangle::Of(other).Overlaps(place)) {
                faults.push_back(Named(control) + " overlaps " + Named(other));
            }
        }
    }
    return faults;
}

struct PageCase {
    const char* simulator;
    const char* type;
    const char* subType;
    int step;

    friend void PrintTo(const PageCase& page, std::ostream* out) {
        *out << page.simulator << ", " << page.subType << ", step " << page.step;
    }
};

class WizardLayout : public ::testing::TestWithParam<PageCase> {};

TEST_P(WizardLayout, PlacesEveryShownControlInsideItsFrameWithoutOverlaps) {
    const PageCase& page = GetParam();
    TempFolder folder;
    std::filesystem::create_directories(folder / "MSTS/ROUTES");
    WizardScenario scenario;
    scenario.InstallSimulators(folder / "MSTS", "/opt/RailWorks");
    scenario.RunEvents({Click(page.simulator), Click("cmdNext"), Select("cboProjectType", page.type),
                        Select("cboProjectSubType", page.subType), Click("optSteps", page.step)});
    ASSERT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    ASSERT_EQ(scenario.Wizard().CurrentStep(), page.step);

    const json state = support::DialogState(scenario.Wizard());
    for (const std::string& fault : LayoutFaults(state)) {
        ADD_FAILURE() << fault;
    }
    // Enter goes on, or finishes on the last page; Escape cancels.
    const json& controls = state["controls"];
    EXPECT_EQ(controls[state["defaultButton"].get<size_t>()]["name"],
              page.step == wizard::kStepFinish ? "cmdFinish" : "cmdNext");
    EXPECT_EQ(controls[state["cancelButton"].get<size_t>()]["name"], "cmdCancel");
}

constexpr const char* kVehicle = "Rail Vehicle";

INSTANTIATE_TEST_SUITE_P(
    WizardSteps, WizardLayout,
    ::testing::Values(PageCase{"chkMSTS", kVehicle, "Diesel Engine", 0},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 1},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 2},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 3},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 4},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 5},
                      PageCase{"chkMSTS", kVehicle, "Diesel Engine", 6},
                      PageCase{"chkMSTS", kVehicle, "Steam Engine", 3},
                      PageCase{"chkMSTS", kVehicle, "Steam Engine", 5},
                      PageCase{"chkMSTS", kVehicle, "Electric Engine", 3},
                      PageCase{"chkRailWorks", kVehicle, "Passenger Car", 3},
                      PageCase{"chkMSTS", "Scenery", "Building", 3},
                      PageCase{"chkTrainz", "Rail Network", "Signal", 3},
                      PageCase{"chkRailWorks", "Scenery", "Building", 5}));

// The state a front end reads: what the user changed, which page holds what, and the fonts.
TEST(WizardState, SerialisesWhatTheUserChangedWithTheFormsFont) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz"), Click("cmdNext"), Select("cboProjectType", kVehicle),
                        Select("cboProjectSubType", "Freight Car"), Click("cmdNext"),
                        Type("txtProjectName", "hopper")});
    ASSERT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    const json state = support::DialogState(scenario.Wizard());
    EXPECT_EQ(state["name"], "frmWizard");
    EXPECT_EQ(state["font"], json({{"name", "Segoe UI"}, {"size", 9}}));

    const auto control = [&state](std::string_view name, int index = -1) -> const json& {
        for (const json& item : state["controls"]) {
            if (item["name"] == name && item["index"] == index) {
                return item;
            }
        }
        throw std::invalid_argument("no control " + std::string(name));
    };
    EXPECT_EQ(control("txtProjectName")["text"], "hopper");
    EXPECT_EQ(control("chkTrainz")["value"], 1);
    const json& types = control("cboProjectType");
    EXPECT_EQ(types["list"][types["listIndex"].get<size_t>()], kVehicle);
    EXPECT_EQ(types["kind"], "comboBox");
    // Each page's controls refer to their page; the view has no font.
    EXPECT_EQ(control("txtProjectName")["container"], control("fraStep", wizard::kStepTitle)["id"]);
    EXPECT_EQ(control("fraStep", wizard::kStepTitle)["visible"], true);
    EXPECT_EQ(control("fraStep", wizard::kStepType)["visible"], false);
    EXPECT_TRUE(control("Viewer")["font"].is_null());
    EXPECT_EQ(control("txtMass")["font"], state["font"]);
}

}  // namespace
}  // namespace railwright::testing
