#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "base/messages.h"
#include "widgets/captions.h"
#include "wire/connections.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ostrel {

/// The dialog with the data of one connection. Only what fits its kind is shown.
class frmConnection : public QDialog {
 public:
  /// Data that can be stored, of a new connection or in place of `before`; nothing when the user
  /// cancels.
  static std::optional<Connection> DoDialog(QWidget* parent, const Messages& messages,
                                            const Connections& connections,
                                            const std::optional<Connection>& before);

  /// A kind of connection in the user's language; the kind itself when it is not known.
  static QString KindText(const Messages& messages, const std::string& kind);

 private:
  frmConnection(QWidget* parent, const Messages& messages, const Connections& connections);
  void Arrange();
  void FillChoices();
  void FillDevices();
  void Show(const Connection& connection);
  Connection Data() const;
  /// Shows the rows of the kind, what is wrong with the data, and whether they can be taken.
  void Check();

  Captions captions_;
  const Connections& connections_;
  std::string before_;  // the name of the connection that is changed; empty for a new one

  QFormLayout* form_;
  QLineEdit* edtName;
  QComboBox* cmbKind;
  QLineEdit* edtHost;
  QLineEdit* edtPort;
  QComboBox* cmbDevice;
  QLabel* lblDevice;  // what the system says of the chosen device
  QComboBox* cmbBaud;
  QComboBox* cmbParity;
  QComboBox* cmbStopBits;
  QLabel* lblProblem;
  QPushButton* ButOK;
};

}  // namespace ostrel
