// Many clients at once, and many that go without a word, on the real server.

#include <dirent.h>

#include <QFile>
#include <set>

#include "end_to_end/programs.h"
#include "fixture.h"

namespace ostrel {
namespace {

constexpr int kClients = 64;
constexpr int kExchanges = 200;  // of each
constexpr int kDeaths = 1000;
constexpr int kWarmUp = 250;
// What a thousand clients may leave behind. A leak of half a KiB for each shows.
constexpr long kMaxGrowthKib = 512;

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

  /// Of the server, in /proc.
  QString About(const char* what) const {
    return QStringLiteral("/proc/%1/%2").arg(server->processId()).arg(QLatin1String(what));
  }
  int OpenFiles() const {
    int count = 0;
    DIR* folder = opendir(QFile::encodeName(About("fd")).constData());
    while (folder != nullptr && readdir(folder) != nullptr) ++count;
    if (folder != nullptr) closedir(folder);
    return count;
  }
  long MemoryKib() const {
    QFile status(About("status"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmRSS:") + 6).trimmed().split(' ').first().toLong();
  }

  /// A client that has come so far is gone before anybody answers it.
  void Die(int number) const {
    Client client(path);
    switch (number % 5) {
      case 0:  // half a request
        client.socket.write("{\"jsonrpc\":\"2.0\",\"id\":1,\"met");
        break;
      case 1:  // while its channel is opened
        client.socket.write(rpc::EncodeRequest(1, "COpen", {std::string("Bus"), 2}));
        break;
      case 2:  // in the middle of an exchange
      case 3:  // with the online channel
      {
        const int channel = client.Call("COpen", {"Bus", number % 5}).toInt();
        ASSERT_GT(channel, 0) << "client " << number;
        client.socket.write(rpc::EncodeRequest(0, "CSend", {channel, std::string("AA:lost")}));
        break;
      }
      default:  // without a request
        break;
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

struct Worker {
  explicit Worker(const QString& path) : client(path) {}

  std::string Line() const { return "AA:" + std::to_string(channel) + "." + std::to_string(done); }
  void Send() { client.socket.write(rpc::EncodeRequest(0, "CSend", {channel, Line()})); }
  /// Takes the answers that are there, and sends the next line after each.
  int Advance() {
    int answers = 0;
    for (; !client.notices.empty(); ++answers) {
      const QJsonObject notice = client.Notice();
      EXPECT_EQ(notice["answer"].toString().toStdString(), "re " + Line());
      EXPECT_EQ(notice["channel"], channel);
      EXPECT_EQ(notice["exchange"], ++done);
      if (done < kExchanges) Send();
    }
    return answers;
  }

  Client client;
  int channel = 0;
  int done = 0;
};

TEST_F(Load, EachOfManyClientsGetsTheAnswersToItsOwnLines) {
  std::vector<std::unique_ptr<Worker>> workers;
  for (int i = 0; i < kClients; ++i) {
    workers.push_back(std::make_unique<Worker>(path));
    workers.back()->channel = workers.back()->client.Call("COpen", {"Bus", 2}).toInt();
  }
  for (const auto& worker : workers) worker->Send();
  int answers = 0;
  const auto advance = [&] {
    const int before = answers;
    for (const auto& worker : workers) answers += worker->Advance();
    return answers > before;
  };
  while (answers < kClients * kExchanges) ASSERT_TRUE(WaitUntil(advance)) << answers;
  EXPECT_EQ(std::ssize(device.lines), answers);
  EXPECT_EQ(std::ssize(std::set(device.lines.begin(), device.lines.end())), answers);
}

TEST_F(Load, ClientsThatDieLeaveNothingBehind) {
  Client watch(path);
  watch.Call("COpenLocked");  // it has been let in
  const int filesBefore = OpenFiles();
  DieAndSettle(kWarmUp, watch);
  const long memoryBefore = MemoryKib();
  DieAndSettle(kDeaths, watch);
  EXPECT_TRUE(WaitUntil([&] { return OpenFiles() == filesBefore; }))
      << OpenFiles() << " for " << filesBefore;
  EXPECT_LE(MemoryKib() - memoryBefore, kMaxGrowthKib) << memoryBefore;
  const int channel = watch.Call("COpen", {"Bus", 2}).toInt();
  EXPECT_EQ(watch.Exchange(channel, "AA:last"), "re AA:last");
}

class Death : public ServerTest {};

TEST_F(Death, GivesTheOnlineChannelToWhoeverComesNext) {
  Client other(path), next(path);
  const int channel = other.Call("COpen", {"Tcp", 2}).toInt();
  EXPECT_EQ(other.Exchange(channel, "AA:before"), "re AA:before");
  {
    Client owner(path);
    const int online = owner.Call("COpen", {"Tcp", 3}).toInt();
    owner.Call("CSend", {online, "lost\r"});
    EXPECT_EQ(next.Code("COpen", {"Tcp", 3}), 10018);
    owner.socket.abort();
  }
  EXPECT_EQ(other.Notice()["enabled"], true);
  EXPECT_EQ(other.Notice()["enabled"], false);
  EXPECT_EQ(next.Code("COpen", {"Tcp", 3}), 0);
  EXPECT_EQ(other.Notice()["enabled"], true);
  next.socket.abort();
  EXPECT_EQ(other.Notice()["enabled"], false);
  EXPECT_EQ(other.Exchange(channel, "AA:own"), "re AA:own");
}

}  // namespace
}  // namespace ostrel
