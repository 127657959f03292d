// The export drivers that the product runs after the wizard: the MSTS export and the RailWorks /
// Rail Simulator export, on the platform they were made with.
#pragma once

#include "plugin/Railwright.h"
#include "support/Platform.h"

namespace railwright::plugin {

class ProductExports final : public ExportDrivers {
  public:
    explicit ProductExports(support::Platform& platform) : platform_(platform) {}

    bool ExportToMsts(const ExportArguments& arguments) override;
    bool ExportRailWorks(const ExportArguments& arguments, bool railWorks) override;

  private:
    support::Platform& platform_;
};

}  // namespace railwright::plugin
