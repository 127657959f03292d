// Failure injection for the in-memory scene: makes host operations fail on demand, so that tests
// can show how each procedure handles a failing host.
//
// Operations are named "<Interface>.<Operation>" after the host seam's declarations
// ("SceneGroup.MoveTo", "Scripting.Group", "Viewer.SetPointX", "Exporter.ExportShape"...). Only
// calls through the host seam are checked and counted; the scene's own building API never fails.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace railwright::host::scene {

class Failures {
public:
    // While on, every host operation throws.
    void FailEveryOperation(bool on) { failEvery_ = on; }
    // Makes `operation` throw on every call after `succeedFirst` further successful ones.
    void FailOperation(const std::string& operation, int32_t succeedFirst = 0);
    // Lets every operation succeed again.
    void Clear();

    // Counts a call of `operation`, then throws HostError(kHostErrorFailed, "<operation> failed.")
    // when that operation is set to fail.
    void Check(std::string_view operation);
    // Calls of `operation` through the host seam so far, failed ones included.
    int32_t CallCount(std::string_view operation) const;

private:
    bool failEvery_ = false;
    std::map<std::string, int32_t, std::less<>> successesLeft_;
    std::map<std::string, int32_t, std::less<>> calls_;
};

}  // namespace railwright::host::scene
