#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "fixture.h"

namespace ostrel {
namespace {

int ModeOf(const QString& path) {
  struct stat info {};
  return stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_mode & 0777 : -1;
}

struct Claim : testing::Test {
  SocketClaim::Kind Listen(int idleMs = 60000) {
    server = std::make_unique<RpcServer>(comm, idleMs);
    return server->Listen(path).kind;
  }

  QTemporaryDir folder;
  QString path = folder.path() + "/ostrel/server.sock";
  kit::MemorySettings settings;
  CommServer comm{settings};
  std::unique_ptr<RpcServer> server;
};

TEST_F(Claim, OneServerListensAndOnlyItsUserCanConnect) {
  EXPECT_EQ(Listen(), SocketClaim::kFree);
  EXPECT_EQ(ModeOf(path), 0600);
  EXPECT_EQ(ModeOf(folder.path() + "/ostrel"), 0700);
  RpcServer second(comm, 60000);
  EXPECT_EQ(second.Listen(path).kind, SocketClaim::kAlreadyRunning);
  EXPECT_EQ(Client(path).Call("COpenLocked"), false) << "the first one still listens";
  server.reset();
  EXPECT_FALSE(QFile::exists(path));
  EXPECT_EQ(second.Listen(path).kind, SocketClaim::kFree);
}

TEST_F(Claim, AnotherUserIsTurnedAwayEvenWhereTheModesLetHimIn) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be another user for a while";
  EXPECT_EQ(Listen(), SocketClaim::kFree);
  QStringList log;
  QObject::connect(server.get(), &RpcServer::Noted, [&log](const QString& text) { log += text; });
  for (const QString& open : {folder.path(), folder.path() + "/ostrel", path}) {
    ASSERT_EQ(chmod(QFile::encodeName(open).constData(), 0777), 0);
  }
  QLocalSocket stranger;
  bool answered = false;
  QObject::connect(&stranger, &QLocalSocket::readyRead, [&answered] { answered = true; });
  ASSERT_EQ(seteuid(65534), 0);
  stranger.connectToServer(path);
  ASSERT_EQ(seteuid(0), 0);
  ASSERT_EQ(stranger.state(), QLocalSocket::ConnectedState);
  stranger.write("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"COpenLocked\"}\n");
  EXPECT_TRUE(WaitUntil([&] { return stranger.state() == QLocalSocket::UnconnectedState; }));
  EXPECT_FALSE(answered);
  EXPECT_EQ(log, QStringList{"a client of another user (65534) is turned away"});
  EXPECT_EQ(Client(path).Call("COpenLocked"), false);
}

TEST_F(Claim, OnlyAStaleSocketIsRemoved) {
  QDir().mkdir(folder.path() + "/ostrel");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
  file.close();
  EXPECT_EQ(Listen(), SocketClaim::kRefused) << "an ordinary file";
  EXPECT_EQ(QFileInfo(path).size(), 8);
  file.remove();
  QLocalServer foreign;
  ASSERT_TRUE(foreign.listen(path));
  EXPECT_EQ(Listen(), SocketClaim::kRefused) << "somebody listens there";
  ASSERT_TRUE(QFile::rename(path, path + "2") && QFile::link(path + "2", path));
  EXPECT_EQ(Listen(), SocketClaim::kRefused) << "a link";
  foreign.close();
}

TEST_F(Claim, AServerWithoutClientsEnds) {
  EXPECT_EQ(Listen(20), SocketClaim::kFree);
  int ends = 0;
  QObject::connect(server.get(), &RpcServer::Ended, [&ends] { ++ends; });
  EXPECT_TRUE(WaitUntil([&ends] { return ends == 1; })) << "no client came";
  {
    Client client(path);
    client.Call("COpenLocked");
  }
  EXPECT_TRUE(WaitUntil([&ends] { return ends == 2; })) << "the client has gone";
}

TEST(SocketPlace, WithoutASessionItIsQuietlyAFolderOfTheUsers) {
  static int warnings = 0;
  const QByteArray session = qgetenv("XDG_RUNTIME_DIR");
  qunsetenv("XDG_RUNTIME_DIR");
  const auto before = qInstallMessageHandler(
      [](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
  const QString path = SocketPath();
  qInstallMessageHandler(before);
  qputenv("XDG_RUNTIME_DIR", session);
  const QString user = QString::number(getuid());
  EXPECT_TRUE(path == "/run/user/" + user + "/ostrel/server.sock" ||
              path == QDir::tempPath() + "/ostrel-" + user + "/server.sock")
      << path.toStdString();
  EXPECT_EQ(warnings, 0);
}

}  // namespace
}  // namespace ostrel
