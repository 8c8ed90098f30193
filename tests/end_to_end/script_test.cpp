// Scripts from the command line through the real server to simulated devices behind a TCP port.

#include <QJsonArray>

#include "base/files.h"
#include "end_to_end/programs.h"

namespace ostrel {
namespace {

TEST(Scripts, FromAFileToTheDevicesAndBack) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  const QString record = programs.Folder() + "/record";
  programs.UseTcp(programs.StartSimulator(simulator, {"--tcp", "0", "--record", record}).toInt());
  const auto path = [&](const char* name) { return programs.Folder() + "/" + name; };
  const auto write = [&](const char* name, const QByteArray& bytes) {
    AppendBytes(path(name).toStdString(), bytes.toStdString());
  };
  const auto read = [](const QString& name) {
    std::string bytes;
    EXPECT_EQ(ReadBytes(name.toStdString(), 1U << 20U, bytes), 0) << name.toStdString();
    return bytes;
  };
  const QByteArray longLine = ",\"" + QByteArray(126, 'x') + "\"";
  write("long.rgl", "# über\nAA::\n\n" + longLine + "\nlogin 1 4711\nstation#\n");
  write("short.cmd", "# no\r\nver.\r\nsysSN#\r\n  RegTAPSUM#\r\n");
  write("bad.rgl", "#\n" + longLine + "y\n");

  const struct {
    QStringList arguments;
    int status;
    QStringList out;  // how the lines end
  } cases[] = {
      {{"check", path("bad.rgl")}, 1, {"Row 002:  Too Long  (130)"}},
      {{"send", path("short.cmd")}, 3, {}},
      {{"send", path("short.cmd"), "--yes", "--lines", "1-2"}, 0, {"]: AA:;ver.", "KT-X+;V2.27"}},
      {{"send", path("short.cmd"), "--yes", "--from", "4", "--station", "B1"},
       0,
       {"]: B1:;RegTAPSUM#", ""}},
      {{"send", path("short.cmd"), "--yes", "--line", "2", "--stations", "B1"}, 2, {}},
      {{"send", path("long.rgl"), "--yes", "--station", "B2", "--log", path("log.txt")},
       0,
       {"]: " + longLine, QByteArray(126, 'x'), "]: login ***", "", "]: station#", "Süd T1"}},
      {{"send", path("long.rgl"), "--yes", "--station", "B4"}, 1, {}},
  };
  for (const auto& c : cases) {
    const Outcome outcome = programs.Run(QStringList{"script"} + c.arguments);
    const std::string called = c.arguments.join(' ').toStdString();
    EXPECT_EQ(outcome.status, c.status) << called << outcome.err.toStdString();
    QStringList lines = QString::fromUtf8(outcome.out).split('\n');
    lines.removeLast();
    ASSERT_EQ(lines.size(), c.out.size()) << called << outcome.out.toStdString();
    for (qsizetype n = 0; n < lines.size(); ++n) {
      EXPECT_TRUE(lines[n].endsWith(c.out[n])) << called << lines[n].toStdString();
    }
  }
  EXPECT_NE(read(path("log.txt")).find("]: login ***\r\n"), std::string::npos);
  EXPECT_EQ(read(path("log.txt")).find("4711"), std::string::npos);
  EXPECT_NE(read(record).find("login 1 4711"), std::string::npos);

  const Outcome both =
      programs.Run({"script", "send", path("short.cmd"), "--stations", "B1,B3", "--yes", "--json"});
  ASSERT_EQ(both.Json().array().size(), 6) << both.out.toStdString() << both.err.toStdString();
  EXPECT_EQ(both.Json()[3]["answer"], "LX-X+;V2.21");
  EXPECT_TRUE(both.err.contains("Device B3: finished")) << both.err.toStdString();

  // What is read of a device can be sent to it again.
  EXPECT_EQ(programs.Run({"script", "read", "--yes", "-o", path("read.rgl")}).status, 0);
  EXPECT_EQ(programs.Run({"script", "send", path("read.rgl"), "--yes"}).status, 0);
  EXPECT_EQ(programs.Run({"script", "read", "--yes", "-o", path("again.rgl")}).status, 0);
  EXPECT_EQ(read(path("again.rgl")), read(path("read.rgl")));
}

}  // namespace
}  // namespace ostrel
