#include "link/connection_test.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "link/link.h"
#include "wire/answers.h"
#include "wire/codes.h"
#include "wire/connections.h"

namespace ostrel {

namespace {

struct Help {
  int code;
  int textId;
};

constexpr Help kHelps[] = {
    {Code::kTimeout, text::kHelpSilent},          {Code::kPortFailure, text::kHelpPermission},
    {Code::kReceiveError, text::kHelpDisturbed},  {Code::kTooBig, text::kHelpTooBig},
    {Code::kOnlineTaken, text::kHelpOnline},      {Code::kOnlineActive, text::kHelpOnline},
    {Code::kPortInUse, text::kHelpAdapter},       {Code::kNoSuchConnection, text::kHelpName},
    {Code::kPortTaken, text::kHelpPortShared},    {Code::kServerGone, text::kHelpServer},
    {Code::kCannotConnect, text::kHelpHost},      {Code::kFaultyConnection, text::kHelpData},
    {Code::kServerNotStarted, text::kHelpServer},
};

TestStep StepOf(LinkState state) {
  if (state == LinkState::kNoServer) return TestStep::kServer;
  return state == LinkState::kServer ? TestStep::kOpen : TestStep::kAnswer;
}

int FirstLineId(TestStep step) {
  switch (step) {
    case TestStep::kServer:
      return text::kTestNoServer;
    case TestStep::kOpen:
      return text::kTestNotOpen;
    case TestStep::kAnswer:
      return text::kTestNoAnswer;
    case TestStep::kDone:
      break;
  }
  return text::kTestPassed;
}

std::string Exchanged(const std::string& answer, const Messages& messages) {
  const std::string shown = answer.empty() ? messages.Text(text::kEmptyAnswer) : Visible(answer);
  const std::string note =
      IsErrorAnswer(answer) ? "\n" + messages.Text(text::kErrorAnswer) : std::string();
  return std::string("\n") + ConnectionTest::kLine + " → " + shown + note;
}

}  // namespace

ConnectionTest::ConnectionTest(AutomationFactory& factory, SettingsStore& settings, Clock& clock,
                               std::filesystem::path programFolder)
    : factory_(factory),
      settings_(settings),
      clock_(clock),
      programFolder_(std::move(programFolder)) {}

ConnectionTestResult ConnectionTest::Run(const std::string& name) {
  const Connections connections(settings_);
  ConnectionTestResult result;
  result.connection = name.empty() ? connections.Current() : name;
  if (running_ != nullptr) {
    result.error.code = text::kExchangeUnderWay;
    return result;
  }

  Link link(factory_, settings_, clock_, programFolder_);
  link.LoadSettings();
  link.OfferChooser(false);
  running_ = &link;
  result.error = link.ConnectionOpen(result.connection);
  result.step = StepOf(link.ConnState());
  if (!result.error) {
    Answer answer = link.CommandExchangeCode(link.CurrentChannel(), kLine);
    if (answer.Ok()) result.step = TestStep::kDone;
    result.error = std::move(answer.error);
    result.answer = std::move(answer.text);
  }
  running_ = nullptr;
  return result;
}

void ConnectionTest::GiveUp() {
  if (running_ != nullptr) running_->GiveUp();
}

std::string ConnectionHelp(int code, const Messages& messages) {
  const auto found = std::find_if(std::begin(kHelps), std::end(kHelps),
                                  [code](const Help& help) { return help.code == code; });
  return found == std::end(kHelps) ? std::string() : messages.Text(found->textId);
}

std::string ConnectionTestText(const ConnectionTestResult& result, const Messages& messages) {
  std::string text = messages.Filled(FirstLineId(result.step), VisibleLine(result.connection));
  if (result.Ok()) return text + Exchanged(result.answer, messages);
  text += "\n" + std::to_string(result.error.code) + ": " + messages.Shown(result.error.code);
  for (const std::string& more :
       {Visible(result.error.detail), ConnectionHelp(result.error.code, messages)}) {
    if (!more.empty()) text += "\n" + more;
  }
  return text;
}

}  // namespace ostrel
