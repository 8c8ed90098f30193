#include "server/json_rpc.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringDecoder>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace ostrel::rpc {
namespace {

// What a request leaves behind while it is answered stays small.
constexpr qsizetype kMaxArguments = 8;
constexpr qsizetype kMaxId = 128;

// Qt takes a byte order mark at the beginning of a text for no part of it, in both directions.

QString FromUtf8(std::string_view text) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  return decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

QByteArray Compact(const QJsonDocument& document) {
  return document.toJson(QJsonDocument::Compact).replace("\"\xEF\xBB\xBF", "\"\\ufeff");
}

QByteArray Encode(QJsonObject message) {
  message.insert(QStringLiteral("jsonrpc"), QStringLiteral("2.0"));
  return Compact(QJsonDocument(message)) + '\n';
}

/// A text as JSON. Nearly every text needs no escaping, and then none of Qt's objects either.
QByteArray TextAsJson(std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
  });
  if (plain) return '"' + QByteArray(text.data(), static_cast<qsizetype>(text.size())) + '"';
  const QJsonArray list{FromUtf8(text)};
  return Compact(QJsonDocument(list)).chopped(1).mid(1);
}

QByteArray AsJson(const Value& value) {
  if (const bool* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const int* number = std::get_if<int>(&value)) return QByteArray::number(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return TextAsJson(*text);
  return "null";
}

QJsonObject ErrorOf(int code, const std::string& message) {
  return {{QStringLiteral("code"), code}, {QStringLiteral("message"), FromUtf8(message)}};
}

QByteArray EncodeNotice(const QString& method, const QJsonObject& parameters) {
  return Encode({{QStringLiteral("method"), method}, {QStringLiteral("params"), parameters}});
}

QJsonValue ToJson(const Value& value) {
  if (const bool* flag = std::get_if<bool>(&value)) return *flag;
  if (const int* number = std::get_if<int>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return FromUtf8(*text);
  return {};
}

std::optional<Value> FromJson(const QJsonValue& value) {
  if (value.isBool()) return value.toBool();
  if (value.isString()) {
    QString text = value.toString();
    // Half a surrogate pair would turn into another character on its way.
    if (!text.isValidUtf16()) return std::nullopt;
    std::string utf8 = text.toStdString();
    text.fill(QChar());  // there may be a password in it
    return utf8;
  }
  if (!value.isDouble()) return std::nullopt;
  const double number = value.toDouble();
  constexpr double kLeast = std::numeric_limits<int>::min();
  constexpr double kMost = std::numeric_limits<int>::max();
  if (number < kLeast || number > kMost || std::trunc(number) != number) return std::nullopt;
  return static_cast<int>(number);
}

std::optional<Values> ArgumentsOf(const QJsonObject& request) {
  const QJsonValue parameters = request.value(QStringLiteral("params"));
  if (parameters.isUndefined()) return Values();
  if (!parameters.isArray()) return std::nullopt;
  if (parameters.toArray().size() > kMaxArguments) return std::nullopt;
  Values arguments;
  for (const QJsonValue parameter : parameters.toArray()) {
    auto value = FromJson(parameter);
    if (!value) return std::nullopt;
    arguments.push_back(*std::move(value));
  }
  return arguments;
}

}  // namespace

std::variant<Request, Refusal> Parse(const QByteArray& line) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(line, &error);
  if (error.error != QJsonParseError::NoError) {
    return Refusal{{}, kParseError, error.errorString().toStdString()};
  }
  if (!document.isObject()) return Refusal{{}, kInvalidRequest, "a request is one object"};
  const QJsonObject object = document.object();
  const QJsonValue id = object.value(QStringLiteral("id"));
  if (!id.isUndefined() && !id.isString() && !id.isDouble() && !id.isNull()) {
    return Refusal{{}, kInvalidRequest, "an id is a number, a text or null"};
  }
  if (id.toString().size() > kMaxId) return Refusal{{}, kInvalidRequest, "the id is too long"};
  const QJsonValue shownId = id.isUndefined() ? QJsonValue() : id;
  const QJsonValue method = object.value(QStringLiteral("method"));
  if (object.value(QStringLiteral("jsonrpc")) != QStringLiteral("2.0") || !method.isString()) {
    return Refusal{shownId, kInvalidRequest, "jsonrpc \"2.0\" or a method is missing"};
  }
  auto arguments = ArgumentsOf(object);
  if (!arguments) {
    return Refusal{shownId, kInvalidParameters,
                   "params is an array of at most 8 whole numbers, Booleans and texts"};
  }
  return Request{shownId, id.isUndefined(), method.toString().toStdString(), *std::move(arguments)};
}

QByteArray EncodeResult(const QJsonValue& id, const AutomationResult& result) {
  if (!result.Ok()) return EncodeRefusal({id, result.error, result.description});
  return Encode({{QStringLiteral("id"), id}, {QStringLiteral("result"), ToJson(result.value)}});
}

QByteArray EncodeObject(const QJsonValue& id, const QJsonObject& result) {
  return Encode({{QStringLiteral("id"), id}, {QStringLiteral("result"), result}});
}

QByteArray EncodeRefusal(const Refusal& refusal) {
  return Encode({{QStringLiteral("id"), refusal.id},
                 {QStringLiteral("error"), ErrorOf(refusal.code, refusal.message)}});
}

QByteArray EncodeRequest(int id, std::string_view method, const Values& arguments) {
  QByteArray line = "{\"jsonrpc\":\"2.0\",\"method\":" + TextAsJson(method) + ",\"params\":[";
  for (const Value& argument : arguments) line += AsJson(argument) + ',';
  if (!arguments.empty()) line.chop(1);
  line += ']';
  if (id != 0) line += ",\"id\":" + QByteArray::number(id);
  return line + "}\n";
}

QByteArray EncodeStatus(const StatusNotice& notice) {
  QByteArray line = "{\"jsonrpc\":\"2.0\",\"method\":\"Status\",\"params\":{\"channel\":" +
                    QByteArray::number(notice.channel) +
                    ",\"exchange\":" + QByteArray::number(notice.exchange) +
                    ",\"status\":" + QByteArray::number(notice.status);
  if (notice.error != 0) {
    line += ",\"error\":{\"code\":" + QByteArray::number(notice.error) +
            ",\"message\":" + TextAsJson(notice.description) + '}';
  } else if (notice.answer) {
    line += ",\"answer\":" + TextAsJson(*notice.answer);
  }
  return line + "}}\n";
}

QByteArray EncodeOnline(int channel, bool enabled) {
  return EncodeNotice(QStringLiteral("Online"),
                      {{QStringLiteral("channel"), channel}, {QStringLiteral("enabled"), enabled}});
}

}  // namespace ostrel::rpc
