// What the user gets for each way in which a line can fail, through the whole stack.

#include <QJsonArray>
#include <QJsonObject>
#include <future>

#include "base/settings_store.h"
#include "end_to_end/programs.h"
#include "platform/registry_settings.h"

namespace ostrel {
namespace {

struct Result {
  std::vector<Outcome> outcomes;  // of each command
  QByteArray count;               // what the simulator prints at its end
};

struct Bus {
  const char* fault;
  bool serial;
};

/// Runs the commands one after the other against a simulator with a fault.
Result RunOn(const Programs& programs, const Bus& bus, const std::vector<QStringList>& commands) {
  const QString terminal = programs.Folder() + "/bus";
  QStringList arguments = bus.serial ? QStringList{"--pty", terminal} : QStringList{"--tcp", "0"};
  if (*bus.fault != 0) arguments += {"--fault", bus.fault};
  std::unique_ptr<QProcess> simulator;
  const QString where = programs.StartSimulator(simulator, arguments);
  programs.Use(bus.serial ? "serial" : "tcp", bus.serial ? terminal : "127.0.0.1:" + where);
  Result result;
  for (const QStringList& command : commands) {
    result.outcomes.push_back(programs.Run(command + QStringList{"--json"}));
  }
  simulator->terminate();
  EXPECT_TRUE(simulator->waitForFinished());
  result.count = simulator->readAllStandardOutput();
  return result;
}

/// The same on several buses at once.
std::vector<Result> RunOnAll(const std::vector<Bus>& buses, const char* timeout,
                             const std::vector<QStringList>& commands) {
  // The settings first: to enter changes the environment, which threads may read.
  std::vector<std::unique_ptr<Programs>> programs;
  for (std::size_t n = 0; n < buses.size(); ++n) {
    programs.push_back(std::make_unique<Programs>());
    programs[n]->Enter();
    RegistrySettings().WriteShared(keys::kServerMisc, "DefTimeout_s", timeout);
  }
  std::vector<std::future<Result>> running;
  for (std::size_t n = 0; n < buses.size(); ++n) {
    running.push_back(
        std::async(std::launch::async, RunOn, std::cref(*programs[n]), buses[n], commands));
  }
  std::vector<Result> results;
  for (auto& one : running) results.push_back(one.get());
  return results;
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
  std::vector<Bus> buses;
  for (const auto& fault : faults) buses.push_back({fault.first, false});
  const std::vector<Result> results = RunOnAll(buses, "2", operations);
  for (std::size_t n = 0; n < std::size(faults); ++n) {
    const auto& [fault, number] = faults[n];
    for (const Outcome& outcome : results[n].outcomes) {
      EXPECT_EQ(NumberOf(outcome), number) << fault << outcome.out.toStdString();
      EXPECT_EQ(outcome.status, number == 0 ? 0 : 1) << fault << outcome.out.toStdString();
    }
  }
}

TEST(Faults, OfOneLineLeaveTheNextItsOwnAnswer) {
  const struct {
    const char* fault;
    int code;
    const char* said;  // why, beside the text of the number
  } faults[] = {{"silent:2", 10012, ""},
                {"late:2", 10012, ""},
                {"lost-first:2", 10012, ""},
                {"garbage:2", 10015, "\nthe reply holds characters that no device sends"},
                {"truncated:2", 10012, ""},
                {"endless:2", 10017, "\nthe answer is longer than 256 KiB"},
                {"drop-link:2", 10015, "\n"},
                {"doubled:2", 0, ""},
                {"split:2", 0, ""}};
  std::vector<Bus> buses;
  for (const auto& fault : faults) {
    for (const bool serial : {false, true}) buses.push_back({fault.fault, serial});
  }
  const std::vector<Result> results = RunOnAll(buses, "2", {{"send", "1,!", "2,!", "3,!", "4,!"}});
  for (std::size_t n = 0; n < results.size(); ++n) {
    const auto& [fault, code, said] = faults[n / 2];
    SCOPED_TRACE(std::string(fault) + (n % 2 == 0 ? " tcp" : " serial"));
    const Result& result = results[n];
    const QJsonArray lines = result.outcomes[0].Json().array();
    ASSERT_EQ(lines.size(), 4) << result.outcomes[0].err.toStdString();
    for (int line = 0; line < 4; ++line) {
      const int number = line == 1 ? code : 0;
      EXPECT_EQ(lines[line]["error"]["number"].toInt(), number) << line;
      const QString message = lines[line]["error"]["message"].toString();
      EXPECT_EQ(message.contains(said), number != 0 || *said == 0) << message.toStdString();
      EXPECT_EQ(lines[line]["answer"], number == 0 ? QString::number(line + 1) : "") << line;
    }
    EXPECT_TRUE(result.count.contains("received 4 lines, 28 bytes, 1 faults"));
  }
}

TEST(Faults, ASerialLineCarriesAllThatTcpDoes) {
  const Result result =
      RunOnAll({{"", true}}, "10", {{"stations"}, {"identify"}, {"connections", "test"}})[0];
  EXPECT_EQ(result.outcomes[0].Json().array().size(), 10);
  EXPECT_EQ(result.outcomes[1].Json()["firmware"], "2.27");
  EXPECT_EQ(result.outcomes[2].Json()["answer"], "AA:Umspannwerk Nord T1");
}

}  // namespace
}  // namespace ostrel
