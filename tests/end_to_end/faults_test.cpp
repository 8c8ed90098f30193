// What the user gets for each way in which a line can fail, through the whole stack.

#include <QJsonArray>
#include <QJsonObject>
#include <algorithm>

#include "app/settings_store.h"
#include "end_to_end/programs.h"
#include "platform/registry_settings.h"

namespace ostrel {
namespace {

/// A simulator with a fault, and the commands that run against it one after the other.
class FaultyBus {
 public:
  FaultyBus(const QString& fault, const char* timeout, const std::vector<QStringList>& commands,
            const QString& terminal = {})
      : commands_(commands) {
    programs_.Enter();
    RegistrySettings().WriteShared(keys::kServerMisc, "DefTimeout_s", timeout);
    const QString place = terminal.isEmpty() ? QString() : programs_.Folder() + terminal;
    QStringList arguments = {place.isEmpty() ? "--tcp" : "--pty", place.isEmpty() ? "0" : place};
    if (!fault.isEmpty()) arguments += {"--fault", fault};
    const QString where = programs_.StartSimulator(simulator_, arguments);
    const bool serial = !place.isEmpty();
    programs_.Use(serial ? "serial" : "tcp", serial ? place : "127.0.0.1:" + where);
    Next();
  }

  /// Goes on with the next command when one has ended; true when all have.
  bool Done() {
    if (running_ && running_->state() == QProcess::NotRunning) {
      outcomes_.push_back(Programs::OutcomeOf(*running_));
      running_.reset();
      Next();
    }
    return !running_;
  }
  const std::vector<Outcome>& Outcomes() const { return outcomes_; }
  /// What the simulator prints at its end.
  QByteArray Count() {
    simulator_->terminate();
    EXPECT_TRUE(simulator_->waitForFinished());
    return simulator_->readAllStandardOutput();
  }

 private:
  void Next() {
    const std::size_t n = outcomes_.size();
    if (n < commands_.size()) running_ = programs_.StartCommand(commands_[n]);
  }

  Programs programs_;
  std::unique_ptr<QProcess> simulator_, running_;
  std::vector<QStringList> commands_;
  std::vector<Outcome> outcomes_;
};

void RunAll(const std::vector<std::unique_ptr<FaultyBus>>& buses) {
  QTimer wake;  // so that the wait for events ends
  wake.start(20);
  const auto done = [](const auto& bus) { return bus->Done(); };
  while (std::count_if(buses.begin(), buses.end(), done) < std::ssize(buses)) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

/// The number of the error that a command ended with; 0 for none.
int NumberOf(const Outcome& outcome) {
  const QJsonDocument json = outcome.Json();
  return (json.isArray() ? json[0] : QJsonValue(json.object()))["error"]["number"].toInt();
}

TEST(Faults, OfEveryLineAndWhatEachOperationSays) {
  const std::vector<QStringList> operations = {
      {"send", "ver."}, {"stations"}, {"identify"}, {"statistics"}, {"connections", "test"}};
  const std::pair<const char*, int> faults[] = {
      {"silent", 10012},    {"late", 10012},       {"split", 0},
      {"doubled", 0},       {"lost-first", 10015}, {"garbage", 10015},
      {"truncated", 10012}, {"endless", 10017},    {"drop-link", 10015}};
  std::vector<std::unique_ptr<FaultyBus>> buses;
  for (const auto& [fault, number] : faults) {
    buses.push_back(std::make_unique<FaultyBus>(fault, "1", operations));
  }
  RunAll(buses);
  for (std::size_t n = 0; n < std::size(faults); ++n) {
    const auto& [fault, number] = faults[n];
    for (std::size_t operation = 0; operation < operations.size(); ++operation) {
      const Outcome& outcome = buses[n]->Outcomes()[operation];
      const std::string called = fault + (" " + operations[operation].join(' ')).toStdString();
      EXPECT_EQ(NumberOf(outcome), number) << called << outcome.out.toStdString();
      EXPECT_EQ(outcome.status, number == 0 ? 0 : 1) << called;
    }
  }
}

TEST(Faults, OfOneLineLeaveTheNextItsOwnAnswer) {
  const std::vector<QStringList> commands = {{"send", "1,!", "2,!", "3,!", "4,!"}};
  const struct {
    const char* fault;
    int number;
  } cases[] = {{"silent:2", 10012},    {"late:2", 10012},      {"lost-first:2", 10012},
               {"garbage:2", 10015},   {"truncated:2", 10012}, {"endless:2", 10017},
               {"drop-link:2", 10015}, {"doubled:2", 0},       {"split:2", 0}};
  std::vector<std::unique_ptr<FaultyBus>> buses;
  for (const auto& c : cases) {
    buses.push_back(std::make_unique<FaultyBus>(c.fault, "2", commands));
    buses.push_back(std::make_unique<FaultyBus>(c.fault, "2", commands, "/bus"));
  }
  RunAll(buses);
  for (std::size_t n = 0; n < buses.size(); ++n) {
    const auto& c = cases[n / 2];
    SCOPED_TRACE(std::string(c.fault) + (n % 2 == 0 ? " tcp" : " serial"));
    const QJsonArray lines = buses[n]->Outcomes()[0].Json().array();
    ASSERT_EQ(lines.size(), 4) << buses[n]->Outcomes()[0].err.toStdString();
    for (int line = 0; line < 4; ++line) {
      const int number = line == 1 ? c.number : 0;
      EXPECT_EQ(lines[line]["error"]["number"].toInt(), number) << line;
      EXPECT_EQ(lines[line]["answer"], number == 0 ? QString::number(line + 1) : "") << line;
    }
    EXPECT_TRUE(buses[n]->Count().contains("received 4 lines, 28 bytes, 1 faults"));
  }
}

TEST(Faults, ASerialLineCarriesAllThatTcpDoes) {
  FaultyBus bus({}, "10", {{"stations"}, {"identify"}, {"connections", "test"}}, "/bus");
  while (!bus.Done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  EXPECT_EQ(bus.Outcomes()[0].Json().array().size(), 10);
  EXPECT_EQ(bus.Outcomes()[1].Json()["firmware"], "2.27");
  EXPECT_EQ(bus.Outcomes()[2].Json()["answer"], "AA:Umspannwerk Nord T1");
}

}  // namespace
}  // namespace ostrel
