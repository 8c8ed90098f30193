#pragma once

#include <QDialog>
#include <string>

#include "app/service.h"
#include "wire/connections.h"

class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace ostrel {

/// The dialog with the connection list. While a test runs it can be closed, nothing else.
class frmConnections : public QDialog {
 public:
  /// Returns when the user closes it.
  static void DoDialog(QWidget* parent, Service& service);

  /// Also ends a test that is going on.
  void reject() override;

 private:
  frmConnections(QWidget* parent, Service& service);
  QString Text(int id) const;
  QPushButton* Button(const char* name, int id, void (frmConnections::*command)());
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

  Service& service_;
  Connections connections_;
  bool testing_ = false;

  QTreeWidget* lstConnections;
  QPlainTextEdit* txtResult;
  QPushButton* butAdd;
  QPushButton* butChange;
  QPushButton* butRemove;
  QPushButton* butTest;
  QPushButton* butUse;
  QPushButton* butClose;
};

}  // namespace ostrel
