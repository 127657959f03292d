// The host application of the in-memory scene, its context, and the components it creates: the
// simulator locator and the exporter. Everything they are asked is recorded for tests.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/Host.h"
#include "host/scene/Failures.h"

namespace railwright::host::scene {

// Writes the MSTS shape file of `mainGroup` to `shapeFile`; true on success.
using ShapeWriter = std::function<bool(SceneGroup& mainGroup, const std::string& shapeFile,
                                       const ShapeExportOptions& options)>;
// Writes one RailWorks intermediate file; true on success.
using FileWriter = std::function<bool(const std::string& file)>;

// What the exporters do. An operation without a writer records its call and succeeds.
struct ExporterBehaviour {
    ShapeWriter exportShape;
    FileWriter exportIgs;
    FileWriter exportIa;
};

// Where the simulator locator finds the simulators; empty means not installed.
struct SimulatorInstallations {
    std::string mstsMainFile;     // full path of the MSTS main program file
    std::string railWorksFolder;  // the RailWorks / Rail Simulator folder
};

class SceneApplication final : public host::Application {
public:
    explicit SceneApplication(std::shared_ptr<Failures> failures);

    std::string RegistryName() override;
    void Redraw(int32_t flags) override;
    void RefreshPanel(const std::string& panel) override;
    void SetStatus(int32_t status) override;
    std::string ToolsFolder() override;
    std::string DocumentsFolder() override;
    std::string ModelFolder() override;
    std::shared_ptr<SimulatorLocator> CreateSimulatorLocator() override;
    std::shared_ptr<host::Exporter> CreateExporter() override;

    void SetRegistryName(std::string name) { registryName_ = std::move(name); }
    void SetToolsFolder(std::string folder) { toolsFolder_ = std::move(folder); }
    void SetDocumentsFolder(std::string folder) { documentsFolder_ = std::move(folder); }
    void SetModelFolder(std::string folder) { modelFolder_ = std::move(folder); }
    void SetSimulators(SimulatorInstallations installations);
    void SetExporterBehaviour(ExporterBehaviour behaviour);
    // Makes one exporter operation report failure (false) or success without writing anything.
    void SetExportShapeResult(bool succeeds);
    void SetExportIgsResult(bool succeeds);
    void SetExportIaResult(bool succeeds);

    // Redraw, RefreshPanel and SetStatus in order: "Redraw 1", "RefreshPanel SysProperties",
    // "SetStatus 100".
    const std::vector<std::string>& Calls() const { return calls_; }
    // Calls of every locator made so far: "FindMSTS <text> <application name>",
    // "FindRailWorks <owner window> <application name>".
    const std::vector<std::string>& LocatorCalls() const { return shared_->locatorCalls; }
    // Calls of every exporter made so far: "ExportShape <group name> <file>",
    // "ExportIGS <file>", "ExportIA <file>".
    const std::vector<std::string>& ExportCalls() const { return shared_->exportCalls; }

    // What the locators and exporters share with the application that made them.
    struct Shared {
        SimulatorInstallations installations;
        ExporterBehaviour exporter;
        std::vector<std::string> locatorCalls;
        std::vector<std::string> exportCalls;
    };

private:
    std::shared_ptr<Failures> failures_;
    std::string registryName_ = "Polyforge";
    std::string toolsFolder_;
    std::string documentsFolder_;
    std::string modelFolder_;
    std::vector<std::string> calls_;
    std::shared_ptr<Shared> shared_;
};

class SceneHostContext final : public host::HostContext {
public:
    SceneHostContext(std::shared_ptr<Failures> failures,
                     std::shared_ptr<SceneApplication> application);

    std::shared_ptr<host::Application> Application() override;

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<SceneApplication> application_;
};

}  // namespace railwright::host::scene
