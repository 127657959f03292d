#include "plugin/ProductExports.h"

#include "export/msts/MstsExport.h"
#include "export/railworks/RailWorksExport.h"

namespace railwright::plugin {

bool ProductExports::ExportToMsts(const ExportArguments& arguments) {
    const settings::SettingsFields& fields = arguments.fields;
    const exportmsts::MstsExportInputs inputs{arguments.scripting,
                                              arguments.sceneGraph,
                                              arguments.application,
                                              fields[settings::kTitleField],
                                              fields[settings::kNameField],
                                              fields[settings::kDescriptionField],
                                              fields[settings::kLastField],
                                              fields[settings::kLastField],
                                              arguments.userDataSingles,
                                              arguments.userDataLongs,
                                              arguments.exportToDocumentsFolder};
    return exportmsts::ExportToMsts(platform_, inputs);
}

bool ProductExports::ExportRailWorks(const ExportArguments& arguments, bool railWorks) {
    const exportrailworks::RailWorksExportInputs inputs{arguments.scripting,
                                                        arguments.sceneGraph,
                                                        arguments.application,
                                                        arguments.fields[settings::kNameField],
                                                        arguments.userDataLongs,
                                                        arguments.exportToDocumentsFolder,
                                                        railWorks};
    return exportrailworks::ExportRailWorks(platform_, inputs);
}

}  // namespace railwright::plugin
