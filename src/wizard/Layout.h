// The wizard's geometry, in pixels at 96 dpi: the step list on the left, the page area beside it,
// the view on the right and the button bar below. Layout.cpp places every control once; the page
// set-up moves only the page it shows and the stacked export preferences.
#pragma once

#include <cstdint>

namespace railwright::wizard::layout {

inline constexpr int32_t kPageLeft = 136;
inline constexpr int32_t kPageTop = 8;
inline constexpr int32_t kPageWidth = 488;
inline constexpr int32_t kPageHeight = 400;

// The export preferences column whose visible items are stacked without gaps.
inline constexpr int32_t kStackLeft = 8;
inline constexpr int32_t kStackTop = 32;
inline constexpr int32_t kStackWidth = 232;

}  // namespace railwright::wizard::layout
