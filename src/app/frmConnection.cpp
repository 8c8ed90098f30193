#include "app/frmConnection.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSerialPortInfo>
#include <QVBoxLayout>
#include <algorithm>

#include "base/texts.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

/// The name by which an adapter is found again at whatever socket it is plugged in; the path itself
/// where there is none.
QString StableName(const QString& path) {
  const QString device = QFileInfo(path).canonicalFilePath();
  const QDir names(QStringLiteral("/dev/serial/by-id"));
  for (const QFileInfo& name : names.entryInfoList(QDir::System | QDir::Files)) {
    if (name.canonicalFilePath() == device) return name.absoluteFilePath();
  }
  return path;
}

void Choose(QComboBox& box, const std::string& value) {
  box.setCurrentIndex(std::max(box.findData(QString::fromStdString(value)), 0));
}

}  // namespace

frmConnection::frmConnection(QWidget* parent, const Messages& messages,
                             const Connections& connections)
    : QDialog(parent),
      captions_(messages),
      connections_(connections),
      form_(new QFormLayout),
      edtName(Named(new QLineEdit, "edtName")),
      cmbKind(Named(new QComboBox, "cmbKind")),
      edtHost(Named(new QLineEdit, "edtHost")),
      edtPort(Named(new QLineEdit, "edtPort")),
      cmbDevice(Named(new QComboBox, "cmbDevice")),
      lblDevice(Named(new QLabel, "lblDevice")),
      cmbBaud(Named(new QComboBox, "cmbBaud")),
      cmbParity(Named(new QComboBox, "cmbParity")),
      cmbStopBits(Named(new QComboBox, "cmbStopBits")),
      lblProblem(Named(new QLabel, "lblProblem")),
      ButOK(captions_.Button("ButOK", text::kOk, [this] { accept(); })) {
  setObjectName(QStringLiteral("frmConnection"));
  FillChoices();
  FillDevices();
  Arrange();
  for (QLineEdit* edit : {edtName, edtHost, edtPort}) {
    connect(edit, &QLineEdit::textChanged, this, &frmConnection::Check);
  }
  for (QComboBox* box : {cmbKind, cmbDevice, cmbBaud}) {
    connect(box, &QComboBox::currentTextChanged, this, &frmConnection::Check);
  }
}

QString frmConnection::KindText(const Messages& messages, const std::string& kind) {
  const Choice<ConnectionKind>* chosen = Chosen(kConnectionKinds, kind);
  return QString::fromStdString(chosen == nullptr ? kind : messages.Caption(chosen->caption));
}

void frmConnection::FillChoices() {
  for (const auto& kind : kConnectionKinds) {
    cmbKind->addItem(captions_.Text(kind.caption), QLatin1String(kind.stored));
  }
  for (const auto& parity : kParities) {
    cmbParity->addItem(captions_.Text(parity.caption), QLatin1String(parity.stored));
  }
  for (const char* bits : kStopBits) {
    cmbStopBits->addItem(QLatin1String(bits), QLatin1String(bits));
  }
  for (const int baud : {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200}) {
    cmbBaud->addItem(QString::number(baud));
  }
  for (QComboBox* box : {cmbBaud, cmbDevice}) {
    box->setEditable(true);
    // It would make the device /dev/ttyM1 that is typed the device /dev/ttyM10 that is listed.
    box->setCompleter(nullptr);
  }
}

void frmConnection::FillDevices() {
  // A long name of an adapter is no reason for a dialog wider than the screen.
  cmbDevice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cmbDevice->setMinimumContentsLength(30);
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    const QStringList about = {port.systemLocation(), port.manufacturer(), port.description()};
    cmbDevice->addItem(StableName(port.systemLocation()),
                       about.join(QLatin1Char(' ')).simplified());
  }
}

void frmConnection::Arrange() {
  const auto addRow = [this](int id, QWidget* field) {
    form_->addRow(captions_.Label(id, field), field);
  };
  addRow(text::kFieldName, edtName);
  addRow(text::kFieldKind, cmbKind);
  addRow(text::kFieldHost, edtHost);
  addRow(text::kFieldPort, edtPort);
  addRow(text::kFieldDevice, cmbDevice);
  form_->addRow(new QLabel, lblDevice);
  addRow(text::kFieldBaud, cmbBaud);
  addRow(text::kFieldParity, cmbParity);
  addRow(text::kFieldStopBits, cmbStopBits);
  // What an adapter calls itself is cut, not a reason for a wider dialog.
  lblDevice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  for (QLabel* label : {lblDevice, lblProblem}) label->setTextFormat(Qt::PlainText);
  lblProblem->setWordWrap(true);
  lblProblem->setMinimumHeight(2 * fontMetrics().lineSpacing());
  lblProblem->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  ButOK->setDefault(true);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(ButOK, QDialogButtonBox::AcceptRole);
  buttons->addButton(captions_.Button("butCancel", text::kCancel, [this] { reject(); }),
                     QDialogButtonBox::RejectRole);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form_);
  layout->addWidget(lblProblem);
  layout->addStretch();
  layout->addWidget(buttons);
  resize(460, 340);
}

void frmConnection::Show(const Connection& connection) {
  edtName->setText(QString::fromStdString(connection.name));
  Choose(*cmbKind, connection.kind);
  edtHost->setText(QString::fromStdString(connection.host));
  if (connection.port != 0) edtPort->setText(QString::number(connection.port));
  // A new connection keeps the first device of this machine.
  if (!connection.device.empty()) {
    cmbDevice->setCurrentText(QString::fromStdString(connection.device));
  }
  cmbBaud->setCurrentText(QString::number(connection.baud));
  Choose(*cmbParity, connection.parity);
  Choose(*cmbStopBits, connection.stopBits);
  Check();
}

Connection frmConnection::Data() const {
  Connection connection;
  connection.name = edtName->text().trimmed().toStdString();
  connection.kind = cmbKind->currentData().toString().toStdString();
  connection.host = edtHost->text().trimmed().toStdString();
  connection.port = edtPort->text().toInt();
  connection.device = cmbDevice->currentText().trimmed().toStdString();
  connection.baud = cmbBaud->currentText().toInt();
  connection.parity = cmbParity->currentData().toString().toStdString();
  connection.stopBits = cmbStopBits->currentData().toString().toStdString();
  return connection;
}

void frmConnection::Check() {
  const Connection given = Data();
  const bool tcp = given.Is(ConnectionKind::kTcp);
  for (QWidget* field : {edtHost, edtPort}) form_->setRowVisible(field, tcp);
  const bool serial = given.Is(ConnectionKind::kSerial);
  for (QComboBox* field : {cmbDevice, cmbBaud, cmbParity, cmbStopBits}) {
    form_->setRowVisible(field, serial);
  }
  lblDevice->setText(cmbDevice->itemData(cmbDevice->findText(cmbDevice->currentText())).toString());
  form_->setRowVisible(lblDevice, serial && !lblDevice->text().isEmpty());
  const int problem = connections_.Problem(given, before_);
  lblProblem->setText(problem == 0 ? QString() : captions_.Filled(problem, given.name));
  ButOK->setEnabled(problem == 0);
}

std::optional<Connection> frmConnection::DoDialog(QWidget* parent, const Messages& messages,
                                                  const Connections& connections,
                                                  const std::optional<Connection>& before) {
  frmConnection dialog(parent, messages, connections);
  dialog.setWindowTitle(
      dialog.captions_.Text(before ? text::kChangeConnection : text::kNewConnection));
  Connection shown;
  shown.kind = StoredAs(ConnectionKind::kTcp);
  if (before) shown = *before;
  dialog.before_ = before ? before->name : std::string();
  dialog.Show(shown);
  if (!RunModal(dialog)) return std::nullopt;
  return dialog.Data();
}

}  // namespace ostrel
