#include "simulator/record.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "steps.h"

namespace ostrel::simulator {
namespace {

const std::string kTime = "2026-01-05 08:00:00.123 ", kUnknown = "<<not in the record>>";

/// A file of its own, which goes with the test.
struct TestFile {
  TestFile() { close(mkstemp(path.data())); }
  ~TestFile() { std::filesystem::remove(path); }
  std::string path = std::filesystem::temp_directory_path() / "record-XXXXXX";
};

TEST(Record, IsReplayedAsItWas) {
  const TestFile file;
  chmod(file.path.c_str(), 0644);
  const std::string lines[] = {"all,station&#\r",
                               "1,!\"\\x41\xfc\"\r",
                               "RegTAPSUM#\r",
                               "RegTAPSTATCL*=0\r",
                               "RegTAPSUM#\r",
                               "sysreset=0\r",
                               "dir\r",
                               "\r",
                               std::string(5000, 'x') + "\r"};
  std::ostringstream errors;
  Record record(errors);
  ASSERT_EQ(record.Open(file.path), "");
  Simulation devices{.bus = Bus(), .record = &record};
  FaultyLine first(devices), second(devices);
  std::vector<std::string> recorded, replayed;
  for (const std::string& line : lines) {
    SentFor(second, "1,");  // another host, in between
    recorded.push_back(SentFor(first, line).bytes);
  }
  SentFor(second, "2,+\r");
  EXPECT_EQ(recorded[6], "");  // while it restarts
  struct stat status = {};
  ASSERT_EQ(stat(file.path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u);
  Replay replay;
  ASSERT_EQ(replay.Load(file.path) + replay.Complaint() + errors.str(), "");
  Simulation instead{.bus = Bus(), .replay = &replay};
  FaultyLine line(instead);
  for (const std::string& sent : lines) replayed.push_back(SentFor(line, sent).bytes);
  EXPECT_EQ(replayed, recorded);
  EXPECT_EQ(SentFor(line, lines[2]).bytes, recorded[4]);
  EXPECT_EQ(SentFor(line, "dirn_\r").bytes, "dirn_\r\n" + kUnknown + kEnd);
}

TEST(Record, GoesOnAfterTornLinesAndAFullDisk) {
  const TestFile file;
  std::ofstream(file.path) << "torn";
  std::ostringstream errors;
  Record record(errors);
  ASSERT_EQ(record.Open(file.path), "");
  record.Write(1, "a", {{"A"}});
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full = {std::filesystem::file_size(file.path) + 9, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &full);
  for (int n = 0; n < 3; ++n) record.Write(1, "lost", {{"lost"}});
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  record.Write(1, "b", {{"B"}});
  EXPECT_EQ(errors.str(), "ostrel-simulator: " + file.path + ": File too large\n");
  Replay replay;
  ASSERT_EQ(replay.Load(file.path), "");
  EXPECT_EQ(replay.Complaint(), "faulty lines: 2, the first is line 1");
  EXPECT_EQ(replay.ReplyTo("a").front().bytes + replay.ReplyTo("b").front().bytes, "AB");
}

TEST(Replay, ReadsWhatIsWhole) {
  const std::string unknown = "a\r\n" + kUnknown + kEnd;
  struct Case {
    std::string text;                  // each "@" stands for a time
    std::vector<std::string> replies;  // to the line "a", one after the other
    std::string faulty = {};
  };
  const Case cases[] = {
      {"@1 > a\r\n@1 < \\x41\\\\\\x1a\r\n\r\n", {"A\\\x1a"}},
      {"@1 > a\n@1 < A\n@1 > a\n@2 > a\n@2 < B\n@1 < C\n", {"A", "B", "C", "C"}},
      {"@1 > a\n@1 > a\n@1 < A\n@1 > a\n", {kSilence, "A", kSilence, kSilence}},
      {"@1 > a\n@1 <\n", {kSilence}},
      {"@1 > a\n@1 < A", {unknown}},
      {"@1 > a\n@1 < A\n@1 > a\n@1 < B", {"A", "A"}},
      {"@2 < A\n@1 > a\n@2 < B\n@1 < C\n@1 < D\n", {"C"}, "3, the first is line 1"},
      {"@1 > a\n@1 < \\x4\n@1 < \\n\n@1 < \\xzz\n@1 < \xfc\n@1 < A\n",
       {"A"},
       "4, the first is line 2"},
      {"x\n@0 > a\n@1 = a\n@1> a\n@1 >a\n2026-1-5 08:00:00.123 1 > a\n",
       {unknown},
       "6, the first is line 1"},
  };
  for (const Case& c : cases) {
    std::string text = c.text;
    for (std::size_t at; (at = text.find('@')) != std::string::npos;) text.replace(at, 1, kTime);
    Replay replay;
    replay.Read(text);
    for (const std::string& reply : c.replies) {
      const auto portions = replay.ReplyTo("a");
      EXPECT_EQ(portions.empty() ? kSilence : portions.front().bytes, reply) << c.text;
    }
    const std::string faulty = c.faulty.empty() ? "" : "faulty lines: " + c.faulty;
    EXPECT_EQ(replay.Complaint(), faulty) << c.text;
  }
}

}  // namespace
}  // namespace ostrel::simulator
