#include "device/tokens.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "device/session.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

// What gives tokens.

std::optional<Reading> Session::ToRead() {
  if (!selection_.GetKenn()) ports_.texts.Warn(text::kNoDeviceSelected);
  if (!selection_.GetKenn() || !Ready() || !selection_.GetKenn()) return std::nullopt;
  return Reading(*this, *selection_.GetKenn(), Reading::Right::kRead);
}

std::optional<Writing> Session::ToWrite() {
  if (!ToRead()) return std::nullopt;
  const std::optional<std::string> address = selection_.GetKennSel();
  if (!address) return std::nullopt;
  return Writing(*this, *address, Reading::Right::kWrite);
}

std::optional<Writing> Session::ToStation(const std::string& address) {
  if (!Ready()) return std::nullopt;
  const Writing token(*this, address, Reading::Right::kWrite);
  if (const Error error = Refusal(token)) {
    ports_.texts.Warn(error);
    return std::nullopt;
  }
  return token;
}

std::unique_ptr<OwnLine> Session::ToOwnLine() {
  if (!ToRead()) return nullptr;
  auto link = std::make_unique<Link>(ports_.automation, ports_.settings, ports_.clock,
                                     ports_.programFolder);
  link->OfferChooser(false);
  link->LoadSettings();
  std::unique_ptr<OwnLine> line(
      new OwnLine(std::move(link), link_.ConnectionName(),
                  {selection_.KennName(), selection_.Typ(), selection_.Serial()}));
  if (const Error error = line->Open()) {
    ports_.texts.Warn(error);
    return nullptr;
  }
  return line;
}

std::unique_ptr<Online> Session::ToOnline() {
  if (!ToWrite()) return nullptr;
  const Link::Opened opened = link_.ChannelOpen(link_.ConnectionName(), ChannelKind::kOnline);
  if (opened.error) {
    ports_.texts.Warn(opened.error);
    return nullptr;
  }
  return std::unique_ptr<Online>(new Online(link_, opened.channel));
}

// What tokens do.

Error Session::Refusal(const Reading& token) const {
  if (token.selection_ != selections_) return {text::kOtherSelection, {}};
  // Whoever looks for a device is not bound to the one that was selected before.
  const bool locked = locked_ && identifying_ == 0 && token.right_ == Reading::Right::kWrite;
  return locked ? Error{text::kWritingLocked, {}} : Error();
}

Answer Session::Exchange(const Reading& token, const std::string& line) {
  if (Error error = Refusal(token)) return {std::move(error), {}};
  return link_.CommandExchangeCode(link_.CurrentChannel(), line);
}

Error Session::HandOver(const Reading& token, const std::string& line) {
  if (Error error = Refusal(token)) return error;
  return link_.CommandSend(link_.CurrentChannel(), line);
}

Reading::Reading(Session& session, std::string address, Right right)
    : session_(&session),
      address_(std::move(address)),
      selection_(session.selections_),
      right_(right) {}

Answer Reading::TryBare(std::string_view line) const {
  return session_->Exchange(*this, std::string(line));
}

Answer Reading::Try(std::string_view line) const {
  return TryBare(std::string(address_).append(line));
}

bool Reading::Passes(const Answer& answer, std::string_view line) const {
  if (answer.Ok() && !IsErrorAnswer(answer.text)) return true;
  const std::string sent(line);
  session_->ports_.texts.Warn(
      answer.Ok()
          ? Error{text::kDeviceReplied, Masked(sent) + "\n" + MaskedAnswer(answer.text, sent)}
          : answer.error);
  return false;
}

std::optional<std::string> Reading::AskBare(std::string_view line) const {
  Answer answer = TryBare(line);
  return Passes(answer, line) ? std::optional(std::move(answer.text)) : std::nullopt;
}

std::optional<std::string> Reading::Ask(std::string_view line) const {
  return AskBare(std::string(address_).append(line));
}

Reading::TimeoutFor Reading::Timeout(int seconds) const {
  return TimeoutFor(session_->link_, seconds);
}

Reading::TimeoutFor::TimeoutFor(Link& link, int seconds)
    : link_(link), earlier_(link.ChannelTimeoutSet(seconds)) {}

Reading::TimeoutFor::~TimeoutFor() {
  link_.ChannelTimeoutSet(earlier_);
}

bool Writing::SendBlock(std::string lines) const {
  return !session_->Refusal(*this) &&
         session_->commands_.DevSendLines(address_ + ";", std::move(lines), {}, false, true);
}

bool Writing::SendOnly(std::string_view line) const {
  const Error error = session_->HandOver(*this, std::string(address_).append(line));
  session_->ports_.texts.Warn(error);
  return !error;
}

OwnLine::OwnLine(std::unique_ptr<Link> link, std::string connection, Station station)
    : link_(std::move(link)), connection_(std::move(connection)), station_(std::move(station)) {}

OwnLine::~OwnLine() = default;

void OwnLine::GiveUp() {
  link_->GiveUp();
}

Error OwnLine::Open() {
  return link_->ConnectionOpen(connection_);
}

/// Whether the station is the one that answers at its address.
Error OwnLine::MakeSure() {
  const std::string address = AddressPart(station_.kennName);
  const auto ask = [&](const char* line) {
    return link_->CommandExchangeCode(link_->CurrentChannel(), address + line);
  };
  const Answer version = ask("ver.");
  const Answer serial = version.Ok() ? ask("sysSN#") : version;
  if (!serial.Ok()) return serial.error;
  const std::string number = IsErrorAnswer(serial.text) ? "" : TrimAnswer(serial.text);
  if (TypeFromVerAnswer(version.text) != station_.typ || number != station_.serial) {
    return {text::kOtherDevice, VisibleLine(version.text)};
  }
  link_->Identified();
  return {};
}

Answer OwnLine::Try(std::string_view line) {
  link_->LookForLoss();
  if (link_->ConnState() != LinkState::kChannel || link_->Lost()) {
    link_->Doubt();
    Error error = Open();
    if (!error) error = MakeSure();
    if (error) return {std::move(error), {}};
  }
  const std::string address = AddressPart(station_.kennName);
  return link_->CommandExchangeCode(link_->CurrentChannel(), address.substr().append(line));
}

Online::~Online() {
  link_.ChannelClose(channel_);
}

Error Online::Send(const std::string& bytes) {
  return link_.BytesSend(channel_, bytes);
}

Answer Online::Receive() {
  return link_.BytesReceive(channel_);
}

}  // namespace ostrel
