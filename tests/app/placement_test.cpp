#include "app/placement.h"

#include <gtest/gtest.h>

#include <sstream>

#include "kit/kit.h"

namespace ostrel {
namespace {

TEST(Placement, OfAWindow) {
  kit::MemorySettings settings;
  EXPECT_FALSE(LoadPlacement(settings, "Service", "frmMain"));
  SavePlacement(settings, "Service", "frmMain", {-8, 20, 1000, 700}, false);
  SavePlacement(settings, "Service", "frmMain", {1, 2, 3, 4}, true);
  EXPECT_EQ(settings.ReadShared(R"(Software\vantrel\Ostrel\Service\Persistence)", "frmMainX", ""),
            "-8");
  const std::optional<Placement> placement = LoadPlacement(settings, "service", "frmMain");
  ASSERT_TRUE(placement);
  EXPECT_EQ(placement->width, 1000);
}

TEST(Placement, FitsTheScreen) {
  const struct {
    Placement stored;
    const char* fitted;
  } cases[] = {{{-1200, 50, 700, 520}, "-1200,50,700,520"},
               {{-1300, -40, 700, 520}, "-1300,0,700,520"},
               {{-90, 50, 700, 520}, ""},
               {{-1200, 1000, 700, 520}, ""},
               {{-2147483647, 0, 2147483647, 2147483647}, "-1280,0,1280,1024"},
               {{2147483647, 0, 2147483647, 700}, ""}};
  for (const auto& c : cases) {
    const auto at = FittedTo({-1280, 0, 1280, 1024}, c.stored);
    std::ostringstream text;
    if (at) text << at->left << ',' << at->top << ',' << at->width << ',' << at->height;
    EXPECT_EQ(text.str(), c.fitted) << c.stored.left;
  }
}

}  // namespace
}  // namespace ostrel
