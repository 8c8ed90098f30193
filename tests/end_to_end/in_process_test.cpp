// The communication server's object inside the program, as one file beside the program asks for it.

#include <QFileInfo>
#include <fstream>

#include "end_to_end/programs.h"
#include "kit/kit.h"
#include "platform/event_clock.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "server/socket_path.h"

namespace ostrel {
namespace {

TEST(InProcess, TheSameWayWithoutAServerProgram) {
  const Programs programs;
  programs.Enter();
  kit::World world;
  std::ofstream(world.folder.path / "OstrelTESK.dll") << "x";
  RegistrySettings settings;
  ServerFactory factory;
  EventClock clock;
  Service service({settings, factory, world.dialogs, clock, world.desktop},
                  {.connection = {}, .language = {}, .chooser = false});
  ASSERT_TRUE(service.DeviceSelectByAddress("B3:")) << world.dialogs.Numbers();
  EXPECT_EQ(service.Selected().KennName(), "B3:Kraftwerk Aue");
  EXPECT_TRUE(service.Statistics().Read());
  EXPECT_GT(service.Statistics().Counters().total, 0);
  EXPECT_FALSE(service.DeviceSelectByAddress("ZZ:"));
  EXPECT_EQ(world.dialogs.Numbers(), "20013");
  EXPECT_FALSE(QFileInfo::exists(SocketPath())) << "no server program runs";
}

}  // namespace
}  // namespace ostrel
