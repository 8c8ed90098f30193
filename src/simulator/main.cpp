// ostrel-simulator: the simulated devices behind a TCP port.

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <cstdint>
#include <iostream>
#include <string>

#include "platform/end_signals.h"
#include "simulator/bus.h"
#include "simulator/device_line.h"

namespace {

using ostrel::simulator::Bus;
using ostrel::simulator::DeviceLine;

constexpr qint64 kReadBuffer = 64 * 1024;
// A host that does not fetch its replies gets no further ones.
constexpr qint64 kMaxUnsent = 1024 * 1024;

/// One connected host with a line of its own to the bus; it ends with its socket.
class Host : public QObject {
 public:
  Host(QTcpSocket* socket, Bus& bus) : QObject(socket), socket_(*socket), line_(bus) {
    socket_.setReadBufferSize(kReadBuffer);
    connect(socket, &QTcpSocket::readyRead, this, &Host::Serve);
    connect(socket, &QTcpSocket::bytesWritten, this, &Host::Serve);
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  }

 private:
  /// Answers one line at a time, so that other hosts and signals get their turn in between.
  void Serve() {
    char byte = 0;
    while (!turnQueued_ && socket_.isOpen() && socket_.bytesToWrite() < kMaxUnsent &&
           socket_.getChar(&byte)) {
      const std::string reply = line_.Feed({&byte, 1});
      if (reply.empty()) continue;
      socket_.write(reply.data(), static_cast<qint64>(reply.size()));
      turnQueued_ = true;
      QTimer::singleShot(0, this, [this] {
        turnQueued_ = false;
        Serve();
      });
    }
  }

  QTcpSocket& socket_;
  DeviceLine line_;
  bool turnQueued_ = false;
};

struct Options {
  std::string host = "127.0.0.1";
  int port = 0;
  std::uint32_t seed = 1;
};

/// The exit status with which the program ends at once, or -1 to go on.
int ParseOptions(int argc, char** argv, Options& options) {
  CLI::App arguments("A bus of simulated voltage-regulator relays.", "ostrel-simulator");
  const auto isAddress = [](const std::string& text) {
    return QHostAddress().setAddress(QString::fromStdString(text)) ? "" : "not an address: " + text;
  };
  arguments.add_option("--tcp", options.port, "TCP port to listen on; 0 takes a free one")
      ->required()
      ->check(CLI::Range(0, 65535));
  arguments.add_option("--host", options.host, "address to listen on")
      ->check(isAddress)
      ->capture_default_str();
  arguments.add_option("--seed", options.seed, "the same seed gives the same history")
      ->capture_default_str();
  arguments.set_version_flag("--version", "ostrel-simulator " OSTREL_VERSION);
  try {
    arguments.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return arguments.exit(error) == 0 ? 0 : 2;
  }
  return -1;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const int status = ParseOptions(argc, argv, options); status >= 0) return status;
  QCoreApplication application(argc, argv);
  const ostrel::EndSignals asked(&QCoreApplication::quit);

  Bus bus(options.seed);
  QTcpServer server;
  QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
    while (QTcpSocket* socket = server.nextPendingConnection()) new Host(socket, bus);
  });
  const QHostAddress address(QString::fromStdString(options.host));
  if (!server.listen(address, static_cast<quint16>(options.port))) {
    std::cerr << "ostrel-simulator: cannot listen on " << options.host << ":" << options.port
              << ": " << server.errorString().toStdString() << std::endl;
    return 1;
  }
  std::cout << "listening on " << options.host << ":" << server.serverPort() << std::endl;
  return QCoreApplication::exec();
}
