// The front end that the plug-in shows its dialogs with inside the host, and the view that the
// wizard picks in. The DLL is linked with one definition of MakeFrontEnd, from the front ends'
// own layer (ui/plugin): there the choice is made between an event script (named by the
// environment variable RAILWRIGHT_EVENT_SCRIPT, for tests and unattended runs) and the windows.
#pragma once

#include <memory>
#include <string>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::plugin::com {

class FrontEnd {
public:
    virtual ~FrontEnd() = default;
    virtual support::UserInterface& Ui() = 0;
    virtual host::Viewer& View() = 0;
    // Faults of the front end itself (an unreadable event script...), reported once the
    // application has ended; empty when there were none.
    virtual std::string Faults() const { return {}; }
};

std::unique_ptr<FrontEnd> MakeFrontEnd();

}  // namespace railwright::plugin::com
