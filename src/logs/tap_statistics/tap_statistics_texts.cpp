#include "logs/tap_statistics/tap_statistics_texts.h"

#include "base/string_table.h"

namespace ostrel {

namespace {

constexpr TableEntry kTable[] = {
    {text::kTapPosition, {"Stufe", "Tap position", "Prise"}},
    {text::kCounter, {"Stufungen", "Tap changes", "Changements"}},
    {text::kDelete, {"L&öschen ...", "D&elete ...", "&Effacer ..."}},
    {text::kCopy, {"&Kopieren", "&Copy", "&Copier"}},
    {text::kChooseDeviceFirst,
     {"Wählen Sie ein Gerät aus, um seine Statistik zu lesen.",
      "Select a device to read its statistics.",
      "Choisissez un appareil pour lire sa statistique."}},
    {text::kNotReadYet,
     {"Noch nicht gelesen. \"Lesen\" oder F5 holt die Statistik aus dem Gerät.",
      "Not read yet. \"Read\" or F5 fetches the statistics from the device.",
      "Pas encore lue. \"Lire\" ou F5 demande la statistique à l'appareil."}},
    {text::kCountersMissing,
     {"Das Gerät hat nicht für jede dieser Stufen genau einen Zähler geschickt:",
      "The device did not send exactly one counter for each of these positions:",
      "L'appareil n'a pas envoyé exactement un compteur pour chacune de ces prises :"}},
};
static_assert(Ascending(kTable, Own(500), kTextsOfAFeature));

}  // namespace

std::span<const TableEntry> TapStatisticsTexts() {
  return kTable;
}

}  // namespace ostrel
