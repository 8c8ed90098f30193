#include "simulator/data_log.h"

#include <algorithm>
#include <bit>
#include <map>
#include <set>
#include <utility>

#include "simulator/data_log_records.h"
#include "simulator/machine.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

constexpr std::int64_t kStart = 1'136'448'000;

Station Coil(std::uint64_t seed, const Extras& extras = {}) {
  StationData data{"KT-XFB", "2.1.11", "", ""};
  data.extras = extras;
  return {"B4", data, seed, kStart};
}

int Number(Station& station, const std::string& which) {
  return std::stoi(AnswerOf(station, "fsize# log " + which));
}

std::string Block(Station& station, int number) {
  return AnswerOf(station, "FREAD# LOG " + std::to_string(number));
}

/// From one block to another, around the ring.
std::vector<std::string> BlocksOf(Station& station, int first, int last) {
  std::vector<std::string> blocks;
  for (int n = first, most = Number(station, "mr");; n = (n + 1) % most) {
    blocks.push_back(Block(station, n));
    if (n == last) return blocks;
  }
}

std::vector<std::string> BlocksOf(Station& station) {
  return BlocksOf(station, Number(station, "fi"), Number(station, "li"));
}

std::uint64_t Hex(const std::string& hex, std::size_t byte, std::size_t bytes) {
  return std::stoull(hex.substr(2 * byte, 2 * bytes), nullptr, 16);
}

/// The seconds at which a block begins.
std::uint64_t Second(const std::string& block) {
  return Hex(block, 0, 4);
}

/// Takes the records apart on their own terms.
struct Reader {
  explicit Reader(Station& station) {
    std::string log;
    for (const std::string& block : BlocksOf(station)) {
      EXPECT_TRUE(!block.empty() && block.size() <= 512u);
      starts.insert(log.size() / 2);
      log += block;
    }
    EXPECT_EQ(log.size() / 2, std::stoul(AnswerOf(station, "fsize# log")));
    for (std::size_t at = 0, size = 0; at < log.size() / 2; at += size) {
      size = 12 + (Hex(log, at + 8, 2) & 0xFF);
      spoiled += Hex(log, at + 8, 2) > 512 ? 1 : 0;
      starts.erase(at);
      if (2 * (at + size) > log.size()) break;  // it runs on in a block that is not closed
      Read(log.substr(2 * at, 2 * size));
    }
  }

  void Read(const std::string& record) {
    times.push_back(Hex(record, 0, 4) * 1000 + Hex(record, 4, 2));
    const auto token = static_cast<unsigned>(Hex(record, 6, 2));
    const std::size_t end = record.size() / 2 - 2;
    EXPECT_EQ(Hex(record, end, 2), record.size() / 2);
    tokens.insert(token);
    for (std::size_t at = 10; at + 4 <= end; at += 2) {
      const auto bits = static_cast<std::uint32_t>(Hex(record, at, 4));
      values[{token & 0x7FFF, at - 10}].push_back(std::bit_cast<float>(bits));
      if (bits == 0x7FC00000) ++absent;
    }
    if (token == 2 || token == 4) seriesBytes.insert(end - 10);
    if ((token & 0xFF00) == 0x0100) words.insert({token == 0x01FF, Hex(record, 12, 2) == 0});
    if (token == 7) mostRetries = std::max(mostRetries, Hex(record, 16, 2));
    if ((token & 0x7000) != 0x6000) return;
    const auto state = static_cast<unsigned>(Hex(record, 10, 4));
    EXPECT_EQ(end - 10,
              4u + 2u * std::popcount(state & 0x0FFF000F) + 4u * std::popcount(state & 0x0070));
    EXPECT_TRUE((state & 0x30) == 0 || (state & 0x30) == 0x30);
  }

  std::vector<std::uint64_t> times;
  std::multiset<unsigned> tokens;
  std::set<std::size_t> starts;  // of blocks, where no record begins
  std::set<std::size_t> seriesBytes;
  std::set<std::pair<bool, bool>> words;  // of errors: acknowledged, with nothing more to say
  std::map<std::pair<unsigned, std::size_t>, std::vector<float>> values;  // the payload's
  std::uint64_t mostRetries = 0;
  int absent = 0, spoiled = 0;
};

void ExpectEveryCategory(const Reader& reader) {
  for (const unsigned token : AllLogTokens()) {
    EXPECT_TRUE(reader.tokens.contains(token)) << std::hex << token;
    const bool goes = (token & 0x4000) == 0 || reader.tokens.contains(token & 0x7FFF);
    EXPECT_TRUE(goes) << std::hex << token;
  }
  EXPECT_EQ(reader.seriesBytes, (std::set<std::size_t>{2, 50, 98, 242}));
  EXPECT_TRUE(reader.starts.empty());
  EXPECT_TRUE(std::is_sorted(reader.times.begin(), reader.times.end()));
}

TEST(DataLog, HoldsEverythingBeforeAndAfterItGoesRound) {
  for (const std::uint64_t seed : {1u, 2u, 3u}) {
    SCOPED_TRACE(seed);
    Station station = Coil(seed);
    EXPECT_EQ(Number(station, "fi"), 0);
    EXPECT_LT(Number(station, "li"), Number(station, "mr") - 1);
    const Reader history(station);
    ExpectEveryCategory(history);
    EXPECT_LE(history.times.back(), static_cast<std::uint64_t>(kStart) * 1000);
    station.Advance(2 * 3'600'000);
    EXPECT_GT(Reader(station).times.back(), static_cast<std::uint64_t>(kStart) * 1000);
    bool wrapped = false;
    for (int hour = 100; hour < 130; ++hour) {
      station.Advance(hour * kDay / 24);
      wrapped = wrapped || Number(station, "li") < Number(station, "fi");
      ExpectEveryCategory(Reader(station));
      EXPECT_NE(Block(station, 0), "") << "the ring is full";
    }
    EXPECT_TRUE(wrapped);
    station.Advance(3650 * kDay);
    ExpectEveryCategory(Reader(station));
  }
}

TEST(DataLog, WritesValuesThatFitTheirFields) {
  struct Field {
    unsigned token;
    std::size_t byte;
    float lowest, highest, atLeast;  // the last: what the largest one reaches
  };
  constexpr Field kFields[] = {
      {5, 0, 0, 99, 1},     {5, 4, 0, 99, 1},      {5, 8, 0, 9.9f, 1},   {5, 12, 0, 99.9f, 4},
      {8, 4, -180, 180, 4}, {8, 12, -180, 180, 4}, {8, 16, 0, 99.9f, 1}, {8, 20, 0, 99.9f, 1},
      {8, 24, 20, 200, 40}, {9, 0, 10, 99.9f, 50}, {9, 4, -99, 180, 4},  {2, 0, 0, 99.9f, 30},
      {2, 8, 0, 120, 20},   {2, 12, -180, 180, 4},
  };
  Extras large;
  large.logBlocks = 2560;
  Station station = Coil(1, large);
  const Reader reader(station);
  for (const Field& field : kFields) {
    SCOPED_TRACE(std::to_string(field.token) + " at " + std::to_string(field.byte));
    const std::vector<float>& values = reader.values.at({field.token, field.byte});
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    EXPECT_GE(*low, field.lowest);
    EXPECT_LE(*high, field.highest);
    EXPECT_GE(*high, field.atLeast);
  }
  EXPECT_LE(reader.mostRetries, 99u);
  EXPECT_EQ(reader.words.size(), 4u) << "errors and their end, with more to say and without";
}

TEST(DataLog, LivesTheSameInStepsAndInOneJump) {
  Station jump = Coil(7), steps = Coil(7), other = Coil(8);
  EXPECT_NE(BlocksOf(jump), BlocksOf(other));
  jump.Advance(2 * kDay);
  for (std::int64_t now = 0; now <= 2 * kDay; now += 1000) steps.Advance(now);
  EXPECT_EQ(BlocksOf(jump), BlocksOf(steps));
}

TEST(DataLog, NotesAtOnceThatTheClockIsSetAndThatItRestarts) {
  const struct {
    std::string line;
    unsigned token;
    std::int64_t ahead;  // s, of the clock then
  } cases[] = {{"Date=06.01.2026", 1, 86'400},
               {"time=01:00:00", 1, 57'600},
               {"Date=05.01.2025", 1, -365 * 86'400 - 28'800},
               {"time-,utcTZ=-5,time//=.", 1, -365 * 86'400 - 28'800},
               {"sysreset=0", 0xC000, -365 * 86'400 - 28'800},
               {"Date=07.01.2026", 1, 144'000}};
  Station station = Coil(7);
  for (std::int64_t hours = 0; const auto& c : cases) {
    SCOPED_TRACE(c.line);
    const std::size_t before = Reader(station).tokens.count(c.token);
    EXPECT_EQ(AnswerOf(station, c.line), "");
    station.Advance(hours * 3'600'000 + 3000);
    const Reader reader(station);
    EXPECT_EQ(reader.tokens.count(c.token), before + 1);
    const std::int64_t clock = (kStart + c.ahead + hours * 3600) * 1000;
    EXPECT_EQ(reader.times.back(), static_cast<std::uint64_t>(clock));
    station.Advance(++hours * 3'600'000);
  }
}

/// A reader's file, that is what it holds of a log: blocks, the oldest first.
struct File {
  void Download(Station& station) {
    std::vector<std::string> fresh;  // the newest first
    const bool old = !blocks.empty();
    const std::uint64_t newest = old ? Second(blocks.back()) : 0;
    const auto read = [&](int from, int to) {
      for (int n = from; n >= to; --n) {
        const std::string block = Block(station, n);
        if (block.empty() || Second(block) < newest) return;
        fresh.push_back(block);
      }
    };
    const int first = Number(station, "fi"), last = Number(station, "li");
    read(last, 0);
    if (old && last < first) read(Number(station, "mr") - 1, first);
    int dropped = 0;
    while (old && !fresh.empty() && dropped < 255 &&
           std::find(blocks.begin(), blocks.end(), fresh.back()) != blocks.end()) {
      fresh.pop_back();
      ++dropped;
    }
    mostDropped = std::max(mostDropped, dropped);
    blocks.insert(blocks.end(), fresh.rbegin(), fresh.rend());
  }

  std::vector<std::string> blocks;
  int mostDropped = 0;
};

TEST(DataLog, IsDownloadedWithNothingLostAndNothingDoubled) {
  int mostDropped = 0;
  for (const int blocks : {256, 40}) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
      SCOPED_TRACE(std::to_string(blocks) + " blocks, seed " + std::to_string(seed));
      Extras extras;
      extras.logBlocks = blocks;
      Station station = Coil(seed, extras);
      int seen = Number(station, "li");
      std::vector<std::string> written = BlocksOf(station, 0, seen);
      File file;
      for (int download = 0; download < 7; ++download) {
        file.Download(station);
        ASSERT_EQ(file.blocks, written) << "download " << download;
        for (int minute = 1; minute <= 15; ++minute) {
          station.Advance((download * 15 + minute) * kMinute);
          for (; seen != Number(station, "li"); written.push_back(Block(station, seen))) {
            seen = (seen + 1) % blocks;
          }
        }
      }
      mostDropped = std::max(mostDropped, file.mostDropped);
    }
  }
  EXPECT_GT(mostDropped, 1) << "neighbours share a second";
}

TEST(DataLog, IsOddOnRequest) {
  Extras split, odd;
  split.logBlocks = 64;
  split.splitRecords = odd.oddRecords = true;
  Station splitting = Coil(3, split), spoiling = Coil(3, odd);
  std::size_t running = 0;
  for (int hour = 1; hour < 60; ++hour) {
    splitting.Advance(hour * 3'600'000);
    running += Reader(splitting).starts.size();  // it begins with a whole record
    const std::string first = Block(splitting, 0);
    EXPECT_EQ(Hex(first, 10 + Hex(first, 8, 2), 2), 12 + Hex(first, 8, 2));
  }
  EXPECT_GT(running, 9u);
  const Reader reader(spoiling);
  for (const unsigned token : OddLogTokens()) {
    const bool lasts = (token & 0x4000) != 0;
    EXPECT_TRUE(reader.tokens.contains(lasts ? token | 0x8000 : token)) << std::hex << token;
  }
  EXPECT_GT(reader.absent, 0);
  EXPECT_GT(reader.spoiled, 0);
  EXPECT_TRUE(reader.seriesBytes.contains(48)) << "no mode";
}

TEST(DataLog, IsClearedAndBeginsAgain) {
  std::int64_t now = 0;
  Bus bus({.seed = 1, .clock = [&] { return now; }, .extras = {.logBlocks = 65534}});
  const std::string header = bus.Answer("B4:fread. log.h 0 *");
  EXPECT_NE(header.find("name="), std::string::npos);
  EXPECT_NE(std::string("0123456789").find(header.back()), std::string::npos);
  EXPECT_EQ(bus.Answer("B4:fsize# log mr,FREAD# LOG 65533"), "65534");
  EXPECT_EQ(bus.Answer("B4:esplogclear=1"), "<<value out of range>>");
  EXPECT_EQ(bus.Answer("B4:esplogclear=0,FREAD# LOG 0,fsize# log fi,fsize# log li"), "0\r\n0");
  now = 2 * 3'600'000;
  EXPECT_NE(bus.Answer("B4:FREAD# LOG 0"), "");
  EXPECT_EQ(bus.Answer("B5:FREAD# LOG 0"), "<<unknown: fread>>");
}

}  // namespace
}  // namespace ostrel::simulator
