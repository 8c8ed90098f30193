#pragma once

#include <QDialog>
#include <functional>
#include <string>

#include "base/messages.h"
#include "device/station_list.h"
#include "widgets/captions.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace ostrel {

/// The dialog in which the user picks one of the stations of a connection, or of another one that
/// he changes to. All entries fill the list first; where that gives none to choose from, the dialog
/// does not open and the error is returned.
class frmSelect : public QDialog {
 public:
  /// With the list that `fill` fills, and with this message as the title.
  static StationChoice DoDialog(QWidget* parent, const Messages& messages, StationList& list,
                                int titleId, const std::function<Error()>& fill);
  /// With all stations that the rights allow; the one whose address is `preselected` is selected at
  /// first, else the current one.
  static StationChoice DoDialogTxtLong(QWidget* parent, const Messages& messages, StationList& list,
                                       int titleId, const std::string& preselected);
  /// The same under the usual title.
  static StationChoice DoDialogQuick(QWidget* parent, const Messages& messages, StationList& list,
                                     const std::string& preselected);

  /// While an exchange is under way this takes effect when it has returned.
  void reject() override;

 private:
  frmSelect(QWidget* parent, const Messages& messages, StationList& list);
  void Arrange();
  void ShowRows();
  void ShowStation(int row);
  void ChangeConnection();
  void SetWaiting(bool waiting);

  const Messages& messages_;
  StationList& list_;
  Captions captions_;
  Error error_;           // with which the dialog ended
  bool waiting_ = false;  // an exchange is under way, or the user chooses a connection
  bool rejected_ = false;

  QLineEdit* txtVerbindung;
  QPushButton* butConnection;
  QListWidget* lstStations;
  QLineEdit* txtStation;  // the selected row with its whole name
  QPushButton* ButOK;
  QPushButton* butHelp;
};

}  // namespace ostrel
