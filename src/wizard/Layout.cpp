// Where every control of the wizard sits, its size and its place in the Tab order, so that a
// window and a web page lay out the same dialog from its state alone. Positions are relative to
// the control's frame (the form for the step list, the pages, the view and the button bar).
//
// The table is written in reading order, page by page, and the Tab key follows it: the controls
// of the pages first, then the button bar, the step list and the view.
#include <initializer_list>

#include "wizard/Layout.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

using namespace layout;

constexpr int32_t kFormWidth = 904;
constexpr int32_t kFormHeight = 464;

// A page's usable width inside its margins, and the standard control heights.
constexpr int32_t kContentWidth = kPageWidth - 16;
constexpr int32_t kLabelHeight = 16;
constexpr int32_t kBoxHeight = 20;
constexpr int32_t kComboHeight = 21;
constexpr int32_t kButtonWidth = 88;
constexpr int32_t kButtonHeight = 28;

struct Placement {
    Control* control;
    int32_t left;
    int32_t top;
    int32_t width;
    int32_t height;
};

// Places the controls and gives them the next places in the Tab order.
class Placer {
  public:
    void operator()(std::initializer_list<Placement> placements) {
        for (const Placement& placement : placements) {
            placement.control->Place(placement.left, placement.top, placement.width,
                                     placement.height);
            placement.control->SetTabIndex(nextTabIndex_++);
        }
    }

  private:
    int nextTabIndex_ = 0;
};

}  // namespace

void frmWizard::InitialiseLayout() {
    Resize(kFormWidth, kFormHeight);
    SetCaption(std::string(support::kMessageCaption));
    Placer place;
    const auto page = [this](int step) -> Placement {
        return {&fraStep[static_cast<size_t>(step)], kPageLeft, kPageTop, kPageWidth, kPageHeight};
    };

    // "Start": the simulators in two columns.
    place({page(kStepStart),
           {&lblStart, 8, 8, kContentWidth, 48},
           {&fraSimulator, 8, 64, kContentWidth, 96},
           {&chkMSTS, 12, 20, 224, kBoxHeight},
           {&chkRailSimulator, 12, 44, 224, kBoxHeight},
           {&chkRailWorks, 12, 68, 224, kBoxHeight},
           {&chkTrainz, 240, 20, 224, kBoxHeight},
           {&chkRail3D, 240, 44, 224, kBoxHeight},
           {&chkBVE, 240, 68, 224, kBoxHeight}});

    // "Type".
    place({page(kStepType),
           {&lblProjectType, 8, 12, 120, kLabelHeight},
           {&cboProjectType, 136, 8, 240, kComboHeight},
           {&lblProjectSubType, 8, 40, 120, kLabelHeight},
           {&cboProjectSubType, 136, 36, 240, kComboHeight},
           {&lblProjectTypeDescription, 8, 72, kContentWidth, 160}});

    // "Title".
    place({page(kStepTitle),
           {&lblProjectTitle, 8, 12, 120, kLabelHeight},
           {&txtProjectTitle, 136, 8, 344, kBoxHeight},
           {&lblProjectName, 8, 40, 120, kLabelHeight},
           {&txtProjectName, 136, 36, 344, kBoxHeight},
           {&lblProjectDescription, 8, 68, kContentWidth, kLabelHeight},
           {&txtProjectDescription, 8, 86, kContentWidth, 120},
           {&lblOperatingProcedures, 8, 214, kContentWidth, kLabelHeight},
           {&txtOperatingProcedures, 8, 232, kContentWidth, 120}});

    // "Attributes". The frames of projects without attributes and of vehicles share the top of
    // the page, as do the three traction frames: the page set-up shows one of each at a time.
    place({page(kStepAttributes),
           {&fraGeneralNonEngineAttibutes, 8, 8, kContentWidth, 96},
           {&fraMSTSRoute, 8, 20, 456, 48},
           {&lblRoute, 8, 20, 80, kLabelHeight},
           {&cboRoute, 92, 16, 356, kComboHeight},
           {&lblGeneralAttributesNoneAvailable, 8, 20, 456, kBoxHeight},
           {&fraGeneralEngineWagonAttibutes, 8, 8, kContentWidth, 196},
           {&chkViewPoint, 8, 20, 140, kBoxHeight},
           {&chkIntakePoint, 156, 20, 140, kBoxHeight},
           {&lblMass, 8, 50, 40, kLabelHeight},
           {&txtMass, 52, 46, 64, kBoxHeight},
           {&lblMassUnit, 120, 50, 100, kLabelHeight},
           {&lblCouplerType, 228, 50, 80, kLabelHeight},
           {&cboCouplerType, 312, 46, 152, kComboHeight},
           {&fraWheels, 8, 76, 456, 112},
           {&lblArrangement, 200, 18, 56, kLabelHeight},
           {&lblRadius, 260, 18, 40, kLabelHeight},
           {&lblRadiusUnit, 300, 18, 56, kLabelHeight},
           {&lblBogie, 360, 18, 40, kLabelHeight}});
    for (size_t row = 0; row < static_cast<size_t>(kWheelGroupCount); ++row) {
        const int32_t top = 38 + static_cast<int32_t>(row) * 24;
        place({{&lblWheels[row], 8, top + 2, 188, kLabelHeight},
               {&txtWheels[row], 200, top, 40, kBoxHeight},
               {&lblDash[row], 244, top + 2, 12, kLabelHeight},
               {&txtWheelRadius[row], 260, top, 56, kBoxHeight},
               {&chkBogie[row], 360, top, 40, kBoxHeight}});
    }
    place({{&fraEngineAttributes, 8, 208, kContentWidth, 72},
           {&lblMaximumVelocity, 8, 24, 100, kLabelHeight},
           {&txtMaximumVelocity, 112, 20, 64, kBoxHeight},
           {&lblMaximumVelocityUnit, 180, 24, 48, kLabelHeight},
           {&chkWiperLeft, 8, 46, 110, kBoxHeight},
           {&chkWiperRight, 122, 46, 110, kBoxHeight},
           {&chkMirrorLeft, 236, 46, 110, kBoxHeight},
           {&chkMirrorRight, 350, 46, 110, kBoxHeight},
           {&fraSteamEngineAttibutes, 8, 284, kContentWidth, 108},
           {&lblRods, 8, 24, 100, kLabelHeight},
           {&txtRods, 112, 20, 40, kBoxHeight},
           {&lblRodsNote, 156, 24, 164, kLabelHeight},
           {&chkTenderRequired, 328, 20, 136, kBoxHeight},
           {&lblStacks, 8, 50, 100, kLabelHeight},
           {&txtStacks, 112, 46, 40, kBoxHeight},
           {&lblCylinders, 164, 50, 100, kLabelHeight},
           {&txtCylinders, 268, 46, 40, kBoxHeight},
           {&lblWhistles, 320, 50, 100, kLabelHeight},
           {&txtWhistles, 424, 46, 40, kBoxHeight},
           {&lblSafetyValves, 8, 76, 100, kLabelHeight},
           {&txtSafetyValves, 112, 72, 40, kBoxHeight},
           {&lblDrainPipes, 164, 76, 100, kLabelHeight},
           {&txtDrainPipes, 268, 72, 40, kBoxHeight},
           {&fraDieselEngineAttributes, 8, 284, kContentWidth, 108},
           {&lblDieselExhaust, 8, 24, 100, kLabelHeight},
           {&txtDieselExhaust, 112, 20, 40, kBoxHeight},
           {&fraElectricEngineAttibutes, 8, 284, kContentWidth, 108},
           {&lblPantographs, 8, 24, 100, kLabelHeight},
           {&txtPantographs, 112, 20, 40, kBoxHeight},
           {&lblArmsPerPantograph, 8, 50, 100, kLabelHeight},
           {&txtArmsPerPantograph, 112, 46, 40, kBoxHeight}});

    // "Part Identification".
    place({page(kStepPartIdentification),
           {&lblPartIdentification, 8, 8, kContentWidth, 80},
           {&cmdReset, 8, 96, kButtonWidth, kButtonHeight},
           {&cmdSkip, 104, 96, kButtonWidth, kButtonHeight}});

    // "Export Preferences": the stacked column on the left (its tops are the page set-up's), the
    // shape options on the right.
    const int32_t rightColumn = kStackLeft + kStackWidth + 8;
    place({page(kStepExportPreferences),
           {&chkDefaultGroupCustomFields, 8, 8, kContentWidth, kBoxHeight},
           {&fraTextures, kStackLeft, kStackTop, kStackWidth, 64},
           {&chkConvertTextures, 8, 16, 216, kBoxHeight},
           {&cboCompression, 8, 38, 216, kComboHeight},
           {&chkExportToDocumentsFolder, kStackLeft, kStackTop + 64, kStackWidth, 24},
           {&fraMSTSExportPreferences, kStackLeft, kStackTop + 88, kStackWidth, 128},
           {&chkRetainSubObjects, 8, 16, 216, kBoxHeight},
           {&chkCreatexFile, 8, 38, 216, kBoxHeight},
           {&chkCreateShapeData, 8, 60, 216, kBoxHeight},
           {&chkCabView, 8, 82, 216, kBoxHeight},
           {&chkSound, 8, 104, 216, kBoxHeight},
           {&fraDistanceLevels, rightColumn, kStackTop, kStackWidth, 112}});
    for (size_t level = 0; level < optDistanceLevels.size(); ++level) {
        place({{&optDistanceLevels[level], 8, 16 + static_cast<int32_t>(level) * 22, 216,
                kBoxHeight}});
    }
    place({{&chkAnimation, rightColumn, 152, kStackWidth, kBoxHeight},
           {&chkCreateShape, rightColumn, 176, kStackWidth, kBoxHeight}});

    // "Finish".
    place({page(kStepFinish), {&lblFinish, 8, 8, kContentWidth, 48}});

    // The button bar below, its buttons to the right; then the step list and the view.
    const int32_t barWidth = kFormWidth - 16;
    const auto barButton = [barWidth](int fromRight) {
        return barWidth - (kButtonWidth + 8) * fromRight;
    };
    place({{&fraButtons, 8, kPageTop + kPageHeight + 8, barWidth, 40},
           {&cmdPrevious, barButton(4), 6, kButtonWidth, kButtonHeight},
           {&cmdNext, barButton(3), 6, kButtonWidth, kButtonHeight},
           {&cmdFinish, barButton(2), 6, kButtonWidth, kButtonHeight},
           {&cmdCancel, barButton(1), 6, kButtonWidth, kButtonHeight},
           {&fraSteps, 8, kPageTop, kPageLeft - 16, kPageHeight}});
    for (size_t step = 0; step < optSteps.size(); ++step) {
        place({{&optSteps[step], 8, 16 + static_cast<int32_t>(step) * 28, kPageLeft - 32, 24}});
    }
    place({{&Viewer, kPageLeft + kPageWidth + 8, kPageTop, kFormWidth - kPageLeft - kPageWidth - 16,
            kPageHeight}});

    // Enter goes on to the next step (Finish on the last one, see the page set-up); Escape
    // cancels.
    SetDefaultButton(cmdNext);
    SetCancelButton(cmdCancel);
}

}  // namespace railwright::wizard
