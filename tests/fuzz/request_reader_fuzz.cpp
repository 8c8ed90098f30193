// Feeds what a client sends. In the input '|' is a cut between two portions, all else is itself.

#include "server/request_reader.h"

#include <QJsonDocument>
#include <QList>
#include <string_view>

#include "require.h"

namespace ostrel {
namespace {

constexpr qsizetype kLongest = 200;  // short, so that inputs come to it

QJsonObject OnlyLine(const QByteArray& encoded) {
  OSTREL_REQUIRE(encoded.endsWith('\n') && encoded.count('\n') == 1);
  const QJsonDocument document = QJsonDocument::fromJson(encoded);
  OSTREL_REQUIRE(document.isObject());
  return document.object();
}

QByteArray Written(const rpc::Refusal& refusal) {
  const QByteArray line = rpc::EncodeRefusal(refusal);
  const QJsonObject reply = OnlyLine(line);
  OSTREL_REQUIRE(reply["error"]["code"] == refusal.code && reply["id"] == refusal.id);
  return line;
}

/// A request that was read is the same when it is written and read again.
QByteArray Written(const rpc::Request& request) {
  const QByteArray line = rpc::EncodeRequest(1, request.method, request.arguments);
  OnlyLine(line);
  const auto parsed = rpc::Parse(line);
  const auto* again = std::get_if<rpc::Request>(&parsed);
  OSTREL_REQUIRE(again != nullptr && !again->notification && again->id == 1);
  OSTREL_REQUIRE(again->method == request.method && again->arguments == request.arguments);
  const QByteArray reply = rpc::EncodeResult(request.id, {});
  OSTREL_REQUIRE(OnlyLine(reply)["id"] == request.id);
  return (request.notification ? "notification " : "") + line + reply;
}

/// All that is read of these portions, written.
QByteArray Read(const QList<QByteArray>& portions) {
  RequestReader reader(kLongest);
  QByteArray all;
  for (const QByteArray& portion : portions) {
    reader.Add(portion);
    while (const auto item = reader.Next()) {
      all += std::visit([](const auto& it) { return Written(it); }, *item);
    }
  }
  return all;
}

void Run(const QByteArray& input) {
  const QList<QByteArray> portions = input.split('|');
  const QByteArray bytes = portions.join();
  QList<QByteArray> single;
  for (const char byte : bytes) single.append(QByteArray(1, byte));
  const QByteArray atOnce = Read({bytes});
  OSTREL_REQUIRE(Read(portions) == atOnce);
  OSTREL_REQUIRE(Read(single) == atOnce);
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  ostrel::Run(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
  return 0;
}
