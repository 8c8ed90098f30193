#include "link/connections.h"

#include <gtest/gtest.h>

#include "kit/kit.h"

namespace ostrel {
namespace {

Connection Tcp(const std::string& name, const std::string& host, int port) {
  Connection connection;
  connection.name = name;
  connection.kind = "tcp";
  connection.host = host;
  connection.port = port;
  return connection;
}

TEST(Connections, AnEmptyStoreMeansTheSimulator) {
  kit::MemorySettings settings;
  Connections connections(settings);
  ASSERT_EQ(connections.List().size(), 1u);
  ASSERT_TRUE(connections.Find(""));
  EXPECT_TRUE(connections.Find("")->Simulated());
  EXPECT_FALSE(connections.Find("elsewhere"));
  EXPECT_FALSE(connections.Remove("Simulator"));
}

TEST(Connections, AddUseRemove) {
  kit::MemorySettings settings;
  Connections connections(settings);
  ASSERT_TRUE(connections.Add(Tcp("Werk", "192.0.2.7", 4001)));
  EXPECT_EQ(connections.List().size(), 2u);
  EXPECT_TRUE(connections.Use("WERK")) << "case is ignored";
  EXPECT_EQ(connections.Current(), "Werk");
  EXPECT_EQ(connections.Find("")->Target(), "192.0.2.7:4001");
  EXPECT_FALSE(connections.Use("")) << "an empty name is no connection";
  EXPECT_TRUE(connections.Remove("werk"));
  EXPECT_EQ(connections.Current(), "Simulator");
  EXPECT_EQ(connections.List().size(), 1u);

  // A connection that took the built-in one's name replaces it, data of its kind alone remain.
  ASSERT_TRUE(connections.Add(Tcp("simulator", "h", 1)));
  EXPECT_EQ(connections.List().size(), 1u);
  EXPECT_FALSE(connections.Find("Simulator")->Simulated());
}

TEST(Connections, FaultyDataAreRefused) {
  kit::MemorySettings settings;
  Connections connections(settings);
  Connection serial;
  serial.name = "line";
  serial.kind = "serial";
  serial.device = "/dev/ttyUSB0";
  EXPECT_TRUE(Connections::Valid(serial));
  Connection noDevice = serial, badParity = serial, badBaud = serial, badKind = serial;
  noDevice.device.clear();
  badParity.parity = "some";
  badBaud.baud = 0;
  badKind.kind = "modem";
  const Connection cases[] = {
      noDevice,
      badParity,
      badBaud,
      badKind,
      Tcp("", "h", 1),
      Tcp("a\\b", "h", 1),
      Tcp("a/b", "h", 1),
      Tcp("a\nb", "h", 1),
      Tcp("t", "", 1),
      Tcp("t", "h", 0),
      Tcp("t", "h", 65536),
      Tcp(" t", "h", 1),
  };
  for (const Connection& connection : cases) {
    EXPECT_FALSE(connections.Add(connection)) << connection.name << " " << connection.Target();
  }
}

}  // namespace
}  // namespace ostrel
