#include "simulator/data_log.h"

#include <algorithm>
#include <bit>
#include <set>

#include "simulator/data_log_records.h"
#include "simulator/machine.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

int Number(Station& station, const std::string& which) {
  return std::stoi(AnswerOf(station, "fsize# log " + which));
}

/// The log as a reader gets it: its blocks from the oldest to the newest.
std::vector<std::string> ReadBlocks(Station& station) {
  std::vector<std::string> blocks;
  const int most = Number(station, "mr"), last = Number(station, "li");
  for (int n = Number(station, "fi");; n = (n + 1) % most) {
    blocks.push_back(AnswerOf(station, "FREAD# LOG " + std::to_string(n)));
    if (n == last) return blocks;
  }
}

/// Takes the records apart on their own terms.
struct Reader {
  void ReadRecord() {
    const std::size_t start = at;
    const std::uint64_t time = Take(4) * 1000 + Take(2);
    EXPECT_GE(time, newest) << "record at " << start;
    newest = time;
    const auto token = static_cast<unsigned>(Take(2));
    const std::size_t length = Take(2), end = at + 2 * length;
    ASSERT_LE(end + 4, hex.size()) << "record at " << start;
    const std::size_t payload = at;
    unsigned check = 0;
    while (at < end) check ^= static_cast<unsigned>(Take(1));
    EXPECT_EQ(Take(2), check) << "record at " << start;
    tokens.insert(token);
    if ((token == 2 || token == 4) && length == 2) emptySeries = true;
    starts.insert(start);
    if ((token & 0x7000) != 0x6000) return;
    const auto state = static_cast<unsigned>(std::stoul(hex.substr(payload, 8), nullptr, 16));
    const int words = std::popcount(state & 0x0FFF000F);
    EXPECT_EQ(length, 4u + 2u * words + 4u * std::popcount(state & 0x0070)) << "at " << payload;
  }

  std::uint64_t Take(std::size_t bytes) {
    at += 2 * bytes;
    return std::stoull(hex.substr(at - 2 * bytes, 2 * bytes), nullptr, 16);
  }

  std::string hex;
  std::size_t at = 0;
  std::uint64_t newest = 0;
  std::multiset<unsigned> tokens;
  std::set<std::size_t> starts;
  bool emptySeries = false;
};

Reader ReadLog(Station& station) {
  Reader reader;
  std::vector<std::size_t> blockStarts;
  for (const std::string& block : ReadBlocks(station)) {
    EXPECT_LE(block.size(), 512u);
    blockStarts.push_back(reader.hex.size());
    reader.hex += block;
  }
  EXPECT_EQ(reader.hex.size() / 2, std::stoul(AnswerOf(station, "fsize# log")));
  while (reader.at < reader.hex.size() && !::testing::Test::HasFatalFailure()) reader.ReadRecord();
  EXPECT_FALSE(std::all_of(blockStarts.begin(), blockStarts.end(), [&](std::size_t start) {
    return reader.starts.contains(start);
  })) << "no record runs on in the next block";
  return reader;
}

void ExpectEveryCategory(const Reader& reader) {
  for (const unsigned token : AllLogTokens()) {
    EXPECT_TRUE(reader.tokens.contains(token)) << std::hex << token;
    const bool goes = (token & 0x4000) == 0 || reader.tokens.contains(token & 0x7FFF);
    EXPECT_TRUE(goes) << std::hex << token;
  }
  EXPECT_TRUE(reader.emptySeries);
}

TEST(DataLog, HoldsEverythingBeforeAndAfterItGoesRound) {
  for (const std::uint64_t seed : {1u, 2u, 3u}) {
    SCOPED_TRACE(seed);
    constexpr std::int64_t kStart = 1'136'448'000;
    Station station("B4", {"KT-XFB", "2.1.11", "", ""}, seed, kStart);
    EXPECT_EQ(Number(station, "fi"), 0);
    EXPECT_LT(Number(station, "li"), Number(station, "mr") - 1);
    const Reader history = ReadLog(station);
    ExpectEveryCategory(history);
    EXPECT_LE(history.newest, static_cast<std::uint64_t>(kStart) * 1000);
    EXPECT_EQ(ReadLog(station).hex, history.hex);
    station.Advance(3'600'000);
    const Reader later = ReadLog(station);
    EXPECT_GT(later.tokens.size(), history.tokens.size() + 9);
    EXPECT_GT(later.newest, static_cast<std::uint64_t>(kStart) * 1000 + 3'000'000);
    bool wrapped = false;
    for (int hour = 100; hour < 130; ++hour) {
      station.Advance(hour * kDay / 24);
      wrapped = wrapped || Number(station, "li") < Number(station, "fi");
      ExpectEveryCategory(ReadLog(station));
    }
    EXPECT_TRUE(wrapped);
    station.Advance(3650 * kDay);
    ExpectEveryCategory(ReadLog(station));
  }
}

TEST(DataLog, LivesTheSameInStepsAndInOneJump) {
  const StationData data = {"KT-XF", "2.4.04", "", ""};
  Station jump("B4", data, 7, 0), steps("B4", data, 7, 0), other("B4", data, 8, 0);
  EXPECT_NE(ReadBlocks(jump), ReadBlocks(other));
  jump.Advance(2 * kDay);
  for (std::int64_t now = 0; now <= 2 * kDay; now += 1000) steps.Advance(now);
  EXPECT_EQ(ReadBlocks(jump), ReadBlocks(steps));
}

TEST(DataLog, NotesThatTheClockIsSetAndItsTimesNeverFall) {
  Station station("B4", {"KT-XF", "2.4.04", "", ""}, 7, 1'136'448'000);
  std::uint64_t newest = ReadLog(station).newest;
  std::int64_t hours = 0;
  for (const std::string line : {"Date=06.01.2026", "time=01:00:00", "Date=05.01.2025",
                                 "time-,utcTZ=-5,time//=.", "Date=07.01.2026"}) {
    SCOPED_TRACE(line);
    const std::size_t before = ReadLog(station).tokens.count(1);
    EXPECT_EQ(AnswerOf(station, line), "");
    EXPECT_EQ(ReadLog(station).tokens.count(1), before + 1);
    station.Advance(++hours * 3'600'000);
    const Reader reader = ReadLog(station);
    EXPECT_GT(reader.newest, newest);
    newest = reader.newest;
  }
  constexpr std::uint64_t kJanuary7 = 1'136'592'000'000;
  EXPECT_GT(newest, kJanuary7) << "it has caught up";
}

TEST(DataLog, IsClearedAndBeginsAgain) {
  std::int64_t now = 0;
  Bus bus({.seed = 1, .clock = [&] { return now; }});
  const std::string header = bus.Answer("B4:fread. log.h 0 *");
  EXPECT_NE(header.find("name="), std::string::npos);
  EXPECT_NE(std::string("0123456789").find(header.back()), std::string::npos);
  EXPECT_EQ(bus.Answer("B4:FREAD# LOG 255"), "");
  EXPECT_EQ(bus.Answer("B4:esplogclear=1"), "<<value out of range>>");
  EXPECT_EQ(bus.Answer("B4:esplogclear=0,FREAD# LOG 0,fsize# log fi,fsize# log li"), "0\r\n0");
  now = 3'600'000;
  EXPECT_NE(bus.Answer("B4:FREAD# LOG 0"), "");
  EXPECT_EQ(bus.Answer("B5:FREAD# LOG 0"), "<<unknown: fread>>");
}

}  // namespace
}  // namespace ostrel::simulator
