#include "simulator/data_log.h"

#include <algorithm>
#include <bit>
#include <map>
#include <set>

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

/// From one block to the newest, around the ring.
std::vector<std::string> BlocksFrom(Station& station, int number) {
  std::vector<std::string> blocks;
  for (const int last = Number(station, "li"), most = Number(station, "mr");;) {
    blocks.push_back(Block(station, number));
    if (number == last) return blocks;
    number = (number + 1) % most;
  }
}

std::uint64_t Hex(const std::string& hex, std::size_t byte, std::size_t bytes) {
  return std::stoull(hex.substr(2 * byte, 2 * bytes), nullptr, 16);
}

/// Takes the records apart on their own terms.
struct Reader {
  explicit Reader(Station& station) {
    std::string log;
    for (const std::string& block : BlocksFrom(station, Number(station, "fi"))) {
      EXPECT_TRUE(!block.empty() && block.size() <= 512u);
      starts.insert(log.size() / 2);
      log += block;
    }
    EXPECT_EQ(log.size() / 2, std::stoul(AnswerOf(station, "fsize# log")));
    // The last one may run on in a block that is not closed.
    for (std::size_t at = 0, size = 0; at + 10 <= log.size() / 2; at += size) {
      size = 12 + (Hex(log, at + 8, 2) & 0xFF);
      starts.erase(at);
      if (at + size <= log.size() / 2) Read(log.substr(2 * at, 2 * size));
    }
  }

  void Read(const std::string& record) {
    times.push_back(Hex(record, 0, 4) * 1000 + Hex(record, 4, 2));
    newest = static_cast<unsigned>(Hex(record, 6, 2));
    tokens.insert(newest);
    const std::size_t end = record.size() / 2 - 2;
    EXPECT_EQ(Hex(record, end, 2), record.size() / 2);
    lengths[newest].insert(Hex(record, 8, 2));
    for (std::size_t at = 10; at + 2 <= end; at += 2) {
      words[{newest & 0x7FFF, at - 10}].insert(Hex(record, at, 2));
      if (at + 4 > end) continue;
      const auto bits = static_cast<std::uint32_t>(Hex(record, at, 4));
      values[{newest & 0x7FFF, at - 10}].insert(std::bit_cast<float>(bits));
    }
    if ((newest & 0x7000) != 0x6000) return;
    const auto state = static_cast<unsigned>(Hex(record, 10, 4));
    const unsigned fields = 2 * std::popcount(state & 0x0FFF000F) + std::popcount(state & 0x70) * 4;
    EXPECT_EQ(end - 10, 4 + fields);
    EXPECT_TRUE((state & 0x30) == 0 || (state & 0x30) == 0x30);
  }

  void ExpectEverything() {
    for (const unsigned token : AllLogTokens()) {
      EXPECT_TRUE(tokens.contains(token)) << std::hex << token;
      EXPECT_TRUE((token & 0x4000) == 0 || tokens.contains(token | 0x8000)) << std::hex << token;
    }
    EXPECT_TRUE(lengths[2].contains(2) || lengths[4].contains(2)) << "an empty series";
    EXPECT_TRUE(starts.empty());
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
  }

  std::vector<std::uint64_t> times;
  unsigned newest = 0;  // token
  std::set<unsigned> tokens;
  std::set<std::size_t> starts;  // of blocks, where no record begins
  std::map<unsigned, std::set<std::uint64_t>> lengths;
  // Of payloads, by token and place.
  std::map<std::pair<unsigned, std::size_t>, std::set<std::uint64_t>> words;
  std::map<std::pair<unsigned, std::size_t>, std::set<float>> values;
};

TEST(DataLog, HoldsEverythingBeforeAndAfterItGoesRound) {
  for (const std::uint64_t seed : {1u, 2u, 3u}) {
    SCOPED_TRACE(seed);
    Station station = Coil(seed);
    EXPECT_LT(Number(station, "li"), Number(station, "mr") - 1);
    Reader(station).ExpectEverything();
    bool wrapped = false;
    for (int hour = 100; hour < 130; ++hour) {
      station.Advance(hour * kDay / 24);
      wrapped = wrapped || Number(station, "li") < Number(station, "fi");
      Reader(station).ExpectEverything();
      EXPECT_NE(Block(station, 0), "") << "the ring is full";
    }
    EXPECT_TRUE(wrapped);
    station.Advance(3650 * kDay);
    Reader(station).ExpectEverything();
  }
}

TEST(DataLog, WritesValuesThatFitTheirFields) {
  struct Field {
    unsigned token;
    std::size_t byte;
    float lowest, highest, reached;
  };
  constexpr Field kFields[] = {{5, 12, 0, 99.9f, 4}, {8, 4, -180, 180, 4},  {8, 16, 0, 99.9f, 1},
                               {8, 24, 20, 200, 40}, {9, 0, 10, 99.9f, 50}, {9, 4, -99, 180, 4},
                               {2, 0, 0, 99.9f, 30}, {2, 12, -180, 180, 4}};
  Station station = Coil(1, {.logBlocks = 2560});
  Reader reader(station);
  for (const Field& field : kFields) {
    const std::set<float>& values = reader.values.at({field.token, field.byte});
    const bool fits = *values.begin() >= field.lowest && *values.rbegin() <= field.highest;
    EXPECT_TRUE(fits && *values.rbegin() >= field.reached) << field.token << " " << field.byte;
  }
  EXPECT_LE(*reader.words.at({7, 6}).rbegin(), 99u);
  for (const unsigned error : {0x0108u, 0x01FFu}) {
    EXPECT_TRUE(reader.words.at({error, 2}).contains(0) && reader.words.at({error, 2}).size() > 1);
  }
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
               {"sysreset=0", 0xC000, -365 * 86'400 - 28'800}};
  Station station = Coil(7);
  for (std::int64_t hours = 0; const auto& c : cases) {
    EXPECT_EQ(AnswerOf(station, c.line), "");
    station.Advance(hours * 3'600'000 + 3000);
    const Reader reader(station);
    EXPECT_EQ(reader.newest, c.token) << c.line;
    const std::int64_t clock = kStart + c.ahead + hours * 3600;
    EXPECT_EQ(reader.times.back(), static_cast<std::uint64_t>(clock) * 1000) << c.line;
    station.Advance(++hours * 3'600'000);
  }
}

/// Reads what is newer than a reader's last block, up to a block of the same second that it has;
/// says how many it had. Blocks are the oldest first.
std::size_t Download(Station& station, std::vector<std::string>& stored) {
  std::vector<std::string> fresh;  // the newest first
  const bool old = !stored.empty();
  const auto read = [&](int from, int to) {
    for (int n = from; n >= to; --n) {
      const std::string block = Block(station, n);
      if (block.empty() || (old && Hex(block, 0, 4) < Hex(stored.back(), 0, 4))) return;
      fresh.push_back(block);
    }
  };
  const int first = Number(station, "fi"), last = Number(station, "li");
  read(last, 0);
  if (old && last < first) read(Number(station, "mr") - 1, first);
  const std::size_t all = fresh.size();
  while (!fresh.empty() && std::find(stored.begin(), stored.end(), fresh.back()) != stored.end()) {
    fresh.pop_back();
  }
  stored.insert(stored.end(), fresh.rbegin(), fresh.rend());
  return all - fresh.size();
}

TEST(DataLog, IsDownloadedWithNothingLostAndNothingDoubled) {
  std::size_t mostDropped = 0;
  for (const int blocks : {256, 40}) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
      Station station = Coil(seed, {.logBlocks = blocks});
      int seen = Number(station, "li");
      std::vector<std::string> written = BlocksFrom(station, 0), stored;
      for (int minute = 0; minute < 7 * 15; ++minute) {
        station.Advance(minute * kMinute);
        for (; seen != Number(station, "li"); written.push_back(Block(station, seen))) {
          seen = (seen + 1) % blocks;
        }
        if (minute % 15 != 0) continue;
        mostDropped = std::max(mostDropped, Download(station, stored));
        ASSERT_EQ(stored, written) << blocks << " blocks, seed " << seed << ", minute " << minute;
      }
      Station jump = Coil(seed, {.logBlocks = blocks});
      jump.Advance(station.nowMs);
      EXPECT_EQ(BlocksFrom(jump, 0), BlocksFrom(station, 0));
    }
  }
  EXPECT_GT(mostDropped, 1u) << "neighbours share a second";
}

TEST(DataLog, IsOddOnRequest) {
  Station splitting = Coil(3, {.logBlocks = 64, .splitRecords = true});
  std::size_t running = 0;
  for (int hour = 1; hour < 60; ++hour) {
    splitting.Advance(hour * 3'600'000);
    running += Reader(splitting).starts.size();  // it begins with a whole record
    const std::string first = Block(splitting, 0);
    EXPECT_EQ(Hex(first, 10 + Hex(first, 8, 2), 2), 12 + Hex(first, 8, 2));
  }
  EXPECT_GT(running, 9u);
  Station spoiling = Coil(3, {.oddRecords = true});
  Reader reader(spoiling);
  for (const unsigned token : OddLogTokens()) EXPECT_TRUE(reader.tokens.contains(token)) << token;
  EXPECT_TRUE(reader.words.at({2, 12}).contains(0x7FC0)) << "absent";
  EXPECT_TRUE(reader.lengths[2].contains(48) || reader.lengths[4].contains(48)) << "no mode";
  EXPECT_TRUE(std::any_of(reader.lengths.begin(), reader.lengths.end(),
                          [](const auto& of) { return *of.second.rbegin() > 256; }));
}

TEST(DataLog, IsClearedAndBeginsAgain) {
  std::int64_t now = 0;
  Bus bus({.seed = 1, .clock = [&] { return now; }, .extras = {.logBlocks = 65534}});
  EXPECT_EQ(bus.Answer("B4:fread. log.h 0 *"), "name=LOG,blocks=65534,size=256");
  EXPECT_EQ(bus.Answer("B4:fsize# log mr,FREAD# LOG 65533"), "65534");
  EXPECT_EQ(bus.Answer("B4:esplogclear=1"), "<<value out of range>>");
  EXPECT_EQ(bus.Answer("B4:esplogclear=0,FREAD# LOG 0,fsize# log fi,fsize# log li"), "0\r\n0");
  now = 2 * 3'600'000;
  EXPECT_NE(bus.Answer("B4:FREAD# LOG 0"), "");
  EXPECT_EQ(bus.Answer("B5:FREAD# LOG 0"), "<<unknown: fread>>");
}

}  // namespace
}  // namespace ostrel::simulator
