// Feeds script files: what is read is written again, and what passes the check can be sent.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/text.h"
#include "base/utf8.h"
#include "pages/console/script.h"
#include "pages/console/script_file.h"
#include "require.h"
#include "server/line_text.h"

namespace ostrel {
namespace {

bool Takes(const std::string& line) {
  const auto bytes = ToLatin1(line);
  return bytes && SingleLine(*bytes) && bytes->find_first_of("\r\n") == std::string::npos;
}

void Reading(std::string_view bytes, std::string& text) {
  ScriptForm form;
  if (!DecodeScript(bytes, text, form)) return;
  OSTREL_REQUIRE(WithCrLf(text) == text);
  std::string again;
  ScriptForm formAgain = form;
  const std::string written = EncodeScript(text, formAgain);
  OSTREL_REQUIRE(formAgain.encoding == form.encoding);
  OSTREL_REQUIRE(DecodeScript(written, again, formAgain) && again == text);
  for (std::string_view left = text; !left.empty();) OSTREL_REQUIRE(PopCharacter(left));
}

void Checking(const std::string& text) {
  const ScriptCheck check = CheckScript(text);
  const ScriptLines extracted = ExtractCommands(text);
  int row = 0;
  bool sendable = true;
  for (const ScriptLine& line : extracted.lines) {
    OSTREL_REQUIRE(line.row > row && ClassifyLine(line.text) != LineClass::kIgnored);
    row = line.row;
    const bool fits = CharCount(line.text) < kTooLongLine && Takes(line.text);
    sendable = sendable && fits;
    const bool found = std::any_of(check.faults.begin(), check.faults.end(),
                                   [&](const auto& fault) { return fault.row == line.row; });
    OSTREL_REQUIRE(check.tooManyLines || found == !fits);
  }
  if (!check.tooManyLines) OSTREL_REQUIRE(check.Ok() == sendable);
  for (const ScriptCheck::Fault& fault : check.faults) {
    OSTREL_REQUIRE((fault.length == 0) != (fault.character == 0));
    OSTREL_REQUIRE(fault.character == 0 || !CharacterShown(fault.character).empty());
  }
  const ScriptLines again = ExtractCommands(extracted.Text());
  OSTREL_REQUIRE(again.Text() == extracted.Text());
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::string text;
  ostrel::Reading(bytes, text);
  ostrel::Checking(text);
  ostrel::Checking(ostrel::WithCrLf(bytes));  // as it may be pasted
  return 0;
}
