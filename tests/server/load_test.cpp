// Many clients at once, and many that go without a word, on the real server.

#include <sys/resource.h>

#include <QFile>
#include <algorithm>

#include "end_to_end/programs.h"
#include "fixture.h"

namespace ostrel {
namespace {

constexpr int kClients = 64;
constexpr int kExchanges = 200;  // of each
constexpr int kDeaths = 1000;
constexpr int kWarmUp = 1000;
// What a thousand clients may leave behind. A leak of half a KiB for each shows.
constexpr long kMaxGrowthKib = 512;
constexpr int kHoarders = 256;
constexpr long kMaxMemoryKib = 128 * 1024;

class Load : public testing::Test {
 protected:
  Load() {
    programs.UseTcp(device.Port());
    server = programs.Start("ostrel-server", {});
    server->setReadChannel(QProcess::StandardError);
    while (!server->readAllStandardError().contains("listening")) {
      if (!server->waitForReadyRead(5000)) break;
    }
  }
  ~Load() override {
    server->terminate();
    EXPECT_TRUE(server->waitForFinished(20000));
    EXPECT_EQ(server->exitCode(), 0) << server->readAllStandardError().toStdString();
  }

  /// What the system tells of the server: the word behind the key.
  QByteArray Told(const QString& file, const QByteArray& key) const {
    QFile about(QStringLiteral("/proc/%1/%2").arg(server->processId()).arg(file));
    EXPECT_TRUE(about.open(QIODevice::ReadOnly));
    const QByteArray text = about.readAll();
    return text.mid(text.indexOf(key) + key.size()).trimmed().split(' ').first();
  }
  long MemoryKib(const QByteArray& which = "VmRSS:") const {
    return Told("status", which).toLong();
  }

  /// A client that has come so far is gone before anybody answers it: with half a request, while
  /// its channel is opened, in the middle of an exchange, with the online channel.
  void Die(int number) const {
    Client client(path);
    const int way = number % 4;
    if (way == 0) client.socket.write("{\"jsonrpc\":\"2.0\",\"id\":1,\"met");
    if (way == 1) client.socket.write(rpc::EncodeRequest(1, "COpen", {std::string("Bus"), 2}));
    if (way >= 2) {
      const int channel = client.Call("COpen", {"Bus", way}).toInt();
      ASSERT_GT(channel, 0) << "client " << number;
      client.socket.write(rpc::EncodeRequest(0, "CSend", {channel, std::string("AA:lost")}));
    }
    client.socket.flush();
    client.socket.abort();
  }

  /// Lets so many die, and waits until the one that watches is alone again.
  void DieAndSettle(int count, Client& watch) const {
    for (int i = 0; i < count; ++i) Die(i);
    const auto alone = [&watch] {
      const QJsonValue status = watch.Call("ServerStatus");
      return status["clients"] == 1 && status["connections"].toArray().isEmpty();
    };
    EXPECT_TRUE(WaitUntil(alone));
  }

  // Else what is freed stays with the checks and looks like a leak.
  const bool checksKeepLittle = qputenv("ASAN_OPTIONS", "quarantine_size_mb=1");
  const Programs programs;
  const QString path = programs.Folder() + "/ostrel/server.sock";
  ScriptedDevice device;
  std::unique_ptr<QProcess> server;
};

TEST_F(Load, EachOfManyClientsGetsTheAnswersToItsOwnLines) {
  std::vector<std::unique_ptr<Client>> clients;
  for (int channel = 1; channel <= kClients; ++channel) {
    clients.push_back(std::make_unique<Client>(path));
    ASSERT_EQ(clients.back()->Call("COpen", {"Bus", 2}), channel);
  }
  for (int round = 1; round <= kExchanges; ++round) {
    const auto line = [round](int channel) {
      return "AA:" + std::to_string(channel) + "." + std::to_string(round);
    };
    for (int channel = 1; channel <= kClients; ++channel) {
      clients[channel - 1]->socket.write(rpc::EncodeRequest(0, "CSend", {channel, line(channel)}));
    }
    for (int channel = 1; channel <= kClients; ++channel) {
      const QJsonObject notice = clients[channel - 1]->Notice();
      EXPECT_EQ(notice["answer"].toString().toStdString(), "re " + line(channel));
      EXPECT_EQ(notice["channel"], channel);
      EXPECT_EQ(notice["exchange"], round);
    }
  }
  EXPECT_EQ(std::ssize(device.lines), kClients * kExchanges) << "every line once";
}

TEST_F(Load, ClientsThatDieLeaveNothingBehind) {
  Client watch(path);
  watch.Call("COpenLocked");  // it has been let in
  // It runs out of them soon when one that has gone keeps any.
  const rlimit files{100, 100};
  ASSERT_EQ(prlimit(static_cast<pid_t>(server->processId()), RLIMIT_NOFILE, &files, nullptr), 0);
  DieAndSettle(kWarmUp, watch);
  const long memoryBefore = MemoryKib();
  DieAndSettle(kDeaths, watch);
  EXPECT_LE(MemoryKib() - memoryBefore, kMaxGrowthKib) << memoryBefore;
  const int channel = watch.Call("COpen", {"Bus", 2}).toInt();
  EXPECT_EQ(watch.Exchange(channel, "AA:last"), "re AA:last");
}

TEST_F(Load, WhatManyClientsMakeItKeepStaysSmallAndIsNobodysToSee) {
  EXPECT_EQ(Told("limits", "Max core file size"), "0");
  Client watch(path);
  const int channel = watch.Call("COpen", {"Bus", 2}).toInt();
  std::vector<std::unique_ptr<Client>> clients;
  const auto connected = [](const auto& client) {
    return client->socket.state() == QLocalSocket::ConnectedState;
  };
  for (int i = 0; i < kHoarders; ++i) {
    clients.push_back(std::make_unique<Client>(path));
    clients.back()->socket.write(QByteArray(1024 * 1024, ' '));
  }
  for (const auto& client : clients) {
    EXPECT_TRUE(
        WaitUntil([&] { return client->socket.bytesToWrite() == 0 || !connected(client); }));
  }
  EXPECT_EQ(watch.Exchange(channel, "AA:x"), "re AA:x");
  EXPECT_TRUE(WaitUntil([&] { return !std::all_of(clients.begin(), clients.end(), connected); }));
  EXPECT_TRUE(std::any_of(clients.begin(), clients.end(), connected)) << "as many as there is room";
  EXPECT_LT(MemoryKib("VmHWM:"), kMaxMemoryKib);
}

class Death : public ServerTest {};

TEST_F(Death, LeavesNoHalfLineInFrontOfTheNextOne) {
  Client other(path), owner(path);
  const int channel = other.Call("COpen", {"Tcp", 2}).toInt();
  EXPECT_EQ(other.Exchange(channel, "AA:before"), "re AA:before");
  const int online = owner.Call("COpen", {"Tcp", 3}).toInt();
  EXPECT_EQ(other.Notice()["enabled"], true);
  owner.Call("CSend", {online, "half a li"});
  owner.Call("CSend", {online, "ne"});
  owner.socket.abort();
  EXPECT_EQ(other.Notice()["enabled"], false);
  EXPECT_EQ(other.Exchange(channel, "AA:own"), "re AA:own");
  const std::vector<std::string> seen = {"AA:before", "AA::", "half a line\"", "ver", "AA:own"};
  EXPECT_EQ(device.lines, seen) << "and not carried out";
}

TEST_F(Death, LeavesNoDeviceInItsBootloader) {
  Client other(path);
  const int channel = other.Call("COpen", {"Tcp", 2}).toInt();
  std::vector<std::string> seen;
  bool silent = false;
  device.answer = [&](const QByteArray& line) -> QByteArray {
    if (std::exchange(silent, false)) return {};  // it saves its memory
    return ScriptedDevice::Reply(line, line == "ver" ? "KT-X Urlader V2.14" : "");
  };
  auto owner = std::make_unique<Client>(path);
  const int online = owner->Call("COpen", {"Tcp", 3}).toInt();
  other.Notice();
  owner->Call("CSend", {online, "RamBackup\r"});
  EXPECT_TRUE(WaitUntil([&] { return device.lines.size() == 2; }));
  silent = true;
  owner.reset();
  EXPECT_EQ(other.Notice()["enabled"], false);
  other.Exchange(channel, "AA:own");
  seen = {"AA::", "RamBackup", "ver", "ver", "reset", "AA:own"};
  EXPECT_EQ(device.lines, seen);
  // The device is at work again, and a program that closes its channel has left it so.
  device.lines.clear();
  device.answer = [](const QByteArray& line) {
    return ScriptedDevice::Reply(line, line == "ver" ? "Version 2.27" : "");
  };
  const int closed = other.Call("COpen", {"Tcp", 3}).toInt();
  other.Call("CClose", {closed});
  owner = std::make_unique<Client>(path);
  owner->Call("COpen", {"Tcp", 3});
  owner.reset();
  EXPECT_TRUE(WaitUntil([&] { return device.lines.size() == 3; }));
  other.Exchange(channel, "AA:own");
  seen = {"AA::", "AA::", "ver", "AA:own"};
  EXPECT_EQ(device.lines, seen);
}

}  // namespace
}  // namespace ostrel
