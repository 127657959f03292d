#include "plugin/ProductExports.h"

#include "export/msts/MstsExport.h"
#include "export/railworks/RailWorksExport.h"

namespace railwright::plugin {
namespace {

// The settings text's fields: title, project name, description, and last the operating
// procedures of a rail vehicle or the MSTS route of any other project.
constexpr size_t kTitleField = 0;
constexpr size_t kNameField = 1;
constexpr size_t kDescriptionField = 2;
constexpr size_t kLastField = 3;

}  // namespace

bool ProductExports::ExportToMsts(const ExportArguments& arguments) {
    const SettingsFields& fields = arguments.fields;
    const exportmsts::MstsExportInputs inputs{arguments.scripting,
                                              arguments.sceneGraph,
                                              arguments.application,
                                              fields[kTitleField],
                                              fields[kNameField],
                                              fields[kDescriptionField],
                                              fields[kLastField],
                                              fields[kLastField],
                                              arguments.userDataSingles,
                                              arguments.userDataLongs,
                                              arguments.exportToDocumentsFolder};
    return exportmsts::ExportToMsts(platform_, inputs);
}

bool ProductExports::ExportRailWorks(const ExportArguments& arguments, bool railWorks) {
    const exportrailworks::RailWorksExportInputs inputs{arguments.scripting,
                                                        arguments.sceneGraph,
                                                        arguments.application,
                                                        arguments.fields[kNameField],
                                                        arguments.userDataLongs,
                                                        arguments.exportToDocumentsFolder,
                                                        railWorks};
    return exportrailworks::ExportRailWorks(platform_, inputs);
}

}  // namespace railwright::plugin
