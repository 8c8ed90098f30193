#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QSocketNotifier>

#include "fixture.h"
#include "server/port_maker.h"

namespace ostrel {
namespace {

/// A device behind a pseudo-terminal; a stuck one reads nothing.
class SerialDevice {
 public:
  explicit SerialDevice(bool stuck = false) : notifier_(master_, QSocketNotifier::Read) {
    ::unlockpt(master_);
    path = ::ptsname(master_);
    keep_ = ::open(path.c_str(), O_RDWR | O_NOCTTY);  // so that a host may come and go
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { Read(); });
    notifier_.setEnabled(!stuck);
  }
  ~SerialDevice() {
    notifier_.setEnabled(false);
    ::close(keep_);
    ::close(master_);
  }
  void Link(const QString& link) const { QFile::link(QString::fromStdString(path), link); }
  std::string path;

 private:
  void Read() {
    char bytes[64];
    line_.append(bytes, static_cast<qsizetype>(::read(master_, bytes, sizeof bytes)));
    if (!line_.endsWith('\r')) return;
    line_.chop(1);
    const QByteArray reply = ScriptedDevice::Reply(std::exchange(line_, {}), path.c_str());
    EXPECT_EQ(::write(master_, reply.data(), static_cast<std::size_t>(reply.size())), reply.size());
  }
  const int master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
  int keep_ = -1;
  QSocketNotifier notifier_;
  QByteArray line_;
};

Connection On(const std::string& name, const std::string& device, const char* parity = "none") {
  return {name, "serial", "", 0, device, 19200, parity};
}

class Serial : public ServerTest {};

TEST_F(Serial, ADeviceHasOneConnectionOfOneServer) {
  const SerialDevice line;
  const QString link = folder.path() + "/line";
  line.Link(link);
  for (const Connection& connection :
       {On("Bus", line.path), On("Link", link.toStdString()), On("Even", line.path, "even"),
        On("None", link.toStdString() + "x"), On("Null", "/dev/null")}) {
    EXPECT_TRUE(Connections(settings).Add(connection));
  }
  CommServer otherComm(settings);
  RpcServer otherServer(otherComm, 60000);
  otherServer.Listen(path + "2/server.sock");
  Client client(path), other(path + "2/server.sock");
  EXPECT_EQ(client.Code("COpen", {"Even"}), 10013) << "which a pseudo-terminal does not do";
  EXPECT_EQ(client.Call("COpen", {"Bus"}), 1);
  EXPECT_EQ(client.Exchange(1, "AA:1"), line.path);
  EXPECT_EQ(client.Code("COpen", {"Link"}), 10033);
  EXPECT_EQ(other.Code("COpen", {"Link"}), 10027);
  EXPECT_EQ(client.Code("COpen", {"None"}), 10027);
  EXPECT_EQ(client.Code("COpen", {"Null"}), 10013);
  client.Call("CClose", {1});
  EXPECT_EQ(other.Call("COpen", {"Link"}), 1) << "given back";
}

TEST_F(Serial, ALineThatComesBackIsThatOfTheSameAdapter) {
  const QString line = folder.path() + "/line", adapter = folder.path() + "/by-id/usb-A";
  QDir(folder.path()).mkdir("by-id");
  PortMaker maker(QFileInfo(adapter).path().toStdString());
  BusConnection bus("Line",
                    [&](bool again) { return maker.Make(On("Line", line.toStdString()), again); });
  std::string outcome;
  QObject::connect(&bus, &BusConnection::Answered,
                   [&](int, int, const std::string& answer) { outcome = answer; });
  QObject::connect(&bus, &BusConnection::Failed,
                   [&](int, int, int code, const std::string&) { outcome = std::to_string(code); });
  enum { kNothing, kSame, kOther };
  const struct {
    int before, after, path;  // what the adapter's name leads to, before and after; and the path
    int expected;             // what answers
  } cases[] = {{kSame, kSame, kSame, kSame},
               {kSame, kSame, kOther, kSame},
               {kSame, kNothing, kOther, kNothing},
               {kSame, kNothing, kNothing, kNothing},
               {kNothing, kNothing, kSame, kSame}};
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    auto first = std::make_unique<SerialDevice>();
    first->Link(line);
    if (c.before == kSame) first->Link(adapter);
    bus.Hold();
    ASSERT_TRUE(WaitUntil([&] { return bus.IsOpen(); }));
    const SerialDevice same, other;
    first.reset();
    EXPECT_TRUE(WaitUntil([&] { return !bus.IsOpen(); }));
    QFile::remove(line);
    QFile::remove(adapter);
    if (c.path != kNothing) (c.path == kSame ? same : other).Link(line);
    if (c.after == kSame) same.Link(adapter);
    outcome.clear();
    bus.Send({1, 1, "AA:x", 5000});
    EXPECT_TRUE(WaitUntil([&] { return !outcome.empty(); }));
    EXPECT_EQ(outcome, c.expected == kSame ? same.path : "10027");
    bus.Release();
    QFile::remove(line);
    QFile::remove(adapter);
  }
}

TEST_F(Serial, ADeviceThatTakesNothingBlocksNobody) {
  const SerialDevice stuck(true);
  PortMaker maker;
  const auto port = maker.Make(On("Line", stuck.path), false);
  bool lost = false;
  QObject::connect(port.get(), &LinePort::Lost, [&] { lost = true; });
  port->Open();
  for (int i = 0; i < 6; ++i) port->Write(std::string(1024 * 1024, 'x'));
  EXPECT_TRUE(WaitUntil([&] { return lost; }));
}

TEST(SerialDevices, AReasonSaysWhatIsToBeDone) {
  EXPECT_EQ(NoPermission("/dev/x", {"root", "dialout", true}, "ann"),
            "/dev/x: no permission; mend it with: sudo usermod -aG dialout ann, then log in again");
  EXPECT_EQ(NoPermission("/dev/x", {"root", "tty", false}, "ann"),
            "/dev/x: no permission; it belongs to the user root");
  EXPECT_EQ(OpenFault("/dev/x", EBUSY).code, 10027);
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  EXPECT_EQ(WrongSetting(terminal, On("", "")), "19200 baud are not possible") << "it has 38400";
  ::close(terminal);
}

}  // namespace
}  // namespace ostrel
