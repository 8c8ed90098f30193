#include "terminal/terminal_dialogs.h"

#include "base/text.h"
#include "base/texts.h"

namespace ostrel {

void TerminalDialogs::Show(const Message& message) {
  last_ = message;
  err_ << "ostrel: ";
  const std::string number = std::to_string(message.number);
  // Some texts name their number themselves.
  if (message.number != 0 && message.text.find(number) == std::string::npos) err_ << number << ": ";
  err_ << Visible(message.text) << '\n';
}

bool TerminalDialogs::AskYesNo(const std::string& question) {
  if (options_.yes) return true;
  if (!options_.interactive) return false;
  err_ << Visible(question) << (messages_ != nullptr ? messages_->Caption(text::kYesNo) : " ")
       << std::flush;
  std::string answer;
  std::getline(in_, answer);
  const std::string letters = messages_ != nullptr ? messages_->Caption(text::kYesLetters) : "";
  return !answer.empty() && letters.find(answer.front()) != std::string::npos;
}

std::optional<std::string> TerminalDialogs::AskText(const InputRequest& request) {
  const bool hidden = request.password && options_.interactive && options_.echo;
  if (options_.interactive) err_ << Visible(request.prompt) << ' ' << std::flush;
  if (hidden) options_.echo(false);
  std::string line;
  const bool read = static_cast<bool>(std::getline(in_, line));
  if (hidden) {
    options_.echo(true);
    err_ << '\n';
  }
  if (line.ends_with('\r')) line.pop_back();
  return read ? std::optional(line) : std::nullopt;
}

}  // namespace ostrel
