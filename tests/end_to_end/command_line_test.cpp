// The command line through the real server to simulated devices behind a real TCP port.

#include <signal.h>

#include <QFile>
#include <QJsonArray>
#include <numeric>

#include "end_to_end/programs.h"
#include "kit/scripted_device.h"

namespace ostrel {
namespace {

TEST(CommandLine, TheWholeWayOverTcp) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  programs.UseTcp(programs.StartSimulator(simulator));

  const Outcome stations = programs.Run({"stations", "--json"});
  ASSERT_EQ(stations.status, 0) << stations.err.toStdString();
  const QJsonArray list = stations.Json().array();
  ASSERT_EQ(list.size(), 10);
  for (const QJsonValue station : list) {
    const QString address = station["address"].toString();
    const QJsonDocument device = programs.Run({"identify", "--json", "--station", address}).Json();
    EXPECT_EQ(device["type"], station["type"]) << address.toStdString();
    EXPECT_EQ(device["firmware"], station["version"]) << address.toStdString();
    EXPECT_NE(device["model"].toInt(999), 999) << address.toStdString();
  }

  const QJsonDocument read = programs.Run({"statistics", "--json"}).Json();
  EXPECT_EQ(read["first"].toInt(), -60);
  const QJsonArray counters = read["counters"].toArray();
  ASSERT_EQ(counters.size(), 120);
  int sum = 0;
  for (const QJsonValue counter : counters) sum += counter.toInt();
  EXPECT_EQ(read["total"].toInt(), sum % 65536);
  EXPECT_GT(sum, 0);

  // The devices behind the port and those in the server are the same: one seed, one history.
  EXPECT_EQ(programs.Run({"statistics", "--json", "--connection", "Simulator"}).Json(), read);

  EXPECT_EQ(programs.Run({"statistics", "clear", "--yes"}).status, 0);
  EXPECT_EQ(programs.Run({"statistics", "--json"}).Json()["total"].toInt(-1), 0);
}

TEST(CommandLine, WhatCannotBeHadIsSaidWithItsNumber) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  const int port = programs.StartSimulator(simulator);
  simulator->kill();
  simulator->waitForFinished();
  programs.UseTcp(port);
  const struct {
    QStringList arguments;
    int status, number;
  } cases[] = {
      {{"stations"}, 1, 10042},
      {{"--connection", "nowhere", "stations"}, 1, 10032},
      {{"connections", "test"}, 1, 10042},
      {{"connections", "add", "bus", "tcp", "h:1"}, 1, 20187},
      {{"--connection", "Simulator", "--station", "ZZ", "identify"}, 1, 20013},
      {{"--connection", "Simulator", "--station", "B7", "statistics"}, 1, 1280},
      {{"--connection", "Simulator", "send", "a\nb"}, 1, 10014},
      {{"--connection", "Simulator", "send", "Ω"}, 1, 10014},
      {{"--connection", "Simulator", "statistics", "clear"}, 3, 20009},
      {{"nonsense"}, 2, 20015},
  };
  for (const auto& c : cases) {
    const Outcome outcome = programs.Run(c.arguments + QStringList{"--json"});
    const std::string called = c.arguments.join(' ').toStdString();
    EXPECT_EQ(outcome.status, c.status) << called;
    const QJsonDocument json = outcome.Json();
    // A line that failed stands in the list of lines.
    const QJsonValue error = json.isArray() ? json[0]["error"] : json["error"];
    EXPECT_EQ(error["number"].toInt(), c.number) << called << outcome.out.toStdString();
  }
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

TEST(CommandLine, TextChartAndPicture) {
  const Programs programs;
  const Outcome text = programs.Run({"statistics"});
  EXPECT_EQ(text.status, 0);
  EXPECT_TRUE(text.out.contains("█")) << text.out.toStdString();
  EXPECT_TRUE(text.out.contains("Tap Changes Total: ")) << text.out.toStdString();
  const QString file = programs.Folder() + "/chart.png";
  EXPECT_EQ(programs.Run({"statistics", "--csv", "--chart", file}).status, 0);
  QFile picture(file);
  ASSERT_TRUE(picture.open(QIODevice::ReadOnly));
  EXPECT_TRUE(picture.readAll().startsWith("\x89PNG\r\n"));
}

}  // namespace
}  // namespace ostrel
