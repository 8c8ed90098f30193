#include "kit/kit.h"

#include <stdlib.h>

#include <algorithm>

namespace ostrel::kit {

namespace {

template <typename T>
T Next(std::vector<T>& list, T otherwise) {
  if (list.empty()) return otherwise;
  T first = list.front();
  list.erase(list.begin());
  return first;
}

/// The server object: one channel, number 7.
class ScriptedServer : public AutomationObject {
 public:
  ScriptedServer(ServerScript& script, ManualClock& clock) : script_(script), clock_(clock) {}

  AutomationResult Call(std::string_view member, const Values& arguments) override {
    if (const auto fail = script_.fails.find(std::string(member)); fail != script_.fails.end()) {
      return fail->second;
    }
    const auto text = [&](std::size_t n) {
      return AutomationResult{arguments.at(n), 0, {}}.Text();
    };
    if (member == "COpenLocked") return {script_.locked, 0, {}};
    if (member == "COnlineEnabled") return {script_.online, 0, {}};
    if (member == "CTerminateApps") return {script_.terminate, 0, {}};
    if (member == "CGetConnection") return {script_.connection, 0, {}};
    if (member == "CStatus") return {Status(), 0, {}};
    if (member == "CReceive") return Receive();
    if (member == "CSend") return Send(text(1));
    if (member == "CCancel") return Cancel();
    if (member == "CClose") ++script_.closed;
    if (member == "CNotifyApp") script_.notices.push_back(text(1));
    if (member == "CAbout") script_.notices.push_back(text(0));
    if (member == "COpen") {
      script_.opened.push_back(text(0));
      if (script_.closedFor.count(text(0)) != 0) return ObjectError(10042, "closed");
      if (script_.follows && !text(0).empty()) script_.connection = text(0);
      return {7, 0, {}};
    }
    return {};
  }

  AutomationResult Get(std::string_view property, const Values&) override {
    return {Property(property), 0, {}};
  }

  AutomationResult Put(std::string_view property, const Values&, const Value& value) override {
    if (const auto fail = script_.fails.find(std::string(property)); fail != script_.fails.end()) {
      return fail->second;
    }
    Property(property) = std::get<int>(value);
    return {};
  }

 protected:
  ServerScript& script_;

 private:
  int& Property(std::string_view name) {
    if (name == "CTimeout") return script_.timeout;
    return name == "CFrame" ? script_.frame : script_.translate;
  }
  int Status() const {
    if (!line_) return 3;
    if (queued_) return 1;
    return script_.answers.count(*line_) != 0 && clock_.tickMs >= readyAt_ ? 0 : 1;
  }

  AutomationResult Send(const std::string& line) {
    queued_ = script_.queues;
    if (!queued_) script_.sent.push_back(line);
    line_ = line;
    readyAt_ = clock_.tickMs + script_.answerAfterMs;
    return {};
  }

  AutomationResult Cancel() {
    const bool unsent = line_ && queued_;
    if (unsent) script_.takenBack.push_back(*line_);
    line_.reset();
    return {unsent, 0, {}};
  }

  AutomationResult Receive() {
    ++script_.received;
    const std::string line = line_.value_or("");
    line_.reset();
    const auto answer = script_.answers.find(line);
    return {answer == script_.answers.end() ? std::string() : answer->second, 0, {}};
  }

  ManualClock& clock_;
  std::optional<std::string> line_;
  bool queued_ = false;  // it has not gone out
  std::int64_t readyAt_ = 0;
};

class ScriptedChooser : public ScriptedServer {
 public:
  using ScriptedServer::ScriptedServer;
  AutomationResult Call(std::string_view, const Values& arguments) override {
    script_.choosers.push_back(AutomationResult{arguments.at(2), 0, {}}.Text());
    if (script_.onChoose) script_.onChoose();
    return {Next<std::string>(script_.chosen, ""), 0, {}};
  }
};

}  // namespace

Error MemorySettings::Store(const std::vector<SettingsChange>& changes) {
  if (fails) return fails;
  const auto before = values_.Entries();
  values_.Apply(changes);
  writes += values_.Entries() == before ? 0 : 1;
  return {};
}

void ManualClock::ProcessEvents() {
  tickMs += stepMs;
  if (onEvents) onEvents();
}

std::optional<std::string> ScriptedDialogs::AskText(const InputRequest& request) {
  asked.push_back(request.title + " | " + request.prompt);
  offered.push_back(request.value);
  const std::string text = Next<std::string>(typed, "\x1b");
  return text == "\x1b" ? std::nullopt : std::optional(text);
}

bool ScriptedDialogs::AskYesNo(const std::string& question) {
  asked.push_back(question);
  return Next<bool>(yesNo, false);
}

std::optional<std::string> ScriptedDialogs::ChooseFile(FileDialogKind, const std::string& title,
                                                       const std::string& filter,
                                                       const std::string& folder) {
  asked.push_back(title + "|" + filter + "|" + folder);
  const std::string file = Next<std::string>(files, "");
  return file.empty() ? std::nullopt : std::optional(file);
}

void ScriptedDialogs::SetBusy(bool on) {
  busy += on ? 1 : -1;
}

std::string ScriptedDialogs::Numbers() const {
  std::string numbers;
  for (const Message& message : shown) {
    numbers += (numbers.empty() ? "" : " ") + std::to_string(message.number);
  }
  return numbers;
}

AutomationFactory::Created ScriptedFactory::Create(std::string_view className) {
  script_.created.emplace_back(className);
  if (className.ends_with(".Chooser"))
    return {std::make_unique<ScriptedChooser>(script_, clock_), {}};
  if (script_.failingCreations > 0) {
    --script_.failingCreations;
    return {nullptr, "attempt failed"};
  }
  return {std::make_unique<ScriptedServer>(script_, clock_), {}};
}

TemporaryDesktop::TemporaryDesktop() {
  std::string name = (std::filesystem::temp_directory_path() / "ostrel-test-XXXXXX").string();
  folder = mkdtemp(name.data());
  for (const char* language : {"deutsch", "english", "francais"}) {
    std::filesystem::create_directory(folder / language);
  }
}

TemporaryDesktop::~TemporaryDesktop() {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

bool TemporaryDesktop::RaiseWindow(const std::string& title) {
  if (std::find(windows.begin(), windows.end(), title) == windows.end()) return false;
  raised.push_back(title);
  return true;
}

bool TemporaryDesktop::StartProgram(const std::filesystem::path& program,
                                    const std::vector<std::string>& arguments) {
  started.push_back(program.string());
  for (const std::string& argument : arguments) started.back() += " " + argument;
  return true;
}

}  // namespace ostrel::kit
