#include <gtest/gtest.h>

#include "support/Fakes.h"
#include "support/FontWiz.h"

namespace railwright::support {
namespace {

class Form : public DialogModel {
public:
    Form() : DialogModel("frmTest") {
        lblEdition.SetFont({"MS Sans Serif", 18});
        lblSmallEdition.SetFont({"MS Sans Serif", 8});
        rtxTutorialStep.SetFont({"Arial", 10});
    }
    Control& lblPlain = Add(ControlKind::Label, "lblPlain");
    Control& txtScript = Add(ControlKind::TextBox, "txtScript");
    Control& txtDetails = Add(ControlKind::TextBox, "txtDetails");
    Control& rtxTutorialStep = Add(ControlKind::TextBox, "rtxTutorialStep");
    Control& lblEdition = Add(ControlKind::Label, "lblEdition");
    Control& lblSmallEdition = Add(ControlKind::Label, "lblEdition");
    Control& lblMakerName = Add(ControlKind::Label, "lblMakerName");
    Control& viewer = Add(ControlKind::View, "Viewer");
    ControlArray optSteps = AddArray(ControlKind::OptionButton, "optSteps", 2);
};

FontWiz WizFor(std::string messageFont, Font defaultFont = {"MS Sans Serif", 8.25}) {
    testing::FakeSystemInfo system;
    system.messageFontName = std::move(messageFont);
    system.defaultFont = std::move(defaultFont);
    return FontWiz(system);
}

TEST(FontWiz, SizesOrdinaryControlsByTheSystemFont) {
    struct Case {
        std::string messageFont;
        std::string expectedName;
        double expectedSize;
    };
    const Case cases[] = {
        {"Segoe UI", "Segoe UI", 9},
        {"Tahoma", "Tahoma", 8.25},
        {"", "Tahoma", 8.25},
        {std::string("Segoe UI\0junk", 13), "Segoe UI", 9},
        {"Verdana", "Verdana", 8.25},
    };
    for (const Case& c : cases) {
        FontWiz fonts = WizFor(c.messageFont);
        Form form;
        fonts.AdjustForm(form);
        EXPECT_EQ(form.FormFont(), (Font{c.expectedName, c.expectedSize})) << c.expectedName;
        EXPECT_EQ(form.lblPlain.GetFont(), (Font{c.expectedName, c.expectedSize}));
        EXPECT_EQ(form.optSteps[1].GetFont(), (Font{c.expectedName, c.expectedSize}));
    }
}

TEST(FontWiz, KeepsTheDefaultFontSizeForOtherSystemFonts) {
    FontWiz fonts = WizFor("Verdana", {"MS Sans Serif", 9.123456});
    EXPECT_EQ(fonts.FontNameDefault(), "MS Sans Serif");
    EXPECT_DOUBLE_EQ(fonts.FontSizeDefault(), 9.1235);
}

TEST(FontWiz, AppliesTheFixedExceptions) {
    for (const char* system : {"Segoe UI", "Tahoma"}) {
        FontWiz fonts = WizFor(system);
        Form form;
        fonts.AdjustForm(form);
        EXPECT_EQ(form.txtScript.GetFont(), (Font{"Courier New", 9}));
        EXPECT_EQ(form.txtDetails.GetFont(), (Font{"Courier New", 9}));
        EXPECT_EQ(form.rtxTutorialStep.GetFont(), (Font{"Arial", 10}));
        EXPECT_EQ(form.lblEdition.GetFont(), (Font{system, 14.25}));
        EXPECT_EQ(form.lblSmallEdition.GetFont(), (Font{system, 11.25}));
        EXPECT_EQ(form.lblMakerName.GetFont(), (Font{system, 11.25}));
        EXPECT_FALSE(form.viewer.GetFont().has_value());
    }
}

}  // namespace
}  // namespace railwright::support
