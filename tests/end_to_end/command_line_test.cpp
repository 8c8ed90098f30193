// The command line through the real server to simulated devices behind a real TCP port.

#include <signal.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include "end_to_end/programs.h"
#include "kit/scripted_device.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"

namespace ostrel {
namespace {

TEST(CommandLine, TheWholeWayOverTcp) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  programs.UseTcp(programs.StartSimulator(simulator).toInt());

  const Outcome stations = programs.Run({"stations", "--json"});
  const QJsonArray list = stations.Json().array();
  ASSERT_EQ(list.size(), 10) << stations.err.toStdString();
  for (const QJsonValue station : list) {
    const QString address = station["address"].toString();
    const QJsonDocument device = programs.Run({"identify", "--json", "--station", address}).Json();
    EXPECT_EQ(device["type"], station["type"]) << address.toStdString();
    EXPECT_EQ(device["firmware"], station["version"]) << address.toStdString();
    EXPECT_NE(device["model"].toInt(999), 999) << address.toStdString();
  }

  const QJsonDocument read = programs.Run({"statistics", "--json"}).Json();
  EXPECT_EQ(read["counters"].toArray().size(), 120);
  EXPECT_GT(read["total"].toInt(), 0);
  // The devices behind the port and those in the server are the same: one seed, one history.
  EXPECT_EQ(programs.Run({"statistics", "--json", "--connection", "Simulator"}).Json(), read);

  const Outcome refused = programs.Run({"send", QString::fromUtf8("AA:€")});
  EXPECT_TRUE(refused.err.startsWith("ostrel: 10014: ")) << refused.err.toStdString();
  EXPECT_TRUE(refused.err.contains("character outside ISO 8859-1")) << refused.err.toStdString();

  EXPECT_EQ(programs.Run({"statistics", "clear", "--yes"}).status, 0);
  EXPECT_EQ(programs.Run({"statistics", "--json"}).Json()["total"].toInt(-1), 0);
}

TEST(CommandLine, AGuestOfTheConnectedDeviceIsToldHisRights) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  const QString b2 = programs.StartSimulator(simulator, {"--tcp", "0", "--connected", "2"});
  programs.UseTcp(b2.toInt());
  const Outcome all = programs.Run({"stations", "--json"});
  EXPECT_EQ(all.Json().array().size(), 10);
  EXPECT_TRUE(all.err.endsWith("currently.\n2 (Local R/-, TESK R/-)\n")) << all.err.toStdString();
  const QJsonDocument direct = programs.Run({"stations", "--short", "--json"}).Json();
  EXPECT_EQ(direct[1]["name"].toString(), QString::fromUtf8("Schalthaus Süd T1"));
}

TEST(CommandLine, ManyProgramsAtOnceEndUpOnOneServer) {
  const Programs programs;
  std::vector<std::unique_ptr<QProcess>> running;
  for (int n = 0; n < 8; ++n) running.push_back(programs.Start("ostrel", {"identify", "--json"}));
  for (const auto& process : running) {
    ASSERT_TRUE(process->waitForFinished(20000));
    EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
    EXPECT_EQ(QJsonDocument::fromJson(process->readAllStandardOutput())["address"], "AA:");
  }
  QFile log(programs.Folder() + "/ostrel/server.log");
  ASSERT_TRUE(log.open(QIODevice::ReadOnly));
  EXPECT_EQ(log.readAll().count("listening at"), 1);
}

TEST(CommandLine, ServerKilledInTheMiddle) {
  const Programs programs;
  ScriptedDevice device;
  device.answer = [](const QByteArray&) { return QByteArray(); };
  programs.UseTcp(device.Port());
  const auto sending = programs.Start("ostrel", {"send", "never", "--json"});
  ASSERT_TRUE(WaitUntil([&] { return !device.lines.empty(); }));
  ASSERT_EQ(kill(programs.ServerPid(), SIGKILL), 0);
  ASSERT_TRUE(sending->waitForFinished(5000));
  EXPECT_EQ(sending->exitCode(), 1);
  const QJsonDocument json = QJsonDocument::fromJson(sending->readAllStandardOutput());
  EXPECT_EQ(json[0]["error"]["number"].toInt(), 10041);
  // The socket that it left behind is in nobody's way.
  EXPECT_EQ(programs.Run({"--connection", "Simulator", "identify"}).status, 0);
}

TEST(CommandLine, AServerThatDoesNotStartSaysWhyAtOnce) {
  const Programs programs;
  const QByteArray path = qgetenv("PATH");
  programs.Enter();
  const QString folder = programs.Folder() + "/ostrel";
  ASSERT_TRUE(QDir().mkdir(folder));
  QFile inTheWay(folder + "/server.sock");
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  ServerFactory factory;
  const std::string reason = factory.Create("ZubServer.TESKComm").description;
  EXPECT_EQ(reason, "ostrel-server has ended: " + inTheWay.fileName().toStdString() +
                        ": exists and is no socket");
  qputenv("PATH", "/nowhere");
  EXPECT_EQ(factory.Create("ZubServer.TESKComm").description, "ostrel-server: not found");
  qputenv("PATH", path);
}

TEST(CommandLine, ALineThatWaitsBehindAnothersIsTakenBack) {
  const Programs programs;
  programs.Enter();
  ScriptedDevice device;
  device.answer = [](const QByteArray&) { return QByteArray(); };
  programs.UseTcp(device.Port());
  const auto other = ServerFactory().Create("ZubServer.TESKComm").object;
  const int channel = other->Call("COpen", {std::string("Bus"), 2}).Int();
  EXPECT_TRUE(other->Put("CTimeout", {channel}, 60).Ok());
  EXPECT_TRUE(other->Call("CSend", {channel, std::string("AA:held")}).Ok());
  ASSERT_TRUE(WaitUntil([&device] { return device.lines.size() == 1; }));
  RegistrySettings().WriteShared(keys::kServerMisc, "DefTimeout_s", "1");
  const Outcome waited = programs.Run({"send", "AA:late"});
  EXPECT_EQ(waited.status, 1);
  EXPECT_TRUE(waited.err.contains("Nothing was sent")) << waited.err.toStdString();
  device.Send(ScriptedDevice::Reply("AA:held", "1"));
  EXPECT_TRUE(WaitUntil([&] { return other->Call("CStatus", {channel}).Int() == 0; }));
  EXPECT_TRUE(other->Call("CSend", {channel, std::string("AA:next")}).Ok());
  ASSERT_TRUE(WaitUntil([&device] { return device.lines.size() == 2; }));
  EXPECT_EQ(device.lines[1], "AA:next");
}

TEST(CommandLine, TextChartAndPicture) {
  const Programs programs;
  const QString file = programs.Folder() + "/chart.png";
  const Outcome outcome = programs.Run({"statistics", "--chart", file});
  EXPECT_TRUE(outcome.out.contains("█")) << outcome.out.toStdString();
  QFile picture(file);
  ASSERT_TRUE(picture.open(QIODevice::ReadOnly));
  EXPECT_TRUE(picture.readAll().startsWith("\x89PNG\r\n"));
  const Outcome refused = programs.Run({"statistics", "--chart", "/no/such/folder/x.png"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.err.contains("x.png: No such file")) << refused.err.toStdString();
}

}  // namespace
}  // namespace ostrel
