#pragma once

#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <utility>

#include "base/dialogs.h"
#include "base/messages.h"

namespace ostrel {

/// Messages and questions in a terminal. The last message is kept, for those who report it in
/// another form.
class TerminalDialogs : public Dialogs {
 public:
  struct Options {
    bool yes = false;                     // every question is answered Yes
    bool interactive = false;             // somebody can be asked
    std::function<void(bool)> echo = {};  // whether the terminal shows what is typed
  };
  TerminalDialogs(std::istream& in, std::ostream& err, Options options)
      : in_(in), err_(err), options_(std::move(options)) {}

  void Show(const Message& message) override;
  bool AskYesNo(const std::string& question) override;
  /// The next line of the input, also where nobody sits at it; its end cancels.
  std::optional<std::string> AskText(const InputRequest& request) override;
  std::optional<std::string> ChooseFile(FileDialogKind, const std::string&, const std::string&,
                                        const std::string&) override {
    return std::nullopt;
  }
  void SetBusy(bool) override {}
  void ToClipboard(const std::string&, const std::string&) override {}

  const Message& LastMessage() const { return last_; }
  /// The texts of the questions in the language of the run.
  void SetMessages(const Messages& messages) { messages_ = &messages; }

 private:
  std::istream& in_;
  std::ostream& err_;
  Options options_;
  Message last_;
  const Messages* messages_ = nullptr;
};

}  // namespace ostrel
