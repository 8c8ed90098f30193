#include "fixture.h"

namespace ostrel {
namespace {

class Sharing : public ServerTest {
 protected:
  using Lines = std::vector<std::string>;
  bool Seen(std::size_t count) {
    return WaitUntil([this, count] { return device.lines.size() == count; });
  }
};

TEST_F(Sharing, LinesGoOutOneAtATimeEvenWhenAClientIsGone) {
  Client two(path);
  device.answer = [](const QByteArray&) { return QByteArray(); };
  {
    Client one(path);
    one.Call("COpen", {"Tcp"});
    one.Call("CSend", {1, "AA:1"});
    one.Call("CSend", {1, "AA:never"});
    two.Call("COpen", {"Tcp"});
    ASSERT_TRUE(Seen(1));
  }
  two.Call("CSend", {2, "AA:2"});
  EXPECT_EQ(two.Code("CSend", {1, "AA:3"}), 10026) << "another client's channel";
  EXPECT_TRUE(WaitUntil([&two] { return two.Call("ServerStatus")["clients"] == 1; }));
  EXPECT_EQ(device.lines, Lines{"AA:1"});
  device.Send(ScriptedDevice::Reply("AA:1", "a"));
  ASSERT_TRUE(Seen(2));
  EXPECT_EQ(device.lines[1], "AA:2");
  device.Send(ScriptedDevice::Reply("AA:2", "b"));
  EXPECT_EQ(two.Notice()["answer"], "b");
}

TEST_F(Sharing, AStationIsCurrentForTheChannelThatMadeItSo) {
  Client client(path);
  client.Call("COpen", {"Tcp"});
  client.Call("COpen", {"Tcp"});
  int asked = 0;  // for D1, which goes after the first time
  device.answer = [&asked](const QByteArray& line) {
    const bool gone = line.startsWith("C") || (line == "D1::" && ++asked > 1);
    return ScriptedDevice::Reply(line, gone ? "<<no station>>" : "re " + line);
  };
  const struct {
    int channel;  // 0: the link is dropped
    const char* line;
    Lines seen;
    std::string answer;
  } steps[] = {
      // Nobody knows what was current before the server was.
      {1, "ver.", {"AA::", "ver."}, "re ver."},  {1, "B1::", {"B1::"}, "re B1::"},
      {1, "ver.", {"ver."}, "re ver."},          {2, "ver.", {"AA::", "ver."}, "re ver."},
      {1, "AA:ver.", {"AA:ver."}, "re AA:ver."}, {1, "all,ver.", {"all,ver."}, "re all,ver."},
      {1, "ver.", {"B1::", "ver."}, "re ver."},  {0, "", {}, ""},
      {1, "ver.", {"B1::", "ver."}, "re ver."},  {1, "C3::", {"C3::"}, "<<no station>>"},
      {1, "ver.", {"B1::", "ver."}, "re ver."},  {2, "C3::", {"C3::"}, "<<no station>>"},
      {2, "x", {"AA::", "x"}, "re x"},           {1, "D1::", {"D1::"}, "re D1::"},
      {2, "x", {"AA::", "x"}, "re x"},           {1, "reset", {"D1::"}, "<<no station>>"},
  };
  for (const auto& step : steps) {
    device.lines.clear();
    if (step.channel == 0) {
      device.Drop();
      const auto closed = [&client] {
        return !client.Call("ServerStatus")["connections"][0]["open"].toBool();
      };
      EXPECT_TRUE(WaitUntil(closed));
      for (const int told : {1, 2}) {
        EXPECT_EQ(Client::CodeOf(client.Notice()["error"].toObject()), 10015) << told;
        EXPECT_EQ(client.Call("CReceive", {told}), "re ver.") << "had before, not fetched yet";
        EXPECT_EQ(client.Code("CStatus", {told}), 10015) << told;
      }
      continue;
    }
    EXPECT_EQ(client.Exchange(step.channel, step.line), step.answer) << step.line;
    EXPECT_EQ(device.lines, step.seen) << step.line << " on channel " << step.channel;
  }
  // Whoever uses the devices next finds the connected one current.
  client.Exchange(1, "B1::");
  device.lines.clear();
  client.Call("CClose", {1});
  client.Call("CClose", {2});
  EXPECT_TRUE(WaitUntil([this] { return !device.Connected(); }));
  EXPECT_EQ(device.lines, Lines{"AA::"});
}

TEST_F(Sharing, ALineThatNobodyWaitsForAnyMoreNeverGoesOut) {
  Client one(path), two(path), late(path);
  device.answer = [](const QByteArray& line) {
    return line == "AA:held" ? QByteArray() : ScriptedDevice::Reply(line, "re " + line);
  };
  for (Client* client : {&one, &two, &late}) client->Call("COpen", {"Tcp"});
  one.Call("CSend", {1, "AA:held"});
  ASSERT_TRUE(Seen(1));
  EXPECT_EQ(one.Call("CCancel", {1}), false) << "it went out";
  EXPECT_EQ(one.Call("CStatus", {1}), 3);
  two.Call("CSend", {2, "AA:given up"});
  EXPECT_EQ(two.Call("CCancel", {2}), true);
  two.Call("CSend", {2, "AA:older"});
  two.Call("CSend", {2, "AA:newer"});
  late.Call("CTimeout", {3, 1});
  late.Call("CSend", {3, "AA:too late"});
  const QJsonObject error = late.Notice()["error"].toObject();
  EXPECT_EQ(Client::CodeOf(error), 10012);
  EXPECT_TRUE(error["message"].toString().startsWith(kUnsentText)) << "while it waited";
  device.Send(ScriptedDevice::Reply("AA:held", "1"));
  EXPECT_EQ(two.Notice()["answer"], "re AA:newer");
  EXPECT_EQ(late.Exchange(3, "AA:last"), "re AA:last");
  EXPECT_EQ(device.lines, (Lines{"AA:held", "AA:newer", "AA:last"}));
  EXPECT_TRUE(one.notices.empty()) << "nobody waited for the answer";
}

TEST_F(Sharing, AProgramMakesSoManyLinesWaitAndNoMore) {
  Client client(path);
  device.answer = [](const QByteArray&) { return QByteArray(); };
  for (int channel = 1; channel <= 6; ++channel) {
    client.Call("COpen", {"Tcp"});
    EXPECT_EQ(client.Code("CSend", {channel, "AA:x"}), channel <= 5 ? 0 : 10014) << channel;
  }
}

TEST_F(Sharing, AnEarlierFailureDoesNotHideThatTheLineWasLost) {
  Client client(path);
  client.Call("COpen", {"Tcp"});
  client.Call("CTimeout", {1, 1});
  device.answer = [](const QByteArray&) { return QByteArray(); };
  client.Call("CSend", {1, "AA:1"});
  EXPECT_EQ(Client::CodeOf(client.Notice()["error"].toObject()), 10012);
  device.Drop();
  EXPECT_EQ(Client::CodeOf(client.Notice()["error"].toObject()), 10015);
}

TEST_F(Sharing, NoReplyOfADeviceKeepsAConnectionOpenThatNobodyHolds) {
  Client client(path);
  for (const char* last : {"", "<<no station>>", "\x01"}) {
    device.answer = [last](const QByteArray& line) {
      return ScriptedDevice::Reply(line, line == "AA::" ? last : "");
    };
    const int channel = client.Call("COpen", {"Tcp"}).toInt();
    client.Exchange(channel, "B1::");
    device.lines.clear();
    client.Call("CClose", {channel});
    EXPECT_TRUE(WaitUntil([this] { return !device.Connected(); })) << last;
    EXPECT_EQ(device.lines, Lines{"AA::"}) << last;
  }
}

TEST_F(Sharing, TheOnlineChannelHasTheConnectionToItselfAndReachesTheConnectedDevice) {
  Client client(path);
  client.Call("COpen", {"Tcp", 2});
  client.Exchange(1, "B1::");
  device.answer = [](const QByteArray& line) {
    return line == "AA:1" ? QByteArray() : ScriptedDevice::Reply(line, "<<no station>>");
  };
  EXPECT_EQ(client.Code("COpen", {"Tcp", 3}), 10021) << "B1 would be reached";
  EXPECT_EQ(client.Notice()["enabled"], true);
  EXPECT_EQ(client.Notice()["enabled"], false);
  client.Call("CSend", {1, "AA:1"});
  ASSERT_TRUE(Seen(3));
  device.answer = [](const QByteArray& line) { return ScriptedDevice::Reply(line, ""); };
  EXPECT_EQ(client.Call("COpen", {"Tcp", 3}), 3);
  EXPECT_EQ(device.lines, (Lines{"B1::", "AA::", "AA:1", "AA::"}));
  EXPECT_EQ(Client::CodeOf(client.Notice()["error"].toObject()), 10019) << "what was under way";
  for (const int channel : {1, 3}) {
    EXPECT_EQ(client.Notice(), (QJsonObject{{"channel", channel}, {"enabled", true}}));
    EXPECT_EQ(client.Call("COnlineEnabled", {channel}), true);
  }
  EXPECT_EQ(client.Code("COpen", {"Tcp", 3}), 10018);
  EXPECT_EQ(client.Code("CSend", {1, "AA:2"}), 10019);
  EXPECT_EQ(client.Call("CFrame", {3}), 0);

  device.answer = [](const QByteArray& line) { return line + "\r\n\xE4\x1A<"; };
  client.Call("CSend", {3, "\r"});
  client.Call("CSend", {3, "ver\r"});
  EXPECT_EQ(client.Notice()["status"], 0);
  QString all;
  EXPECT_TRUE(
      WaitUntil([&] { return (all += client.Call("CReceive", {3}).toString()).size() == 13; }));
  EXPECT_EQ(all, QString::fromUtf8("\r\nä\x1A<ver\r\nä\x1A<"));
  EXPECT_EQ(client.Call("CReceive", {3}), "");

  client.notices.clear();
  client.Call("CClose", {3});
  EXPECT_EQ(client.Notice(), (QJsonObject{{"channel", 1}, {"enabled", false}}));
  device.answer = [](const QByteArray& line) { return ScriptedDevice::Reply(line, "b"); };
  device.lines.clear();
  EXPECT_EQ(client.Exchange(1, "ver."), "b");
  EXPECT_EQ(device.lines, (Lines{"B1::", "ver."})) << "whatever the online channel made current";
}

TEST_F(Sharing, ALineThatAwaitsNoReplyFailsAsItsExchange) {
  Client client(path);
  client.Call("COpen", {"Tcp", 2});
  const auto notify = [&](int channel, const char* line) {
    const QJsonObject request{
        {"jsonrpc", "2.0"}, {"method", "CSend"}, {"params", QJsonArray{channel, line}}};
    client.socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
  };
  notify(99, "of another client");
  notify(1, "AA:1");
  EXPECT_EQ(client.Notice()["answer"], "re AA:1");
  notify(1, "two\rlines");
  const QJsonObject refused = client.Notice();
  EXPECT_EQ(Client::CodeOf(refused["error"].toObject()), 10014);
  EXPECT_EQ(refused["exchange"], 2);
  EXPECT_EQ(client.Call("CStatus", {1})["code"].toInt() - kObjectErrorBase, 10014);
  EXPECT_EQ(client.Call("CStatus", {1}), 3);
  EXPECT_TRUE(client.responses.empty());
}

}  // namespace
}  // namespace ostrel
