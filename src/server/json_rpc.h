#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <string>
#include <string_view>
#include <variant>

#include "server/channel.h"
#include "wire/automation.h"

namespace ostrel {

/// JSON-RPC 2.0, one compact object a line. What is encoded here ends with its line feed.
namespace rpc {

inline constexpr int kParseError = -32700;
inline constexpr int kInvalidRequest = -32600;
/// The longest request line, in bytes.
inline constexpr qsizetype kMaxRequest = 1024 * 1024;

inline constexpr int kInvalidParameters = -32602;

struct Request {
  QJsonValue id;
  bool notification = false;  // nobody awaits an answer
  std::string method;
  Values arguments;
};

/// Why a line is no request. The id is null when it could not be read.
struct Refusal {
  QJsonValue id;
  int code = 0;
  std::string message;
};

/// Reads one line. Parameters are positional: whole numbers, Booleans and texts.
std::variant<Request, Refusal> Parse(const QByteArray& line);

/// A request; with id 0 a notification.
QByteArray EncodeRequest(int id, std::string_view method, const Values& arguments);
QByteArray EncodeResult(const QJsonValue& id, const AutomationResult& result);
QByteArray EncodeObject(const QJsonValue& id, const QJsonObject& result);
QByteArray EncodeRefusal(const Refusal& refusal);
QByteArray EncodeStatus(const StatusNotice& notice);
QByteArray EncodeOnline(int channel, bool enabled);

}  // namespace rpc

}  // namespace ostrel
