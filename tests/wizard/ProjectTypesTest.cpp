// The "Type" step: sub-type lists, descriptions and the signal rule.
#include <gtest/gtest.h>

#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

// Opens the wizard and goes to the "Type" step, then runs the events there.
void OnTypeStep(WizardScenario& scenario, std::vector<std::string> events) {
    events.insert(events.begin(), {Click("chkTrainz"), Click("cmdNext")});
    scenario.RunEvents(events);
    ASSERT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
}

TEST(ProjectTypes, ChoosingATypeReplacesTheSubTypesAndSelectsTheFirst) {
    WizardScenario scenario;
    OnTypeStep(scenario,
               {Select("cboProjectType", "Rail Vehicle"), Select("cboProjectSubType", "Tender"),
                Select("cboProjectType", "Scenery")});
    const support::Control& subTypes = scenario.Control("cboProjectSubType");
    EXPECT_EQ(subTypes.List(), (std::vector<std::string>{"Building", "Vegetation", "Vehicle"}));
    EXPECT_EQ(subTypes.ListIndex(), 0);
    EXPECT_EQ(subTypes.Text(), "Building");
    EXPECT_EQ(scenario.Control("lblProjectTypeDescription").Caption(),
              "A scenery object does not interact with trains in any way.");

    WizardScenario vehicle;
    OnTypeStep(vehicle, {Select("cboProjectType", "Rail Vehicle")});
    EXPECT_EQ(vehicle.Control("cboProjectSubType").List(),
              (std::vector<std::string>{"Diesel Engine", "Electric Engine", "Freight Car",
                                        "Passenger Car", "Steam Engine", "Tank Engine", "Tender"}));
    EXPECT_EQ(vehicle.Control("cboProjectSubType").Text(), "Diesel Engine");
}

TEST(ProjectTypes, TwoParagraphDescriptionsAreSeparatedByTwoCarriageReturns) {
    WizardScenario network;
    OnTypeStep(network, {Select("cboProjectType", "Rail Network")});
    EXPECT_EQ(network.Control("cboProjectSubType").List(),
              (std::vector<std::string>{"Bridge", "Buffer", "Signal", "Track", "Tunnel"}));
    EXPECT_EQ(network.Control("lblProjectTypeDescription").Caption(),
              "A rail network object may interact with a train in some way such as a station, a "
              "bridge, or a tunnel.\r\rThis wizard will attempt to create boundaries for the rail "
              "network object to permit interaction with trains. But for this to work well it is "
              "necessary to design your structure so that when you hover over the object in "
              "Polyforge none of the bounding boxes displayed by Polyforge would constrain the "
              "movement of a train.");

    WizardScenario vehicle;
    OnTypeStep(vehicle, {Select("cboProjectType", "Rail Vehicle")});
    EXPECT_EQ(vehicle.Control("lblProjectTypeDescription").Caption(),
              "It is important to select the correct rail vehicle type since different rail "
              "vehicles include different parts and use different naming conventions.\r\rPlease "
              "note that many of the settings provided with this wizard are only exported to "
              "Microsoft Train Simulator. However, a report of these settings and other model "
              "details are provided to aid in setting up other simulators.");
}

TEST(ProjectTypes, OnlyASignalRetainsSubObjects) {
    WizardScenario signal;
    OnTypeStep(signal,
               {Select("cboProjectType", "Rail Network"), Select("cboProjectSubType", "Signal")});
    EXPECT_EQ(signal.Control("chkRetainSubObjects").Value(), 1);

    WizardScenario track;
    OnTypeStep(track,
               {Select("cboProjectType", "Rail Network"), Select("cboProjectSubType", "Signal"),
                Select("cboProjectSubType", "Track")});
    EXPECT_EQ(track.Control("chkRetainSubObjects").Value(), 0);
}

}  // namespace
}  // namespace railwright::testing
