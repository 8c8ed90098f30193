// Feeds what a client sends. In the input '|' is a cut between two portions, all else is itself.

#include "server/request_reader.h"

#include <QJsonDocument>
#include <algorithm>
#include <string_view>
#include <vector>

#include "require.h"

namespace ostrel {
namespace {

constexpr qsizetype kLongest = 200;  // short, so that inputs come to it

using Items = std::vector<RequestReader::Item>;

QJsonObject OnlyLine(const QByteArray& encoded) {
  OSTREL_REQUIRE(encoded.endsWith('\n') && encoded.count('\n') == 1);
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(encoded, &error);
  OSTREL_REQUIRE(error.error == QJsonParseError::NoError && document.isObject());
  return document.object();
}

void Check(const rpc::Refusal& refusal) {
  const QJsonObject reply = OnlyLine(rpc::EncodeRefusal(refusal));
  OSTREL_REQUIRE(reply["error"]["code"] == refusal.code && reply["id"] == refusal.id);
}

/// A request that was read is the same when it is written and read again.
void Check(const rpc::Request& request) {
  const QByteArray line = rpc::EncodeRequest(1, request.method, request.arguments);
  OnlyLine(line);
  const auto parsed = rpc::Parse(line);
  const auto* again = std::get_if<rpc::Request>(&parsed);
  OSTREL_REQUIRE(again != nullptr && !again->notification && again->id == 1);
  OSTREL_REQUIRE(again->method == request.method && again->arguments == request.arguments);
  OSTREL_REQUIRE(OnlyLine(rpc::EncodeResult(request.id, {}))["id"] == request.id);
}

void Take(RequestReader& reader, Items& items) {
  while (auto item = reader.Next()) items.push_back(*std::move(item));
}

/// All that is read when the bytes are cut where `cutAfter` says.
template <typename CutAfter>
Items Read(const QByteArray& bytes, CutAfter cutAfter) {
  RequestReader reader(kLongest);
  Items items;
  qsizetype from = 0;
  for (qsizetype end = 1; end <= bytes.size(); ++end) {
    if (end < bytes.size() && !cutAfter(end)) continue;
    reader.Add(bytes.mid(from, end - from));
    Take(reader, items);
    from = end;
  }
  return items;
}

bool Same(const RequestReader::Item& a, const RequestReader::Item& b) {
  if (const auto* request = std::get_if<rpc::Request>(&a)) {
    const auto* other = std::get_if<rpc::Request>(&b);
    return other != nullptr && request->id == other->id && request->method == other->method &&
           request->notification == other->notification && request->arguments == other->arguments;
  }
  const auto& refusal = std::get<rpc::Refusal>(a);
  const auto* other = std::get_if<rpc::Refusal>(&b);
  return other != nullptr && refusal.id == other->id && refusal.code == other->code &&
         refusal.message == other->message;
}

bool Same(const Items& a, const Items& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const auto& one, const auto& other) { return Same(one, other); });
}

void Run(std::string_view input) {
  QByteArray bytes;
  std::vector<qsizetype> cuts;
  for (const char c : input) {
    if (c == '|') {
      cuts.push_back(bytes.size());
    } else {
      bytes += c;
    }
  }
  const Items items = Read(bytes, [](qsizetype) { return false; });
  const auto isCut = [&cuts](qsizetype at) {
    return std::binary_search(cuts.begin(), cuts.end(), at);
  };
  OSTREL_REQUIRE(Same(items, Read(bytes, isCut)));
  OSTREL_REQUIRE(Same(items, Read(bytes, [](qsizetype) { return true; })));
  for (const RequestReader::Item& item : items) std::visit([](const auto& it) { Check(it); }, item);
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  ostrel::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
