#include "support/FontWiz.h"

#include <algorithm>
#include <cmath>

namespace railwright::support {
namespace {

// Sizes are fixed-point with four decimals.
double FixedPoint(double size) { return std::round(size * 10000.0) / 10000.0; }

}  // namespace

FontWiz::FontWiz(SystemInfo& system) {
    fontName_ = system.MessageFontName();
    if (const size_t nul = fontName_.find('\0'); nul != std::string::npos) {
        fontName_.resize(nul);
    }
    if (fontName_.empty()) {
        fontName_ = "Tahoma";
    }
    const Font defaultFont = system.DefaultFont();
    fontNameDefault_ = defaultFont.name;
    fontSizeDefault_ = FixedPoint(defaultFont.size);
    if (fontName_ == "Segoe UI") {
        fontSizeDefault_ = 9;
    } else if (fontName_ == "Tahoma") {
        fontSizeDefault_ = 8.25;
    }
}

void FontWiz::AdjustForm(DialogModel& formToAdjust) {
    formToAdjust.SetFormFont({fontName_, fontSizeDefault_});
    AdjustControls(formToAdjust.Controls());
}

void FontWiz::AdjustControls(const std::vector<Control*>& controls) {
    for (Control* control : controls) {
        // Controls without a font (the view) are passed over.
        if (!control->GetFont()) {
            continue;
        }
        const std::string& name = control->Name();
        if (name == "txtScript" || name == "txtDetails") {
            control->SetFont({"Courier New", 9});
        } else if (name == "rtxTutorialStep") {
            continue;
        } else if (name == "lblEdition") {
            const double size = std::clamp(control->GetFont()->size, 11.25, 14.25);
            control->SetFont({fontName_, size});
        } else if (name == "lblMakerName") {
            control->SetFont({fontName_, 11.25});
        } else {
            control->SetFont({fontName_, fontSizeDefault_});
        }
    }
}

}  // namespace railwright::support
