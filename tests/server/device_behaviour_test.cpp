#include "fixture.h"

namespace ostrel {
namespace {

struct Behaviour {
  const char* name;
  bool echo;             // of the device in general
  QByteArray reply;      // to "AA:x"
  QByteArray late;       // comes in front of the reply to the next line
  bool drop;             // the link, instead of a reply
  std::string expected;  // the answer, or the error's code
};

const QByteArray kLong(256 * 1024, 'y');
const QByteArray kEnd("\r\n<\x1A");

const Behaviour kBehaviours[] = {
    {"answers", true, "AA:x\r\n1" + kEnd, "", false, "1"},
    {"answers in ISO 8859-1", true, "AA:x\r\n\xE4" + kEnd, "", false, "ä"},
    {"without echo", false, "1" + kEnd, "", false, "1"},
    {"answers twice", true, "AA:x\r\n1" + kEnd + "AA:x\r\n1" + kEnd, "", false, "1"},
    {"never answers", true, "", "", false, "10012"},
    {"breaks off", true, "AA:x\r\n1", "", false, "10012"},
    {"answers late", true, "", "AA:x\r\n1" + kEnd, false, "10012"},
    {"echoes another line", true, "AA:z\r\n1" + kEnd, "", false, "10012"},
    {"sends rubbish", true, "AA:x\r\n\x01" + kEnd, "", false, "10015"},
    {"loses the beginning", false, "A:x\r\n1" + kEnd, "", false, "10015"},
    {"drops the link", true, "", "", true, "10015"},
    {"largest answer", true, "AA:x\r\n" + kLong + kEnd, "", false, kLong.toStdString()},
    {"too big an answer", true, "AA:x\r\n" + kLong + "y" + kEnd, "", false, "10017"},
    {"endless, then ends", true, "AA:x\r\n" + kLong + kLong + "\x1A", "", false, "10017"},
    {"endless, without end", true, "AA:x\r\n" + kLong + kLong, "\x1A", false, "10017"},
};

class DeviceBehaviour : public ServerTest {};

TEST_F(DeviceBehaviour, TheClientGetsTheAnswerOrTheReasonAndTheNextLineItsOwnAnswer) {
  Client client(path);
  for (const Behaviour& b : kBehaviours) {
    SCOPED_TRACE(b.name);
    QByteArray late;
    device.answer = [&](const QByteArray& line) -> QByteArray {
      const QByteArray before = std::exchange(late, {});
      if (line != "AA:x") return before + (b.echo ? line + "\r\n" : "") + "fine" + kEnd;
      late = b.late;
      if (b.drop) device.Drop();
      return before + b.reply;
    };
    // A connection of its own: what a line has shown of echoes is remembered.
    AddTcp(b.name, device.Port());
    const int channel = client.Call("COpen", {b.name, 2}).toInt();
    client.Call("CTimeout", {channel, b.expected == "10012" ? 1 : 60});
    EXPECT_EQ(client.Exchange(channel, "AA:ok"), "fine");
    EXPECT_EQ(client.Exchange(channel, "AA:x"), b.expected);
    EXPECT_EQ(client.Exchange(channel, "AA:ok"), "fine");
    client.Call("CClose", {channel});
    EXPECT_TRUE(WaitUntil([this] { return !device.Connected(); })) << "the line is closed";
  }
}

TEST_F(DeviceBehaviour, WithoutEchoALineAwaitsTheEndOfALongReply) {
  Client client(path);
  device.answer = [](const QByteArray& line) { return line == "AA:x" ? kLong + kLong : "2\x1A"; };
  client.Call("COpen", {"Tcp"});
  EXPECT_EQ(client.Exchange(1, "AA:x"), "10017");
  client.Call("CSend", {1, "AA:y"});
  for (int i = 0; i < 20; ++i) client.Call("CTimeout", {1});
  EXPECT_EQ(device.lines.size(), 1);
  device.Send("\x1A");
  EXPECT_EQ(client.Notice()["answer"], "2");
}

TEST_F(DeviceBehaviour, AFailureIsRaisedOnceAndAnAnswerIsFetchedOnce) {
  Client client(path);
  client.Call("COpen", {"Tcp"});
  EXPECT_EQ(client.Call("CStatus", {1}), 3);
  EXPECT_EQ(client.Code("CReceive", {1}), 1283);
  client.Exchange(1, "AA:x\r\n");
  EXPECT_EQ(client.Call("CStatus", {1}), 0);
  EXPECT_EQ(client.Call("CReceive", {1}), "re AA:x");
  EXPECT_EQ(client.Call("CStatus", {1}), 3);
  for (const char* member : {"CStatus", "CReceive"}) {
    device.answer = [this](const QByteArray&) { return device.Drop(), QByteArray(); };
    EXPECT_EQ(client.Exchange(1, "AA:x"), "10015") << member;
    EXPECT_EQ(client.Code(member, {1}), 10015) << member;
    EXPECT_EQ(client.Call("CStatus", {1}), 3) << member;
  }
}

TEST_F(DeviceBehaviour, ALineOverAnUnfetchedAnswerGivesItUp) {
  Client client(path);
  client.Call("COpen", {"Tcp"});
  QByteArray held;
  device.answer = [&held](const QByteArray& line) {
    const QByteArray reply = ScriptedDevice::Reply(line, line);
    return line == "AA:a" ? (held = reply, QByteArray()) : reply;
  };
  client.Call("CSend", {1, "AA:a"});
  client.Call("CSend", {1, "AA:b"});
  EXPECT_EQ(client.Call("CStatus", {1}), 1);
  EXPECT_TRUE(WaitUntil([&held] { return !held.isEmpty(); }));
  device.Send(held);
  const QJsonObject notice = client.Notice();
  EXPECT_EQ(notice["exchange"], 2);
  EXPECT_EQ(notice["answer"], "AA:b");
}

}  // namespace
}  // namespace ostrel
