#include "simulator/fault.h"

#include <charconv>
#include <system_error>

#include "simulator/reply_form.h"

namespace ostrel::simulator {

namespace {

constexpr int kLate = 3000;  // ms
constexpr int kPause = 5;    // ms between the bytes of a reply that comes in pieces
constexpr int kGarbageLength = 64;
// Below 9 all are control characters that no device sends.
constexpr int kHarmfulCharacters = 9;

std::vector<Portion> InPieces(const std::string& reply) {
  std::vector<Portion> portions;
  portions.reserve(reply.size());
  for (const char byte : reply) portions.push_back({std::string(1, byte), kPause});
  return portions;
}

std::string EchoOf(const std::string& reply) {
  return reply.substr(0, reply.find(kLineEnd) + kLineEnd.size());
}

}  // namespace

struct LineFault::Entry {
  std::string_view name;
  Kind kind;
  std::string_view help;
};

const LineFault::Entry LineFault::kEntries[] = {
    {"silent", Kind::kSilent, "no reply"},
    {"late", Kind::kLate, "the reply comes 3 s late"},
    {"split", Kind::kSplit, "each byte of the reply comes by itself, 5 ms after the one before"},
    {"lost-first", Kind::kLostFirst, "the first byte of the reply is lost"},
    {"doubled", Kind::kDoubled, "the reply comes twice"},
    {"garbage", Kind::kGarbage, "64 random bytes instead of the answer, between echo and end"},
    {"truncated", Kind::kTruncated, "the reply breaks off in the middle"},
    {"endless", Kind::kEndless, "the echo, then text until the next line comes"},
    {"drop-link", Kind::kDropLink, "the link is closed instead of a reply"},
};

std::optional<LineFault> LineFault::Parse(std::string_view text, std::uint32_t seed) {
  const std::size_t colon = text.find(':');
  LineFault fault;
  fault.random_ = Random(seed);
  for (const Entry& entry : kEntries) {
    if (entry.name == text.substr(0, colon)) fault.kind_ = entry.kind;
  }
  if (fault.kind_ == Kind::kNone) return std::nullopt;
  if (colon == std::string_view::npos) return fault;
  const char* const textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data() + colon + 1, textEnd, fault.line_);
  if (error != std::errc() || end != textEnd || fault.line_ == 0) return std::nullopt;
  return fault;
}

std::string LineFault::Help() {
  constexpr std::size_t kNameWidth = 12;
  std::string help;
  for (const Entry& entry : kEntries) {
    std::string name(entry.name);
    name.resize(kNameWidth, ' ');
    help += "  " + name + std::string(entry.help) + "\n";
  }
  return help;
}

bool LineFault::Hits(std::uint64_t line) const {
  return kind_ != Kind::kNone && (line_ == 0 || line_ == line);
}

std::vector<Portion> LineFault::Instead(const std::string& reply) {
  switch (kind_) {
    case Kind::kSilent:
      return {};
    case Kind::kLate:
      return {{reply, kLate}};
    case Kind::kSplit:
      return InPieces(reply);
    case Kind::kLostFirst:
      return {{reply.substr(1)}};
    case Kind::kDoubled:
      return {{reply}, {reply}};
    case Kind::kGarbage:
      return {{WithGarbage(reply)}};
    case Kind::kTruncated:
      return {{reply.substr(0, reply.size() / 2)}};
    case Kind::kEndless:
      return {{EchoOf(reply)}, {{}, 0, Portion::Kind::kEndless}};
    case Kind::kDropLink:
      return {{{}, 0, Portion::Kind::kDropLink}};
    case Kind::kNone:
      break;
  }
  return {{reply}};
}

std::string LineFault::WithGarbage(const std::string& reply) {
  std::string garbage;
  while (garbage.size() < kGarbageLength) {
    const char byte = static_cast<char>(random_.Below(256));
    if (byte != kReplyEnd.back()) garbage += byte;
  }
  garbage[random_.Below(kGarbageLength)] = static_cast<char>(random_.Below(kHarmfulCharacters));
  return EchoOf(reply) + garbage + std::string(kReplyEnd);
}

}  // namespace ostrel::simulator
