// Where the time of one `railwright apply` goes, phase by phase, on a model written by
// railwright_bench_locomotive:
//
//   railwright_bench_phases MODEL SCRIPT MSTS TOOLS [RUNS]
//
// Each run puts the model's .gltf back as it was, loads it, applies the plug-in under the script
// with the MSTS export going to a fresh documents folder, and saves the model, as the command
// does. The phases, medians over the runs in milliseconds:
//
//   load       Document::Load: reading the glTF and building the in-memory scene
//   wizard     the plug-in's run less what is counted below: the script's events, identification
//              and the engine, shape-data, cab view and sound writers
//   build      the shape's data (BuildShape, timed again on "Main" after the run)
//   shape      the rest of the shape's export: its text, the file and its Unicode conversion
//   textures   the texture tools (MakeACE, acecomp), from start to the wait's end
//   txt2uni    the other files' Unicode conversion, likewise
//   save       saving the model
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "document/Document.h"
#include "document/shape/ShapeWriter.h"
#include "host/scene/Model.h"
#include "plugin/ProductExports.h"
#include "plugin/Railwright.h"
#include "settings/Slots.h"
#include "support/posix/PosixServices.h"
#include "ui/script/ScriptedUserInterface.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using railwright::support::Processes;
using railwright::support::ProcessHandle;

double Milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

// The platform's processes, with the time from each start to the moment the waiting caller
// learns of its end added to the tool's account.
class TimedProcesses : public Processes {
  public:
    explicit TimedProcesses(Processes& inner) : inner_(inner) {}

    std::optional<int32_t> Launch(std::string_view commandLine,
                                  railwright::support::WindowStyle style) override {
        const auto started = Clock::now();
        const auto task = inner_.Launch(commandLine, style);
        if (task) {
            const bool texture = commandLine.find("MakeACE") != std::string_view::npos ||
                                 commandLine.find("acecomp") != std::string_view::npos;
            starts_[*task] = {started, texture ? &textures : &txt2uni};
        }
        return task;
    }

    std::unique_ptr<ProcessHandle> Open(int32_t taskId) override {
        auto inner = inner_.Open(taskId);
        if (!inner) {
            return inner;
        }
        const auto found = starts_.find(taskId);
        if (found == starts_.end()) {
            return inner;
        }
        return std::make_unique<TimedHandle>(std::move(inner), found->second);
    }

    void Sleep(std::chrono::milliseconds duration) override { inner_.Sleep(duration); }

    Clock::duration textures{};
    Clock::duration txt2uni{};

  private:
    struct Start {
        Clock::time_point at;
        Clock::duration* account = nullptr;
    };

    class TimedHandle : public ProcessHandle {
      public:
        TimedHandle(std::unique_ptr<ProcessHandle> inner, Start start)
            : inner_(std::move(inner)), start_(start) {}
        std::optional<int32_t> ExitCode() override {
            const auto code = inner_->ExitCode();
            if (code != railwright::support::kStillActive && !counted_) {
                *start_.account += Clock::now() - start_.at;
                counted_ = true;
            }
            return code;
        }
        bool AwaitExit(std::chrono::milliseconds longest) override {
            return inner_->AwaitExit(longest);
        }

      private:
        std::unique_ptr<ProcessHandle> inner_;
        Start start_;
        bool counted_ = false;
    };

    Processes& inner_;
    std::map<int32_t, Start> starts_;
};

std::string ReadFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& file, const std::string& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << bytes;
}

using Phases = std::map<std::string, double>;

const std::vector<std::string> kPhaseOrder = {"load",     "wizard",  "build", "shape",
                                              "textures", "txt2uni", "save",  "total"};

Phases RunOnce(const fs::path& model, const std::string& pristine, const std::string& script,
               const std::string& msts, const std::string& tools, const fs::path& scratch) {
    WriteFile(model, pristine);
    const fs::path documents = scratch / "documents";
    fs::remove_all(documents);
    fs::create_directories(documents);
    Phases phases;
    const auto begin = Clock::now();

    auto loaded = railwright::document::Document::Load(model.string());
    if (!loaded.document) {
        throw std::runtime_error(loaded.error);
    }
    auto& document = *loaded.document;
    auto& scene = document.Scene();
    const auto loadedAt = Clock::now();
    phases["load"] = Milliseconds(loadedAt - begin);

    auto parsed = railwright::ui::script::ParseEventScript(script);
    if (!parsed.script) {
        throw std::runtime_error("the script: " + parsed.error);
    }
    railwright::support::posix::PosixServices services((scratch / "settings.ini").string());
    TimedProcesses processes(services.processes);
    railwright::ui::script::ScriptedUserInterface ui(std::move(*parsed.script));
    ui.SetPicker([&scene](const railwright::support::GroupTarget& group) {
        return scene.PickGroup(group);
    });
    railwright::support::Platform platform{services.files, processes, services.settings,
                                           services.system, ui};
    scene.application->SetRegistryName("Railwright");
    scene.application->SetModelFolder(model.parent_path().string());
    scene.application->SetToolsFolder(tools + "/");
    scene.application->SetDocumentsFolder(documents.string());
    scene.application->SetSimulators({msts + "/train.exe", {}});

    Clock::duration shapeTime{};
    Clock::duration shapeTools{};
    railwright::host::scene::ExporterBehaviour exporters;
    exporters.exportShape = [&](railwright::host::SceneGroup& main, const std::string& file,
                                const railwright::host::ShapeExportOptions& options) {
        const auto toolsBefore = processes.txt2uni;
        const auto started = Clock::now();
        const auto written = railwright::document::shape::WriteShapeFile(platform, main, file,
                                                                         options);
        shapeTime += Clock::now() - started;
        shapeTools += processes.txt2uni - toolsBefore;
        return written.Ok();
    };
    scene.application->SetExporterBehaviour(exporters);

    railwright::plugin::ProductExports exports(platform);
    railwright::plugin::Railwright plugin(platform, *scene.viewer, exports);
    plugin.Plugin_Apply(scene.scripting, scene.hostContext, 0, document.UserDataSingles(),
                        document.UserDataLongs(), document.UserDataString());
    const auto appliedAt = Clock::now();
    if (!ui.Faults().empty() || !plugin.LastOutcome().exportsSucceeded) {
        throw std::runtime_error("the run failed" +
                                 (ui.Faults().empty() ? "" : ": " + ui.Faults().front()));
    }
    const auto saved = document.Save();
    if (!saved.Ok()) {
        throw std::runtime_error(saved.error);
    }
    const auto end = Clock::now();
    phases["save"] = Milliseconds(end - appliedAt);
    phases["total"] = Milliseconds(end - begin);

    // The shape's data alone, built again from the identified model.
    const auto main = scene.GroupNamed("Main");
    const auto& longs = document.UserDataLongs();
    const auto buildStart = Clock::now();
    const auto built = railwright::document::shape::BuildShape(
        *main, scene.model->MaterialFields(),
        {longs[railwright::settings::kLongDistanceLevels],
         longs[railwright::settings::kLongRetainSubObjects] == 1});
    const double build = Milliseconds(Clock::now() - buildStart);

    phases["build"] = shapeTime == Clock::duration{} ? 0 : build;
    phases["shape"] = Milliseconds(shapeTime - shapeTools) - phases["build"];
    phases["textures"] = Milliseconds(processes.textures);
    phases["txt2uni"] = Milliseconds(processes.txt2uni);
    phases["wizard"] = Milliseconds(appliedAt - loadedAt - shapeTime + shapeTools -
                                    processes.textures - processes.txt2uni);
    return phases;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5 && argc != 6) {
        std::cerr << "usage: railwright_bench_phases MODEL SCRIPT MSTS TOOLS [RUNS]\n";
        return 2;
    }
    const fs::path model = fs::absolute(argv[1]);
    const int runs = argc == 6 ? std::max(1, std::atoi(argv[5])) : 3;
    try {
        const std::string pristine = ReadFile(model);
        const std::string script = ReadFile(argv[2]);
        const fs::path scratch = model.parent_path() / "phases";
        fs::create_directories(scratch);
        std::map<std::string, std::vector<double>> samples;
        for (int run = 0; run < runs; ++run) {
            for (const auto& [phase, value] :
                 RunOnce(model, pristine, script, argv[3], argv[4], scratch)) {
                samples[phase].push_back(value);
            }
        }
        WriteFile(model, pristine);
        fs::remove_all(scratch);
        std::cout << std::fixed << std::setprecision(0);
        for (const std::string& phase : kPhaseOrder) {
            auto& values = samples[phase];
            std::sort(values.begin(), values.end());
            std::cout << std::setw(10) << phase << std::setw(8) << values[values.size() / 2]
                      << " ms\n";
        }
    } catch (const std::exception& error) {
        std::cerr << "railwright_bench_phases: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
