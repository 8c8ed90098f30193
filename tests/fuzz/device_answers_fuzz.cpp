// Feeds what devices answer where the program finds out who they are. In the input '|' stands
// between the answers to "dirn_", "ver.", "sysSN#" and the question for all stations.

#include <algorithm>
#include <cstddef>
#include <string>

#include "base/text.h"
#include "kit/kit.h"
#include "require.h"
#include "wire/answers.h"

namespace ostrel {
namespace {

std::string Popped(std::string& input) {
  const std::size_t cut = std::min(input.find('|'), input.size());
  const std::string part = input.substr(0, cut);
  input.erase(0, cut + 1);
  return part;
}

/// A device is selected by what it told, or nothing is, and that was said.
void Selecting(kit::Run& run, kit::ScriptedDialogs& dialogs, const std::string& version,
               const std::string& serial) {
  const bool selected = run.session.DeviceSelectByAddress("B1:");
  OSTREL_REQUIRE(selected == dialogs.shown.empty());
  OSTREL_REQUIRE(selected == run.session.Selected().GetKenn().has_value());
  if (!selected) return;
  const Selection& shown = run.session.Selected();
  OSTREL_REQUIRE(!shown.GetKenn()->empty() && !IsErrorAnswer(version));
  OSTREL_REQUIRE(shown.Typ() == TypeFromVerAnswer(version) && !IsErrorAnswer(shown.Typ()));
  OSTREL_REQUIRE(shown.Serial() == (IsErrorAnswer(serial) ? "" : TrimAnswer(serial)));
  OSTREL_REQUIRE(run.session.Device().Model() == shown.GetTypeCode());
}

void Listing(kit::Run& run, const std::string& all) {
  StationList list = run.session.ListOfStations([](int) { return true; });
  const Error error = list.Fill("B1:");
  OSTREL_REQUIRE(StationList::Usable(error));
  if (IsErrorAnswer(all)) OSTREL_REQUIRE(error && list.Rows().empty());
  OSTREL_REQUIRE(list.Rows().size() <= StationList::kMost);
  OSTREL_REQUIRE(list.Preselected() == 0 || list.Preselected() < list.Rows().size());
  for (const Station& row : list.Rows()) {
    OSTREL_REQUIRE(!row.address.empty() && AddressPart(row.KennName()) == row.address);
    const std::size_t columns = CharCount(Fitted(row.KennName(), 12)) + 11;
    OSTREL_REQUIRE(CharCount(row.ListLine()) >= columns);
  }
}

void Run(std::string input) {
  static kit::World world;
  const std::string name = Popped(input), version = Popped(input), serial = Popped(input);
  world.dialogs.shown.clear();
  world.server.sent.clear();
  world.server.opened.clear();
  world.server.created.clear();
  world.server.answers = {{"B1:dirn_", name},           {"B1:ver.", version},
                          {"B1:sysSN#", serial},        {"AA:dirn_\r\n", name + "B1:"},
                          {"aa:passwort- 0,dr,!", "5"}, {R"(all,station&#,!+";", ver.+)", input}};
  kit::Run run(world);
  Selecting(run, world.dialogs, version, serial);
  Listing(run, input);
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  ostrel::Run(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
