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
/// or a code that nobody has shown yet.
struct StationChoice {
  std::optional<Station> station = {};
  int code = 0;
};

/// The stations among which the user selects: as many of the connection's as his rights reach, or
/// only what the current station tells. The connection may be changed meanwhile.
class StationList {
 public:
  static constexpr std::size_t kMost = 256;
  /// Ended by the user, or for a reason that was shown.
  static constexpr int kEnded = -1;
  /// The list is as it was.
  static constexpr int kUnchanged = -2;

  StationList(Link& link, Commands& commands, Dialogs& dialogs, const Messages& messages,
              RightsDisplay rights);

  /// Fills the list; `wanted` is the address to preselect. 0 or a code, not shown: kEnded, 1280 for
  /// an error answer, text::kStationsIncomplete when there are more than kMost stations.
  int Fill(const std::string& wanted);
  /// Fills it with addresses from a single exchange, and with names when wanted; `wanted` is the
  /// text of the row to preselect. 0, text::kStationsIncomplete or kEnded.
  int FillShort(bool names, const std::string& wanted);
  /// Lets the user choose another connection and fills the list again.
  /// What Fill gives, text::kNoneRestored when there is no connection any more, or kUnchanged: why
  /// is shown.
  int ConnectionChange();
  /// Whether there is a list to choose from after a filling that ended so.
  static bool Usable(int code);
  /// Shows with what code a filling ended, and what the device said to it.
  void Tell(int code) const;

  const std::vector<Station>& Rows() const { return rows_; }
  /// The row to begin with; 0 when none is special.
  std::size_t Preselected() const { return preselected_; }
  /// The name of the connection.
  std::string Connection() { return link_.ConnectionName(); }

 private:
  int AskCurrent(std::string& address);
  int AskGrant(int& level);
  int AskRights(bool& limited);
  int AskStations(bool limited, const std::string& current);
  int Take(std::string answer, const std::string& current);
  int Ask(const std::string& line, std::string& answer);

  Link& link_;
  Commands& commands_;
  Dialogs& dialogs_;
  const Messages& messages_;
  RightsDisplay rights_;
  std::vector<Station> rows_;
  std::size_t preselected_ = 0;
  std::string reply_;  // the error answer, where a filling ended with 1280
};

}  // namespace ostrel
