#include "host/scene/Application.h"

#include <utility>

#include "host/scene/Node.h"

namespace railwright::host::scene {

namespace {

// The group's name for the record, read without going through the host seam.
std::string GroupName(SceneGroup& group) {
    const auto* node = dynamic_cast<const Node*>(&group);
    return node != nullptr ? node->NameValue() : group.Name();
}

class SceneSimulatorLocator final : public SimulatorLocator {
public:
    SceneSimulatorLocator(std::shared_ptr<Failures> failures,
                          std::shared_ptr<SceneApplication::Shared> shared)
        : failures_(std::move(failures)), shared_(std::move(shared)) {}

    std::string FindMSTS(const std::string& text, const std::string& applicationName) override {
        failures_->Check("SimulatorLocator.FindMSTS");
        shared_->locatorCalls.push_back("FindMSTS " + text + " " + applicationName);
        return shared_->installations.mstsMainFile;
    }

    std::string FindRailWorks(intptr_t ownerWindow, const std::string& applicationName) override {
        failures_->Check("SimulatorLocator.FindRailWorks");
        shared_->locatorCalls.push_back("FindRailWorks " + std::to_string(ownerWindow) + " " +
                                        applicationName);
        return shared_->installations.railWorksFolder;
    }

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<SceneApplication::Shared> shared_;
};

class SceneExporter final : public host::Exporter {
public:
    SceneExporter(std::shared_ptr<Failures> failures,
                  std::shared_ptr<SceneApplication::Shared> shared)
        : failures_(std::move(failures)), shared_(std::move(shared)) {}

    bool ExportShape(SceneGroup& mainGroup, const std::string& shapeFile,
                     const ShapeExportOptions& options) override {
        failures_->Check("Exporter.ExportShape");
        shared_->exportCalls.push_back("ExportShape " + GroupName(mainGroup) + " " + shapeFile);
        const ShapeWriter& writer = shared_->exporter.exportShape;
        return !writer || writer(mainGroup, shapeFile, options);
    }

    bool ExportIGS(const std::string& file) override {
        failures_->Check("Exporter.ExportIGS");
        shared_->exportCalls.push_back("ExportIGS " + file);
        const FileWriter& writer = shared_->exporter.exportIgs;
        return !writer || writer(file);
    }

    bool ExportIA(const std::string& file) override {
        failures_->Check("Exporter.ExportIA");
        shared_->exportCalls.push_back("ExportIA " + file);
        const FileWriter& writer = shared_->exporter.exportIa;
        return !writer || writer(file);
    }

private:
    std::shared_ptr<Failures> failures_;
    std::shared_ptr<SceneApplication::Shared> shared_;
};

FileWriter Fixed(bool succeeds) {
    return [succeeds](const std::string&) { return succeeds; };
}

}  // namespace

SceneApplication::SceneApplication(std::shared_ptr<Failures> failures)
    : failures_(std::move(failures)), shared_(std::make_shared<Shared>()) {}

std::string SceneApplication::RegistryName() {
    failures_->Check("Application.RegistryName");
    return registryName_;
}

void SceneApplication::Redraw(int32_t flags) {
    failures_->Check("Application.Redraw");
    calls_.push_back("Redraw " + std::to_string(flags));
}

void SceneApplication::RefreshPanel(const std::string& panel) {
    failures_->Check("Application.RefreshPanel");
    calls_.push_back("RefreshPanel " + panel);
}

void SceneApplication::SetStatus(int32_t status) {
    failures_->Check("Application.SetStatus");
    calls_.push_back("SetStatus " + std::to_string(status));
}

std::string SceneApplication::ToolsFolder() {
    failures_->Check("Application.ToolsFolder");
    return toolsFolder_;
}

std::string SceneApplication::DocumentsFolder() {
    failures_->Check("Application.DocumentsFolder");
    return documentsFolder_;
}

std::string SceneApplication::ModelFolder() {
    failures_->Check("Application.ModelFolder");
    return modelFolder_;
}

std::shared_ptr<SimulatorLocator> SceneApplication::CreateSimulatorLocator() {
    failures_->Check("Application.CreateSimulatorLocator");
    return std::make_shared<SceneSimulatorLocator>(failures_, shared_);
}

std::shared_ptr<host::Exporter> SceneApplication::CreateExporter() {
    failures_->Check("Application.CreateExporter");
    return std::make_shared<SceneExporter>(failures_, shared_);
}

void SceneApplication::SetSimulators(SimulatorInstallations installations) {
    shared_->installations = std::move(installations);
}

void SceneApplication::SetExporterBehaviour(ExporterBehaviour behaviour) {
    shared_->exporter = std::move(behaviour);
}

void SceneApplication::SetExportShapeResult(bool succeeds) {
    shared_->exporter.exportShape = [succeeds](SceneGroup&, const std::string&,
                                               const ShapeExportOptions&) {
        return succeeds;
    };
}

void SceneApplication::SetExportIgsResult(bool succeeds) {
    shared_->exporter.exportIgs = Fixed(succeeds);
}

void SceneApplication::SetExportIaResult(bool succeeds) {
    shared_->exporter.exportIa = Fixed(succeeds);
}

SceneHostContext::SceneHostContext(std::shared_ptr<Failures> failures,
                                   std::shared_ptr<SceneApplication> application)
    : failures_(std::move(failures)), application_(std::move(application)) {}

std::shared_ptr<host::Application> SceneHostContext::Application() {
    failures_->Check("HostContext.Application");
    return application_;
}

}  // namespace railwright::host::scene
