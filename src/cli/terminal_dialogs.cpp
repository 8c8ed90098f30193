#include "cli/terminal_dialogs.h"

#include "app/text.h"
#include "app/texts.h"

namespace ostrel {

void TerminalDialogs::Show(const Message& message) {
  last_ = message;
  if (options_.quiet) return;
  err_ << "ostrel: ";
  if (message.number != 0) err_ << message.number << ": ";
  err_ << Visible(message.text) << '\n';
}

bool TerminalDialogs::AskYesNo(const std::string& question) {
  if (options_.yes) return true;
  if (!options_.interactive) return false;
  err_ << Visible(question) << (messages_ != nullptr ? messages_->Text(text::kYesNo) : " ")
       << std::flush;
  std::string answer;
  std::getline(in_, answer);
  const std::string letters = messages_ != nullptr ? messages_->Text(text::kYesLetters) : "";
  return !answer.empty() && letters.find(answer.front()) != std::string::npos;
}

}  // namespace ostrel
