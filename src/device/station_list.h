#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/dialogs.h"
#include "base/messages.h"
#include "device/rights.h"
#include "device/stations.h"
#include "link/commands.h"
#include "link/link.h"

namespace ostrel {

/// How a dialog with the list of stations ended: the chosen one, nothing when the user cancelled,
/// or an error that nobody has shown yet.
struct StationChoice {
  std::optional<Station> station = {};
  Error error = {};
};

/// The stations among which the user selects: as many of the connection's as his rights reach, or
/// only what the current station tells. The connection may be changed meanwhile.
class StationList {
 public:
  static constexpr std::size_t kMost = 256;
  StationList(Link& link, Commands& commands, Dialogs& dialogs, const Messages& messages,
              RightsDisplay rights);

  /// Fills the list; `wanted` is the address to preselect. What fails is not shown: 1280 for an
  /// error answer, text::kStationsIncomplete when there are more than kMost stations, told where
  /// the user ended it.
  Error Fill(const std::string& wanted);
  /// Fills it with addresses from a single exchange, and with names when wanted; `wanted` is the
  /// text of the row to preselect. text::kStationsIncomplete, or told.
  Error FillShort(bool names, const std::string& wanted);
  /// Lets the user choose another connection and fills the list again: what Fill gives, or
  /// text::kNoneRestored when there is no connection any more. Nothing when the list is as it was:
  /// why is shown.
  std::optional<Error> ConnectionChange();
  /// Whether there is a list to choose from after a filling that ended so.
  static bool Usable(const Error& error);
  /// Shows how a filling ended.
  void Tell(const Error& error) const { messages_.Warn(error); }

  const std::vector<Station>& Rows() const { return rows_; }
  /// The row to begin with; 0 when none is special.
  std::size_t Preselected() const { return preselected_; }
  /// The name of the connection.
  std::string Connection() { return link_.ConnectionName(); }

 private:
  Error AskCurrent(std::string& address);
  Error AskGrant(int& level);
  Error AskRights(bool& limited);
  Error AskStations(bool limited, const std::string& current);
  Error Take(std::string answer, const std::string& current);
  Answer Ask(const std::string& line);

  Link& link_;
  Commands& commands_;
  Dialogs& dialogs_;
  const Messages& messages_;
  RightsDisplay rights_;
  std::vector<Station> rows_;
  std::size_t preselected_ = 0;
};

}  // namespace ostrel
