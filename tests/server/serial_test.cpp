#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QSocketNotifier>

#include "fixture.h"
#include "server/port_maker.h"

namespace ostrel {
namespace {

/// A device behind a pseudo-terminal; its answer is its path.
struct SerialDevice {
  SerialDevice() {
    ::unlockpt(master);
    path = ::ptsname(master);
    host = ::open(path.c_str(), O_RDWR | O_NOCTTY);  // so that others may come and go
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] {
      char line[64];
      const auto size = static_cast<std::size_t>(::read(master, line, sizeof line));
      const std::string reply = std::string(line, size) + "\n" + path + "\x1A";
      EXPECT_EQ(::write(master, reply.data(), reply.size()), reply.size());
    });
  }
  ~SerialDevice() { ::close(host), ::close(master); }
  void Link(const QString& link) const { QFile::link(QString::fromStdString(path), link); }
  std::string path;
  int host = -1;
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  QSocketNotifier notifier{master, QSocketNotifier::Read};
};

Connection On(const std::string& name, const std::string& device, const char* parity = "none") {
  return {name, "serial", "", 0, device, 19200, parity};
}

class Serial : public ServerTest {};

TEST_F(Serial, ADeviceBelongsToOneProgramAndOneConnection) {
  const SerialDevice line;
  const QString link = folder.path() + "/line";
  line.Link(link);
  Connections list(settings);
  list.Add(On("Bus", line.path)), list.Add(On("Link", link.toStdString()));
  list.Add(On("Even", line.path, "even")), list.Add(On("None", link.toStdString() + "x"));
  Client client(path);
  ::flock(line.host, LOCK_EX);
  EXPECT_EQ(client.Code("COpen", {"Bus"}), 10027) << "another program has it";
  ::flock(line.host, LOCK_UN);
  EXPECT_EQ(client.Code("COpen", {"Even"}), 10013) << "which a pseudo-terminal does not do";
  EXPECT_EQ(client.Code("COpen", {"None"}), 10027);
  EXPECT_EQ(client.Call("COpen", {"Bus"}), 1);
  EXPECT_EQ(client.Exchange(1, "AA:1"), line.path);
  EXPECT_EQ(client.Code("COpen", {"Link"}), 10033);
  client.Call("CClose", {1});
  EXPECT_EQ(client.Call("COpen", {"Link"}), 2) << "given back";
}

TEST_F(Serial, ALineThatComesBackIsThatOfTheSameAdapter) {
  const QString line = folder.path() + "/line", adapter = folder.path() + "/by-id/usb-A";
  QDir(folder.path()).mkdir("by-id");
  PortMaker maker(folder.path().toStdString() + "/by-id");
  BusConnection bus("Line",
                    [&](bool again) { return maker.Make(On("L", line.toStdString()), again); });
  std::string result;
  QObject::connect(&bus, &BusConnection::Answered, [&](int, int, auto& text) { result = text; });
  QObject::connect(&bus, &BusConnection::Failed,
                   [&](int, int, int code, auto&) { result = std::to_string(code); });
  const struct {
    bool named;          // the adapter has a name
    char adapter, path;  // afterwards: the same one, another one, none
    bool answers;
  } cases[] = {{true, 's', 's', true},
               {true, 's', 'o', true},
               {true, '-', 'o', false},
               {true, '-', '-', false},
               {false, '-', 's', true}};
  for (const auto& c : cases) {
    auto first = std::make_unique<SerialDevice>();
    first->Link(line);
    if (c.named) first->Link(adapter);
    bus.Hold();
    ASSERT_TRUE(WaitUntil([&] { return bus.IsOpen(); }));
    const SerialDevice same, other;
    first.reset();
    EXPECT_TRUE(WaitUntil([&] { return !bus.IsOpen(); }));
    for (const QString& link : {line, adapter}) QFile::remove(link);
    if (c.path != '-') (c.path == 's' ? same : other).Link(line);
    if (c.adapter == 's') same.Link(adapter);
    result.clear();
    LineOut out;
    out.channel = out.exchange = 1;
    out.line = "AA:x";
    out.limit = QDeadlineTimer(5000);
    bus.Send(out);
    const std::string expected = c.answers ? same.path : "10027";
    EXPECT_TRUE(WaitUntil([&] { return result == expected; })) << &c - cases << ": " << result;
    bus.Release();
    for (const QString& link : {line, adapter}) QFile::remove(link);
  }
}

TEST_F(Serial, ADeviceThatTakesNothingBlocksNobody) {
  const SerialDevice stuck;  // no event reaches it between the lines
  PortMaker maker;
  const auto port = maker.Make(On("Line", stuck.path), false);
  bool lost = false;
  QObject::connect(port.get(), &LinePort::Lost, [&] { lost = true; });
  port->Open();
  for (int i = 0; i < 6; ++i) port->Write(std::string(1024 * 1024, 'x'));
  EXPECT_TRUE(WaitUntil([&] { return lost; }));
}

TEST_F(Serial, AReasonSaysWhatIsToBeDone) {
  EXPECT_EQ(NoPermission("/dev/x", {"root", "dialout", true}, "ann"),
            "/dev/x: no permission; mend it with: sudo usermod -aG dialout ann, then log in again");
  EXPECT_EQ(OpenFault("/dev/x", EBUSY).code, 10027);
  EXPECT_EQ(WrongSetting(SerialDevice().host, On("", "")), "19200 baud are not possible");
}

}  // namespace
}  // namespace ostrel
