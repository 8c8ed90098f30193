#pragma once

#include <QDialog>
#include <string>

#include "link/connection_test.h"
#include "device/desk.h"
#include "widgets/captions.h"
#include "wire/connections.h"

class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace ostrel {

/// The dialog with the connection list. While a test runs it can be closed, nothing else.
class frmConnections : public QDialog {
 public:
  /// Returns when the user closes it.
  static void DoDialog(QWidget* parent, const Desk& desk, ConnectionTest& tester);

  /// Also ends a test that is going on.
  void reject() override;

 private:
  frmConnections(QWidget* parent, const Desk& desk, ConnectionTest& tester);
  void Arrange();
  /// Shows the stored connections with this one selected.
  void Fill(const std::string& selected);
  void EnableButtons();
  /// The name of the selected connection; empty when there is none.
  std::string Selected() const;
  void Add();
  void Change();
  void Remove();
  void Test();
  void Use();

  const Desk desk_;
  ConnectionTest& tester_;
  Captions captions_;
  Connections connections_;
  bool testing_ = false;

  QTreeWidget* lstConnections;
  QPlainTextEdit* txtResult;
  QPushButton* butAdd;
  QPushButton* butChange;
  QPushButton* butRemove;
  QPushButton* butTest;
  QPushButton* butUse;
};

}  // namespace ostrel
