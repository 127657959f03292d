// FontWiz: switches a dialog's controls from the old default dialog font to the system's
// user-interface font, with a few fixed exceptions.
#pragma once

#include <string>
#include <vector>

#include "support/DialogModel.h"
#include "support/Platform.h"

namespace railwright::support {

class FontWiz {
public:
    explicit FontWiz(SystemInfo& system);

    const std::string& FontName() const { return fontName_; }
    const std::string& FontNameDefault() const { return fontNameDefault_; }
    // Points, to four decimals.
    double FontSizeDefault() const { return fontSizeDefault_; }

    void AdjustForm(DialogModel& formToAdjust);
    void AdjustControls(const std::vector<Control*>& controls);

private:
    std::string fontName_;
    std::string fontNameDefault_;
    double fontSizeDefault_ = 0;
};

}  // namespace railwright::support
