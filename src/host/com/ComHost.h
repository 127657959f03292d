// The host's object model over its IDispatch objects: the interfaces of host/Host.h bound late by
// member name (Members.h). Results that the host leaves in by-reference arguments are read back
// from them; every failing call is a HostError (see Dispatch.h).
//
// What the object model leaves implicit comes from the plug-in: the tools folder and documents
// folder of Application. Exporter and SimulatorLocator are host components created by their
// registered names for each lookup or export.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/Host.h"
#include "host/com/Dispatch.h"

namespace railwright::host::com {

// What the plug-in knows about its own installation.
struct PluginFolders {
    std::string tools;      // ending in the path separator
    std::string documents;  // without a trailing separator
};

// The `Scene` argument of Plugin_Apply.
std::shared_ptr<Scripting> MakeScripting(ComPtr<IDispatch> scene);
// The `SceneGraph` argument of Plugin_Apply.
std::shared_ptr<HostContext> MakeHostContext(ComPtr<IDispatch> context, PluginFolders folders);

// The host's view control, driven through its IDispatch. The pick event reaches it through
// NotifyPick, called by whoever listens to the control's events.
class ComViewer final : public Viewer {
public:
    explicit ComViewer(ComPtr<IDispatch> control) : control_(std::move(control)) {}

    void Attach(HostContext& context, Scripting& scripting) override;
    float PointX() override;
    float PointY() override;
    float PointZ() override;
    void SetPointX(float value) override;
    void SetPointY(float value) override;
    void SetPointZ(float value) override;
    void LookAtPoint() override;
    void EndPicking() override;
    std::shared_ptr<host::Selection> Selection() override;
    void OnPick(std::function<void()> handler) override { handler_ = std::move(handler); }

    void NotifyPick() {
        if (handler_) handler_();
    }

private:
    DispatchObject control_;
    std::function<void()> handler_;
};

// The IDispatch object behind one of ours; null when `object` is not one of host/com's.
IDispatch* DispatchOf(SceneGroup& object);
IDispatch* DispatchOf(HostContext& object);
IDispatch* DispatchOf(Scripting& object);

}  // namespace railwright::host::com
