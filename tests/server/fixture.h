#pragma once

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kit/kit.h"
#include "kit/scripted_device.h"
#include "server/rpc_server.h"
#include "wire/connections.h"

namespace ostrel {

/// A client program's end of the local socket.
class Client {
 public:
  explicit Client(const QString& path) {
    QObject::connect(&socket, &QLocalSocket::readyRead, [this] { Read(); });
    socket.connectToServer(path);
    EXPECT_TRUE(WaitUntil([this] { return socket.state() == QLocalSocket::ConnectedState; }));
  }

  /// Sends a request and waits for its response: what it holds as result, or else as error.
  QJsonValue Call(const QString& method, const QJsonArray& parameters = {}) {
    const QJsonObject request{
        {"jsonrpc", "2.0"}, {"id", ++lastId_}, {"method", method}, {"params", parameters}};
    socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    QJsonObject response;
    EXPECT_TRUE(WaitUntil([&] { return Take(responses, response); })) << method.toStdString();
    EXPECT_EQ(response["id"].toInt(), lastId_);
    return response.contains("error") ? response["error"] : response["result"];
  }
  /// The code (10011..) of the error that a call ends with; 0 for none.
  int Code(const QString& method, const QJsonArray& parameters = {}) {
    return CodeOf(Call(method, parameters).toObject());
  }
  /// The next notice's parameters.
  QJsonObject Notice() {
    QJsonObject notice;
    EXPECT_TRUE(WaitUntil([&] { return Take(notices, notice); })) << "no notice";
    return notice["params"].toObject();
  }
  /// Sends a line; returns its answer, or the error's code as a text.
  std::string Exchange(int channel, const QString& line) {
    Call("CSend", {channel, line});
    const QJsonObject notice = Notice();
    if (notice.contains("error")) return std::to_string(CodeOf(notice["error"].toObject()));
    return notice["answer"].toString().toStdString();
  }
  static int CodeOf(const QJsonObject& error) {
    const int code = error["code"].toInt();
    return code < kObjectErrorBase / 2 ? code - kObjectErrorBase : code;
  }

  QLocalSocket socket;
  std::vector<QJsonObject> responses, notices;

 private:
  static bool Take(std::vector<QJsonObject>& from, QJsonObject& to) {
    if (from.empty()) return false;
    to = from.front();
    from.erase(from.begin());
    return true;
  }
  void Read() {
    while (socket.canReadLine()) {
      const QJsonObject message = QJsonDocument::fromJson(socket.readLine()).object();
      (message.contains("id") ? responses : notices).push_back(message);
    }
  }

  int lastId_ = 0;
};

/// A server with the connection "Tcp" to a scripted device.
class ServerTest : public testing::Test {
 protected:
  ServerTest() {
    AddTcp("Tcp", device.Port());
    QObject::connect(&server, &RpcServer::Ended, [this] { ended = true; });
    path = folder.path() + "/run/server.sock";
    EXPECT_EQ(server.Listen(path).kind, SocketClaim::kFree);
  }

  void AddTcp(const std::string& name, int port) {
    EXPECT_FALSE(Connections(settings).Add({name, "tcp", "127.0.0.1", port, {}}));
  }

  QTemporaryDir folder;
  QString path;
  kit::MemorySettings settings;
  ScriptedDevice device;
  bool ended = false;
  CommServer comm{settings};
  RpcServer server{comm, 60000};
};

}  // namespace ostrel
