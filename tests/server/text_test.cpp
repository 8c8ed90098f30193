#include <gtest/gtest.h>

#include <QJsonDocument>

#include "server/json_rpc.h"
#include "server/line_text.h"
#include "server/request_reader.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

TEST(LineText, SaysWhomALineIsFor) {
  const struct {
    const char* line;
    bool addressed;
    const char* makesCurrent;
  } cases[] = {
      {"AA:ver.", true, ""}, {"b1:dirn_", true, ""},     {"all,ver.", true, ""},
      {"All r,x", true, ""}, {"B1::", true, "B1"},       {"b1:::", true, "B1"},
      {"AA:", true, ""},     {"B1::x", true, ""},        {"ver.", false, ""},
      {"", false, ""},       {":", false, ""},           {"all", false, ""},
      {"allx,1", false, ""}, {"regzeit=1:2", false, ""}, {",\"a:b\",!", false, ""},
      {" AA:x", false, ""},
  };
  for (const auto& c : cases) {
    const LineAddress address = AddressOf(c.line);
    EXPECT_EQ(address.addressed, c.addressed) << c.line;
    EXPECT_EQ(address.makesCurrent, c.makesCurrent) << c.line;
  }
}

TEST(LineText, MasksPasswordsAndShowsControlCharacters) {
  const std::pair<const char*, const char*> cases[] = {
      {"AA:ver.", "AA:ver."},
      {"AA:login 1 geheim", "AA:login ***"},
      {"AA:LOGIN 1 geheim", "AA:LOGIN ***"},
      {"passwort 1=x login", "passwort ***"},
      {"AA:PWLrel", "AA:PWLrel"},
      {"a\r\n\x1A\xE4", "a␍␊␚ä"},
  };
  for (const auto& [line, shown] : cases) EXPECT_EQ(ForLog(line), shown) << line;
}

TEST(JsonRpc, AcceptsRequestsAndSaysWhatIsWrongWithTheOthers) {
  const std::pair<const char*, int> cases[] = {
      // code 0: accepted
      {R"({"jsonrpc":"2.0","id":1,"method":"CSend","params":[1,"AA:x",true,-3]})", 0},
      {R"({"jsonrpc":"2.0","id":"a","method":"COpenLocked"})", 0},
      {R"({"jsonrpc":"2.0","method":"m"})", 0},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":[2147483647.0]})", 0},
      {"", rpc::kParseError},
      {R"({"jsonrpc":"2.0","id":1,"method":"m")", rpc::kParseError},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"\xFF\"}", rpc::kParseError},
      {R"([{"jsonrpc":"2.0","id":1,"method":"m"}])", rpc::kInvalidRequest},
      {R"({"jsonrpc":"1.0","id":1,"method":"m"})", rpc::kInvalidRequest},
      {R"({"jsonrpc":"2.0","id":1})", rpc::kInvalidRequest},
      {R"({"jsonrpc":"2.0","id":[1],"method":"m"})", rpc::kInvalidRequest},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":{"a":1}})", rpc::kInvalidParameters},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":[1.5]})", rpc::kInvalidParameters},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":[2147483648]})", rpc::kInvalidParameters},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":[null]})", rpc::kInvalidParameters},
      {R"({"jsonrpc":"2.0","id":1,"method":"m","params":["\ud800"]})", rpc::kInvalidParameters},
  };
  for (const auto& [line, code] : cases) {
    const auto parsed = rpc::Parse(line);
    const auto* refusal = std::get_if<rpc::Refusal>(&parsed);
    EXPECT_EQ(refusal == nullptr ? 0 : refusal->code, code) << line;
  }
  const auto parsed = rpc::Parse(cases[0].first);
  const auto& request = std::get<rpc::Request>(parsed);
  EXPECT_EQ(request.method, "CSend");
  EXPECT_EQ(request.arguments, (Values{1, std::string("AA:x"), true, -3}));
}

TEST(JsonRpc, KeepsEveryCharacterOnOneLine) {
  const auto onlyLine = [](const QByteArray& message) {
    EXPECT_EQ(message.indexOf('\n'), message.size() - 1);
    return QJsonDocument::fromJson(message);
  };
  std::string ascii;
  for (int code = 0; code < 0x80; ++code) ascii += static_cast<char>(code);
  for (const std::string& text : {"ä" + ascii, ascii, std::string("\uFEFFa\uFEFF\uFFFF😀")}) {
    const QJsonValue shown[] = {
        onlyLine(rpc::EncodeStatus({1, 5, 0, text, 0, {}}))["params"]["answer"],
        onlyLine(rpc::EncodeStatus({1, 5, 3, {}, -1, text}))["params"]["error"]["message"],
        onlyLine(rpc::EncodeRefusal({{}, -1, text}))["error"]["message"],
        onlyLine(rpc::EncodeResult(1, {text, 0, {}}))["result"],
    };
    for (const QJsonValue& value : shown) EXPECT_EQ(value.toString().toStdString(), text);
    const auto parsed = rpc::Parse(rpc::EncodeRequest(0, text, {text}));
    ASSERT_TRUE(std::holds_alternative<rpc::Request>(parsed)) << text;
    EXPECT_EQ(std::get<rpc::Request>(parsed).method, text);
    EXPECT_EQ(std::get<rpc::Request>(parsed).arguments, Values{text});
  }
}

const QByteArray kCall = R"({"jsonrpc":"2.0","method":"m"})";  // 30 bytes

/// What is read, a word each: the method, or the code of the refusal.
std::string Words(RequestReader& reader) {
  std::string words;
  while (const auto item = reader.Next()) {
    if (!words.empty()) words += ' ';
    const auto* refusal = std::get_if<rpc::Refusal>(&*item);
    words +=
        refusal != nullptr ? std::to_string(refusal->code) : std::get<rpc::Request>(*item).method;
  }
  return words;
}

TEST(RequestReader, ReadsTheSameHoweverTheBytesAreCut) {
  const struct {
    QByteArray bytes;
    const char* words;
  } cases[] = {
      {"", ""},
      {"\n \r\n\n", ""},
      {kCall, ""},
      {kCall + "\n", "m"},
      {kCall + "\r\n", "m"},
      {"\n" + kCall + "\n\n" + kCall + "\n" + kCall, "m m"},
      {"x\n" + kCall + "\n", "-32700 m"},
      {kCall + "  \n" + kCall + "\n", "m m"},        // as long as a line may be
      {kCall + "   \n" + kCall + "\n", "-32600 m"},  // and a byte more
      {QByteArray(100, ' ') + "\n" + kCall + "\n", "-32600 m"},
      {QByteArray(100, 'x'), "-32600"},
      {QByteArray(33, 'x') + "\n" + QByteArray(33, 'y') + "\n" + kCall + "\n", "-32600 -32600 m"},
  };
  for (const auto& c : cases) {
    for (qsizetype first = 0; first <= c.bytes.size(); ++first) {
      RequestReader reader(32);
      std::string words;
      for (const QByteArray& part : {c.bytes.left(first), c.bytes.mid(first)}) {
        reader.Add(part);
        const std::string more = Words(reader);
        words += (words.empty() || more.empty() ? "" : " ") + more;
      }
      EXPECT_EQ(words, c.words) << c.bytes.toStdString() << ", cut at " << first;
    }
  }
}

}  // namespace
}  // namespace ostrel
