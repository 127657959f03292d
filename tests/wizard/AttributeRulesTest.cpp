// The attribute input rules, as a user meets them: type into a box, leave it, read the box and
// the messages.
#include <gtest/gtest.h>

#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

// Opens a vehicle of this sub-type on the "Attributes" step and runs the events there.
void OnAttributes(WizardScenario& scenario, std::string_view subType,
                  std::vector<std::string> events) {
    events.insert(events.begin(),
                  {Click("chkTrainz"), Click("cmdNext"), Select("cboProjectType", "Rail Vehicle"),
                   Select("cboProjectSubType", subType), Click("optSteps", 3)});
    scenario.RunEvents(events);
    ASSERT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
}

// One entry into one box.
struct Entry {
    const char* box;
    int index;  // -1 for a box of its own
    const char* typed;
    const char* shown;
    const char* message;  // null: none
};

void PrintTo(const Entry& entry, std::ostream* out) {
    *out << entry.box << " " << entry.index << " \"" << entry.typed << "\"";
}

class BoxRules : public ::testing::TestWithParam<Entry> {};

TEST_P(BoxRules, CorrectTheBoxWhenItIsLeft) {
    const Entry& entry = GetParam();
    WizardScenario scenario;
    // A steam engine shows the steam boxes and all wheel rows; the pantograph boxes need an
    // electric engine.
    const std::string_view box = entry.box;
    const std::string_view subType = box == "txtPantographs" || box == "txtArmsPerPantograph"
                                         ? "Electric Engine"
                                     : box == "txtDieselExhaust" ? "Diesel Engine"
                                                                 : "Steam Engine";
    OnAttributes(scenario, subType,
                 {entry.index < 0 ? Type(entry.box, entry.typed)
                                  : Type(entry.box, entry.index, entry.typed)});
    EXPECT_EQ(scenario.Control(entry.box, entry.index).Text(), entry.shown);
    EXPECT_EQ(scenario.Messages(), entry.message == nullptr
                                       ? std::vector<std::string>{}
                                       : std::vector<std::string>{Exclamation(entry.message)});
}

const char* const kMaximumWheels = "The maximum number of wheels per group is 8.";
const char* const kWheelsInPairs =
    "Wheels must be in multiples of 2. Changing to the next highest multiple of 2.";

INSTANTIATE_TEST_SUITE_P(Wheels, BoxRules,
                         ::testing::Values(Entry{"txtWheels", 0, "7", "8", kWheelsInPairs},
                                           Entry{"txtWheels", 1, "9", "8", kMaximumWheels},
                                           Entry{"txtWheels", 2, "100", "8", kMaximumWheels},
                                           Entry{"txtWheels", 0, "8", "8", nullptr},
                                           Entry{"txtWheels", 0, "0", "0", nullptr},
                                           Entry{"txtWheels", 0, "5.5", "6", nullptr},
                                           Entry{"txtWheels", 0, "4.5", "4", nullptr},
                                           Entry{"txtWheels", 1, "-3", "-2", kWheelsInPairs},
                                           Entry{"txtWheels", 1, "-4", "-4", nullptr},
                                           Entry{"txtWheels", 2, "02", "2", nullptr},
                                           Entry{"txtWheels", 2, "six", "0", nullptr},
                                           Entry{"txtWheels", 2, "", "0", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    RealValues, BoxRules,
    ::testing::Values(Entry{"txtMass", -1, "0", "Default", nullptr},
                      Entry{"txtMass", -1, "heavy", "Default", nullptr},
                      Entry{"txtMass", -1, "", "Default", nullptr},
                      Entry{"txtMass", -1, "12.345", "12.35", nullptr},
                      Entry{"txtMass", -1, "120", "120.0", nullptr},
                      Entry{"txtMass", -1, " 2.675 ", "2.68", nullptr},
                      Entry{"txtMass", -1, "-3", "-3.0", nullptr},
                      Entry{"txtMass", -1, "12abc", "Default", nullptr},
                      Entry{"txtMass", -1, "1e3", "1000.0", nullptr},
                      Entry{"txtMaximumVelocity", -1, "100", "100.0", nullptr},
                      Entry{"txtMaximumVelocity", -1, "99.96", "100.0", nullptr},
                      Entry{"txtMaximumVelocity", -1, "Default", "Default", nullptr},
                      Entry{"txtWheelRadius", 0, "1", "1.0", nullptr},
                      Entry{"txtWheelRadius", 1, "0.5", "0.5", nullptr},
                      Entry{"txtWheelRadius", 2, "0.4572", "0.457", nullptr},
                      Entry{"txtWheelRadius", 2, "0.9995", "1.0", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    Counts, BoxRules,
    ::testing::Values(
        Entry{"txtRods", -1, "3.7", "4", nullptr}, Entry{"txtRods", -1, "abc", "0", nullptr},
        Entry{"txtSafetyValves", -1, "2.5", "2", nullptr},
        Entry{"txtDrainPipes", -1, "3.5", "4", nullptr},
        Entry{"txtDieselExhaust", -1, "40", "40", nullptr},
        Entry{"txtStacks", -1, "3", "1",
              "Train Simulator is currently limited to a maximum of 1 stack. Changing Stacks to "
              "1."},
        Entry{"txtStacks", -1, "-2", "-2", nullptr},
        Entry{"txtCylinders", -1, "5", "2",
              "Train Simulator is currently limited to a maximum of 2 cylinders. Changing "
              "Cyliners to 2."},
        Entry{"txtCylinders", -1, "02", "2", nullptr},
        Entry{"txtWhistles", -1, "2", "1",
              "Train Simulator is currently limited to a maximum of 1 whistle. Changing Wistles "
              "to 1."},
        Entry{"txtPantographs", -1, "3", "2",
              "This wizard support a maximum of two pantographs. Changing to 2."},
        Entry{"txtPantographs", -1, "1.5", "2", nullptr},
        Entry{"txtArmsPerPantograph", -1, "5", "5", nullptr}));

// The arms rule reads the pantograph box as it stands: "0.4" was rewritten as "0" when it was
// left.
TEST(AttributeRules, ArmsAreLimitedOnlyWhenThereArePantographs) {
    const char* const maximum = "There must be a maximum of 3 arms per pantograph. Changing to 3.";
    const char* const minimum = "There must be a minimum of 2 arms per pantograph. Changing to 2.";
    struct Case {
        const char* pantographs;
        const char* arms;
        const char* shown;
        const char* message;
    };
    for (const Case& test : {Case{"0", "5", "5", nullptr}, Case{"none", "1", "1", nullptr},
                             Case{"1", "5", "3", maximum}, Case{"1", "1", "2", minimum},
                             Case{"2", "3", "3", nullptr}, Case{"0.4", "9", "9", nullptr}}) {
        WizardScenario scenario;
        OnAttributes(
            scenario, "Electric Engine",
            {Type("txtPantographs", test.pantographs), Type("txtArmsPerPantograph", test.arms)});
        EXPECT_EQ(scenario.Control("txtArmsPerPantograph").Text(), test.shown) << test.pantographs;
        EXPECT_EQ(scenario.Messages(), test.message == nullptr
                                           ? std::vector<std::string>{}
                                           : std::vector<std::string>{Exclamation(test.message)})
            << test.pantographs << " " << test.arms;
    }
}

TEST(AttributeRules, CorrectingThePantographsLeavesTheArmsAlone) {
    WizardScenario scenario;
    OnAttributes(scenario, "Electric Engine",
                 {Type("txtPantographs", "0"), Type("txtArmsPerPantograph", "7"),
                  Type("txtPantographs", "3")});
    EXPECT_EQ(scenario.Control("txtPantographs").Text(), "2");
    EXPECT_EQ(scenario.Control("txtArmsPerPantograph").Text(), "7");
    EXPECT_EQ(scenario.Messages().size(), 1u);
}

TEST(AttributeRules, BogiesRequireWheels) {
    const std::string noWheels =
        Exclamation("Bogies require wheels. Please enter a number of wheels for this bogie.");
    for (const char* wheels : {"", "0", "many"}) {
        WizardScenario scenario;
        std::vector<std::string> events;
        if (*wheels != '\0') {
            events.push_back(Type("txtWheels", 0, wheels));
        }
        events.push_back(Click("chkBogie", 0));
        OnAttributes(scenario, "Freight Car", events);
        EXPECT_EQ(scenario.Control("chkBogie", 0).Value(), 0) << wheels;
        EXPECT_EQ(scenario.Messages().back(), noWheels) << wheels;
    }

    WizardScenario withWheels;
    OnAttributes(withWheels, "Freight Car",
                 {Type("txtWheels", 1, "2"), Click("chkBogie", 1), Click("chkBogie", 1),
                  Click("chkBogie", 1)});
    EXPECT_EQ(withWheels.Control("chkBogie", 1).Value(), 1);
    EXPECT_TRUE(withWheels.Messages().empty());
}

}  // namespace
}  // namespace railwright::testing
