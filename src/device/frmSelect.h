#pragma once

#include <QDialog>
#include <optional>
#include <string>
#include <vector>

#include "app/messages.h"
#include "device/stations.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace ostrel {

/// The dialog in which the user picks one of the stations of a connection.
class frmSelect : public QDialog {
 public:
  /// The picked station; nothing when the user cancels. The station whose address is `preselected`
  /// is selected at first, else the current one.
  static std::optional<Station> DoDialog(QWidget* parent, const Messages& messages,
                                         const std::string& connection,
                                         const std::vector<Station>& stations,
                                         const std::string& preselected);

 private:
  explicit frmSelect(QWidget* parent);
  void Arrange();
  void Captions(const Messages& messages);
  void Fill(const std::vector<Station>& stations, const std::string& preselected);

  QLabel* connectionLabel_;
  QLineEdit* txtVerbindung;
  QLabel* stationsLabel_;
  QListWidget* lstStations;
  QLineEdit* txtStation;  // the selected row with its whole name
  QPushButton* ButOK;
  QPushButton* butCancel;
};

}  // namespace ostrel
