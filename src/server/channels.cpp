#include "server/channels.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "wire/codes.h"

namespace ostrel {
namespace {

// On one connection, of all clients and of one.
constexpr std::ptrdiff_t kMaxChannels = 256, kMaxOfClient = 64;
constexpr int kLastNumber = 32767;

bool SameWay(const Connection& a, const Connection& b) {
  return a.kind == b.kind && a.host == b.host && a.port == b.port && a.device == b.device &&
         a.baud == b.baud && a.parity == b.parity && a.stopBits == b.stopBits;
}

}  // namespace

Channels::~Channels() {
  // The lines say good-bye to their devices; nobody is told any more.
  for (const auto& [name, line] : lines_) line->bus->disconnect(this);
}

Channel* Channels::Find(int client, int number) {
  const auto found = channels_.find(number);
  return found == channels_.end() || found->second.client != client ? nullptr : &found->second;
}

void Channels::Open(int client, const std::string& name, int kind, const Reply& reply) {
  const auto connection = Connections(settings_).Find(name);
  if (!connection) {
    reply(ObjectError(Code::kNoSuchConnection, "there is no connection \"" + name + "\""));
    return;
  }
  if (!Connections::Valid(*connection)) {
    reply(ObjectError(Code::kFaultyConnection,
                      "the data of connection \"" + connection->name + "\" are faulty"));
    return;
  }
  Line* line = LineFor(*connection);
  if (line == nullptr) {
    reply(ObjectError(Code::kFaultyConnection,
                      "connection \"" + connection->name + "\" was changed while it is in use"));
    return;
  }
  if (const AutomationResult refusal = Refusal(*line, client, kind); !refusal.Ok()) {
    reply(refusal);
    return;
  }
  openings_.push_back({client, kind, line, reply});
  line->bus->Hold();
  if (line->bus->IsOpen()) FinishOpenings(*line, 0, {});
}

/// The line of a connection; null while it is in use with other data than these.
Line* Channels::LineFor(const Connection& connection) {
  const std::string key = LowerAscii(connection.name);
  const auto found = lines_.find(key);
  if (found != lines_.end()) {
    Line* line = found->second.get();
    if (SameWay(line->connection, connection)) return line;
    const bool opening = std::any_of(openings_.begin(), openings_.end(),
                                     [line](const Opening& other) { return other.line == line; });
    if (opening || !line->channels.empty()) return nullptr;
  }
  auto& line = lines_[key];
  if (line == nullptr) line = std::make_unique<Line>();
  line->connection = connection;
  MakeBus(*line);
  return line.get();
}

void Channels::MakeBus(Line& line) {
  line.bus = std::make_unique<BusConnection>(
      line.connection.name,
      [this, way = line.connection](bool again) { return portMaker_.Make(way, again); });
  line.bus->TraceTo(trace_);
  Line* const self = &line;
  BusConnection* const bus = line.bus.get();
  connect(bus, &BusConnection::Opened, this, [this, self] { FinishOpenings(*self, 0, {}); });
  connect(bus, &BusConnection::OpenFailed, this, [this, self](int code, const std::string& reason) {
    FinishOpenings(*self, code, reason);
  });
  connect(bus, &BusConnection::Answered, this, &Channels::OnAnswered);
  connect(bus, &BusConnection::Failed, this, &Channels::OnFailed);
  connect(bus, &BusConnection::PortLost, this,
          [this, self](int code, const std::string& reason) { TellLost(*self, code, reason); });
  connect(bus, &BusConnection::RawReceived, this,
          [this, self](const std::string& bytes) { OnRaw(self->onlineChannel, bytes); });
  connect(bus, &BusConnection::RawReady, this, [this, self] {
    FinishOnline(*self, {self->onlineChannel, 0, {}});
  });
  connect(bus, &BusConnection::RawFailed, this,
          [this, self](int code, const std::string& reason) { OnRawFailed(*self, code, reason); });
}

AutomationResult Channels::Refusal(const Line& line, int client, int kind) const {
  const auto own = [&](int number) { return channels_.at(number).client == client; };
  const auto opening = [&](const Opening& other) {
    return other.line == &line && other.client == client;
  };
  const auto count = std::count_if(line.channels.begin(), line.channels.end(), own) +
                     std::count_if(openings_.begin(), openings_.end(), opening);
  if (count >= kMaxOfClient || std::ssize(line.channels) >= kMaxChannels) {
    return ObjectError(Code::kTooManyChannels,
                       "too many channels on \"" + line.connection.name + "\"");
  }
  if (kind == ChannelKind::kOnline && line.onlineChannel != 0) {
    return ObjectError(Code::kOnlineTaken,
                       "an online channel is open on \"" + line.connection.name + "\"");
  }
  return {};
}

void Channels::FinishOpenings(Line& line, int code, const std::string& reason) {
  std::vector<Opening> mine;
  std::erase_if(openings_, [&](const Opening& opening) {
    if (opening.line != &line) return false;
    mine.push_back(opening);
    return true;
  });
  for (const Opening& opening : mine) {
    if (code != 0) {
      opening.reply(ObjectError(code, "\"" + line.connection.name + "\": " + reason));
    } else if (const AutomationResult refusal = Refusal(line, opening.client, opening.kind);
               !refusal.Ok()) {
      opening.reply(refusal);
    } else {
      Add(opening);
    }
  }
  ReleaseIfUnused(line);
}

void Channels::Add(const Opening& opening) {
  Line& line = *opening.line;
  const int number = FreeNumber();
  Channel& channel = channels_[number];
  channel.number = number;
  channel.client = opening.client;
  channel.kind = opening.kind;
  channel.line = &line;
  if (opening.kind == ChannelKind::kOnline) {
    line.onlineChannel = number;
    line.onlineReply = opening.reply;
    SetFrame(channel, FrameMode::kTransparent);
    // The others know before this client can: their next CSend is refused.
    TellOnline(line);
    line.channels.push_back(number);
    return;
  }
  line.channels.push_back(number);
  // The client learns the number before it is told anything about the channel.
  opening.reply({number, 0, {}});
  if (line.onlineChannel != 0) emit OnlineChanged(opening.client, number, true);
}

/// The online channel can be used, or cannot be had.
void Channels::FinishOnline(Line& line, const AutomationResult& result) {
  const Reply reply = std::exchange(line.onlineReply, nullptr);
  if (!reply) return;
  const int number = line.onlineChannel, client = channels_[number].client;
  if (!result.Ok()) Close(number);
  reply(result);
  if (result.Ok()) emit OnlineChanged(client, number, true);
}

int Channels::FreeNumber() {
  do {
    lastNumber_ = lastNumber_ % kLastNumber + 1;
  } while (channels_.contains(lastNumber_));
  return lastNumber_;
}

void Channels::SetFrame(Channel& channel, int frame) {
  if (channel.frame == frame) return;
  channel.frame = frame;
  channel.Clear();
  channel.line->bus->SetRaw(frame == FrameMode::kTransparent);
}

AutomationResult Channels::StartBootloader(const std::string& name) {
  const auto connection = Connections(settings_).Find(name);
  if (!connection || connection->kind != "simulator") {
    return ObjectError(Code::kNoSuchConnection,
                       "there is no simulated connection \"" + name + "\"");
  }
  portMaker_.SimulationOf(*connection).bus.StartBootloader();
  return {};
}

void Channels::Close(int number) {
  const auto found = channels_.find(number);
  if (found == channels_.end()) return;
  Line& line = *found->second.line;
  channels_.erase(found);
  std::erase(line.channels, number);
  line.bus->Forget(number);
  if (line.onlineChannel == number) {
    line.onlineChannel = 0;
    line.onlineReply = nullptr;
    line.bus->SetRaw(false);
    TellOnline(line);
  }
  ReleaseIfUnused(line);
}

void Channels::ClientGone(int client) {
  std::erase_if(openings_, [client](const Opening& opening) { return opening.client == client; });
  std::vector<int> own;
  for (const auto& [number, channel] : channels_) {
    if (channel.client != client) continue;
    own.push_back(number);
    if (channel.line->onlineChannel == number) channel.line->bus->OweReset();
  }
  for (const int number : own) Close(number);
  for (const auto& [name, line] : lines_) ReleaseIfUnused(*line);
}

void Channels::ReleaseIfUnused(Line& line) {
  const bool opening = std::any_of(openings_.begin(), openings_.end(),
                                   [&line](const Opening& other) { return other.line == &line; });
  if (line.channels.empty() && !opening) line.bus->Release();
}

void Channels::TellOnline(const Line& line) {
  const std::vector<int> numbers = line.channels;
  for (const int number : numbers) {
    const auto channel = channels_.find(number);
    if (channel == channels_.end()) continue;
    emit OnlineChanged(channel->second.client, number, line.onlineChannel != 0);
  }
}

/// Channels on which nothing was under way learn of the loss with their next "CStatus".
void Channels::TellLost(const Line& line, int code, const std::string& reason) {
  const std::vector<int> numbers = line.channels;
  for (const int number : numbers) {
    const auto found = channels_.find(number);
    if (found == channels_.end()) continue;
    if (const auto notice = found->second.PortLost(code, reason)) {
      emit StatusChanged(found->second.client, *notice);
    }
  }
}

void Channels::OnAnswered(int number, int exchange, const std::string& answer) {
  const auto found = channels_.find(number);
  if (found == channels_.end() || !found->second.Awaits(exchange)) return;  // given up
  emit StatusChanged(found->second.client, found->second.Answer(answer));
}

void Channels::OnFailed(int number, int exchange, int code, const std::string& reason) {
  const auto found = channels_.find(number);
  if (found == channels_.end() || !found->second.Awaits(exchange)) return;
  emit StatusChanged(found->second.client, found->second.Fail(code, reason));
}

void Channels::OnRaw(int number, const std::string& bytes) {
  const auto found = channels_.find(number);
  if (found == channels_.end()) return;
  if (const auto notice = found->second.AddRaw(bytes)) {
    emit StatusChanged(found->second.client, *notice);
  }
}

void Channels::OnRawFailed(Line& line, int code, const std::string& reason) {
  if (line.onlineReply) {
    FinishOnline(line, ObjectError(code, "\"" + line.connection.name + "\": " + reason));
    return;
  }
  const auto found = channels_.find(line.onlineChannel);
  if (found == channels_.end()) return;
  emit StatusChanged(found->second.client, found->second.Fail(code, reason));
}

}  // namespace ostrel
