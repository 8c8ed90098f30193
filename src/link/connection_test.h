#pragma once

#include <filesystem>
#include <string>

#include "base/clock.h"
#include "base/error.h"
#include "base/messages.h"
#include "base/settings_store.h"
#include "wire/automation.h"

namespace ostrel {

class Link;

/// Where the test of a connection ended.
enum class TestStep { kServer, kOpen, kAnswer, kDone };

struct ConnectionTestResult {
  std::string connection;             // its name
  TestStep step = TestStep::kServer;  // the step that failed; kDone when none did
  Error error;                        // why, with what the server says of it
  std::string answer;                 // the device's, which may be "<<…>>"
  bool Ok() const { return step == TestStep::kDone; }
};

/// Tests stored connections, each on a channel of its own: what the program has open and selected
/// stays as it is.
class ConnectionTest {
 public:
  ConnectionTest(AutomationFactory& factory, SettingsStore& settings, Clock& clock,
                 std::filesystem::path programFolder);

  /// The line that the device is asked.
  static constexpr const char* kLine = "AA:dirn_";

  /// Tests the connection with this name (empty = the current one). Shows nothing, lets events run;
  /// a second test meanwhile fails with text::kExchangeUnderWay.
  ConnectionTestResult Run(const std::string& name);
  /// Makes the test that is going on end with text::kExchangeGivenUp as soon as it next waits.
  void GiveUp();

 private:
  AutomationFactory& factory_;
  SettingsStore& settings_;
  Clock& clock_;
  std::filesystem::path programFolder_;
  Link* running_ = nullptr;
};

/// What the user is told: the exchange, or the step that failed with number, message, the server's
/// description and what mends it. Control characters are visible.
std::string ConnectionTestText(const ConnectionTestResult& result, const Messages& messages);
/// What mends a failure with this code; empty where nothing is known.
std::string ConnectionHelp(int code, const Messages& messages);

}  // namespace ostrel
