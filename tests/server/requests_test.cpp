#include "fixture.h"

namespace ostrel {
namespace {

class Requests : public ServerTest {};

TEST_F(Requests, AreRefusedWithTheirReason) {
  auto closed = std::make_unique<ScriptedDevice>();
  AddTcp("Closed", closed->Port());
  closed.reset();
  settings.WriteShared(std::string(keys::kConnections) + "Faulty", "Kind", "tcp");
  Client client(path);
  ASSERT_EQ(client.Call("COpen", {"Tcp", 2}), 1);
  const struct {
    const char* method;
    QJsonArray parameters;
    int code;
  } cases[] = {
      {"COpen", {"Nowhere", 2}, 10032},
      {"COpen", {"Faulty", 2}, 10044},
      {"COpen", {"Closed", 2}, 10042},
      {"COpen", {"Tcp", 1}, -32602},
      {"CSend", {1}, -32602},
      {"CSend", {"1", "x"}, -32602},
      {"CSend", {1, "x", 1}, -32602},
      {"CSend", {7, "x"}, 10026},
      {"CClose", {-1}, 10026},
      {"CSend", {1, "a\rb"}, 10014},
      {"CSend", {1, "a\n\n"}, 10014},
      {"CSend", {1, QString(QChar(0x3A9))}, 10014},
      {"CSend", {1, QString(4097, 'x')}, 10014},
      {"CSend", {1, 2, 3, 4, 5, 6, 7, 8, 9}, -32602},
      {"CCancel", {1}, 0},
      {"CFrame", {1, 0}, 10020},
      {"CFrame", {1, 1}, 10021},
      {"CTimeout", {1, 0}, -32602},
      {"CTimeout", {1, 3601}, -32602},
      {"COpened", {}, -32601},
      {"CTimeout", {1, 3600}, 0},
      {"CFrame", {1, 2}, 0},
      {"CClose", {1}, 0},
      {"CStatus", {1}, 10026},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(client.Code(c.method, c.parameters), c.code)
        << c.method << QJsonDocument(c.parameters).toJson(QJsonDocument::Compact).toStdString();
  }
  EXPECT_TRUE(device.lines.empty()) << "nothing that was refused reaches the device";
}

TEST_F(Requests, OfABadClientLeaveTheSessionAlive) {
  Client client(path);
  const std::pair<QByteArray, int> cases[] = {
      {"hello\n", -32700},
      {QByteArray(5 * 1024 * 1024, 'x') + "\n", -32600},
      {"{\"jsonrpc\":\"2.0\",\"id\":0,\"method\":\"Quit\"}\r\n", -32601},
      {"{\"jsonrpc\":\"2.0\",\"id\":\"" + QByteArray(129, 'x') + "\",\"method\":\"CAbout\"}\n",
       -32600},
  };
  for (const auto& [bytes, code] : cases) {
    client.socket.write(bytes);
    EXPECT_TRUE(WaitUntil([&client] { return !client.responses.empty(); })) << code;
    for (const QJsonObject& response : std::exchange(client.responses, {})) {
      EXPECT_EQ(response["error"]["code"].toInt(), code);
    }
    client.socket.write("\n{\"jsonrpc\":\"2.0\",\"method\":\"COpenLocked\"}\n");  // not answered
    EXPECT_EQ(client.Call("COpenLocked"), false) << "after " << code;
  }
}

TEST_F(Requests, StartTheSimulatedBootloaderByHand) {
  Client client(path);
  EXPECT_EQ(client.Code("SimulatorBootloader", {"Tcp"}), 10032);
  EXPECT_EQ(client.Code("SimulatorBootloader", {"simulator"}), 0);
  const int channel = client.Call("COpen", {"Simulator", 2}).toInt();
  EXPECT_EQ(client.Exchange(channel, "ver"), "KT-X Urlader V2.14");
  EXPECT_EQ(client.Exchange(channel, "reset"), "");
  EXPECT_EQ(client.Exchange(channel, "ver"), "KT-X Version V2.27");
}

TEST_F(Requests, AClientThatDoesNotReadIsCutOffAndTheOthersGoOn) {
  Client other(path), client(path);
  other.Call("COpen", {"Tcp"});
  client.socket.setReadBufferSize(1);
  // The answer names the member that there is not.
  const QByteArray request =
      "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"" + QByteArray(1000 * 1000, 'x') + "\"}\n";
  for (int i = 0; i < 4; ++i) client.socket.write(request);
  EXPECT_TRUE(WaitUntil([&client] { return client.socket.bytesToWrite() == 0; }));
  EXPECT_EQ(other.Exchange(1, "AA:x"), "re AA:x");
  EXPECT_EQ(client.socket.state(), QLocalSocket::ConnectedState) << "less than 4 MiB wait";
  for (int i = 0; i < 3; ++i) client.socket.write(request);
  EXPECT_TRUE(WaitUntil([&] { return client.socket.state() == QLocalSocket::UnconnectedState; }));
  EXPECT_EQ(other.Exchange(1, "AA:y"), "re AA:y");
}

TEST_F(Requests, AFloodOfThemLeavesTheOthersTheirTurn) {
  Client flood(path), quiet(path);
  quiet.Call("COpen", {"Tcp"});
  QByteArray many;
  for (int i = 1; i <= 10000; ++i) many += rpc::EncodeRequest(i, "COpenLocked", {});
  flood.socket.write(many);
  EXPECT_TRUE(WaitUntil([&flood] { return !flood.responses.empty(); }));
  EXPECT_EQ(quiet.Exchange(1, "AA:x"), "re AA:x");
  EXPECT_LT(flood.responses.size(), 500);
  EXPECT_TRUE(WaitUntil([&flood] { return flood.responses.size() == 10000; }));
}

TEST_F(Requests, AChannelLimitHoldsOnEachConnection) {
  Client client(path);
  for (int i = 1; i <= 64; ++i) ASSERT_EQ(client.Call("COpen", {"Tcp", 2}), i);
  EXPECT_EQ(client.Code("COpen", {"Tcp", 2}), 10011);
  EXPECT_EQ(Client(path).Code("COpen", {"Tcp", 2}), 0) << "another program's share";
  EXPECT_EQ(client.Code("COpen", {"Simulator", 2}), 0);
}

TEST_F(Requests, TheTimeoutStartsAsTheSettingSays) {
  settings.WriteShared(keys::kServerMisc, "DefTimeout_s", "99");
  Client client(path);
  client.Call("COpen", {"Tcp"});
  EXPECT_EQ(client.Call("CTimeout", {1}), 15) << "at most";
}

TEST_F(Requests, StopAsksTheOthersToEndAndWaitsForThem) {
  auto other = std::make_unique<Client>(path);
  Client client(path);
  EXPECT_EQ(other->Call("CTerminateApps"), false);
  EXPECT_EQ(client.Call("ServerStop")["clients"], 2);
  EXPECT_EQ(other->Call("CTerminateApps"), true);
  EXPECT_EQ(other->Call("COpenLocked"), true);
  EXPECT_EQ(other->Code("COpen", {"Tcp", 2}), 10013);
  EXPECT_FALSE(ended);
  other.reset();
  EXPECT_TRUE(WaitUntil([this] { return ended; }));
}

}  // namespace
}  // namespace ostrel
