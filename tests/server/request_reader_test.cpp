#include "server/request_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrel {
namespace {

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
