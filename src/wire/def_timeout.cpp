#include "wire/def_timeout.h"

#include <algorithm>
#include <string>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"

namespace ostrel {

namespace {

using Outcome = GivenTimeout::Outcome;

constexpr std::string_view kName = "DefTimeout_s";

AnswerTimeout Limited(int seconds) {
  const int used = std::clamp(seconds, 1, 15);
  return {used, used != seconds};
}

bool IsWholeNumber(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

AnswerTimeout ReadDefTimeout(const SettingsStore& settings) {
  return Limited(ReadInteger(settings.ReadShared(keys::kServerMisc, kName, "10")));
}

Error WriteDefTimeout(SettingsStore& settings, int seconds) {
  const std::string value = std::to_string(seconds), name(kName);
  return settings.Store({{std::string(keys::kServerMisc), name, value},
                         {ProgramKey("ZubServer", "Misc"), name, value}});
}

GivenTimeout StoreDefTimeout(SettingsStore& settings, std::string_view given) {
  const int before = ReadDefTimeout(settings).seconds;
  const std::string_view text = Trim(given);
  if (!IsWholeNumber(text)) return {Outcome::kNoNumber, before};
  const AnswerTimeout wanted = Limited(ReadInteger(text));
  if (WriteDefTimeout(settings, wanted.seconds)) return {Outcome::kNotStored, before};
  return {wanted.corrected ? Outcome::kCorrected : Outcome::kStored, wanted.seconds};
}

void TellCorrected(const Messages& texts, int seconds) {
  const std::string used = std::string(kName) + " = " + std::to_string(seconds);
  texts.Warn(text::kOutOfRange, "\n" + texts.Filled(text::kUsedInstead, used));
}

void Tell(const Messages& texts, const GivenTimeout& came, std::string_view given) {
  const std::string wanted = std::string(kName) + " = " + VisibleLine(Trim(given));
  if (came.outcome == Outcome::kCorrected) TellCorrected(texts, came.seconds);
  if (came.outcome == Outcome::kNoNumber) texts.Warn(text::kOutOfRange, "\n" + wanted);
  if (came.outcome == Outcome::kNotStored) texts.WarnFilled(text::kFileNotWritten, wanted);
}

}  // namespace ostrel
