// Makes the pictures of the forms anew: every form with what the built-in simulated devices give.
//
//   ostrel_pictures FOLDER LANGUAGE SCHEME     e.g. docs/pictures eng light

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <iostream>
#include <string>

#include "app/frmChooser.h"
#include "app/frmConnection.h"
#include "app/frmConnections.h"
#include "app/frmMain.h"
#include "base/texts.h"
#include "config/users/frmLogin.h"
#include "config/users/frmMeldLogin.h"
#include "config/users/frmRechteShow.h"
#include "link/connection_chooser.h"
#include "pages/console/console_texts.h"
#include "pages/console/frmDevices.h"
#include "platform/event_clock.h"
#include "platform/program_desktop.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "widgets/code_editor.h"
#include "wire/connections.h"

namespace ostrel {
namespace {

class Studio {
 public:
  Studio(const QString& folder, const std::string& language, Scheme scheme)
      : place_(folder + QStringLiteral("/%1-") + QString::fromStdString(language) +
               (scheme == Scheme::kDark ? QStringLiteral("-dark.png") : QStringLiteral(".png"))),
        program_({settings_, server_, dialogs_, clock_, desktop_}, {}, language),
        window_(program_, dialogs_, scheme) {
    Connections connections(settings_);
    connections.Add({.name = "Substation North",
                     .kind = "tcp",
                     .host = "192.0.2.7",
                     .port = 4001,
                     .device = {}});
    connections.Add({.name = "Workshop", .kind = "serial", .host = {}, .device = "/dev/ttyUSB0"});
    window_.resize(960, 640);
    window_.show();
  }

  /// The main window with its pages, for an overview in every scheme.
  void Window() {
    Select("AA:");
    Page(text::kStatistics);
    Click(window_, "butStatLesen");
    Shoot(window_, "statistics");
    Console();
    Select("B2:");
    Page(text::kUserManagement);
    Click(window_, "butPWRead");
    Shoot(window_, "users");
  }

  void Forms() {
    const Messages& texts = desk_.texts;
    Connections connections(settings_);
    Form("frmSelect", [&] { window_.DeviceSelect(); });
    Form("frmChooser", [&] {
      ChooseConnection(&window_, texts, connections.List(), "Substation North",
                       texts.Text(Code::kCannotConnect));
    });
    Form(
        "frmConnections", [&] { window_.ShowConnections(); }, "butTest");
    Form("frmConnection", [&] {
      frmConnection::DoDialog(&window_, texts, connections, connections.Find("Workshop"));
    });
    Form("frmDevices", [&] {
      ChooseDevices(&window_, texts, texts.Text(text::kSelectDevices),
                    desk_.session.StationsListAll().value());
    });
    Users users(desk_);
    Form("frmLogin", [&] { frmLogin::DoDiaLogin(&window_, desk_, users); });
    Form("frmRechteShow", [&] { frmRechteShow::DoDialog(&window_, desk_, 2); });
    Form("frmMeldLogin", [&] { frmMeldLogin::DoDialog(&window_, desk_, users); });
  }

  void End() { program_.Beenden(false); }

 private:
  /// A script on its way, and the message at the line that the device does not know.
  void Console() {
    Page(text::kConsole);
    auto* editor = window_.findChild<CodeEditor*>(QStringLiteral("edtRTFRegL"));
    editor->SetText(
        "# Set values of the transformer\r\n\r\nRegUn#\r\nAA::\r\nstation#\r\n"
        "RegTAPSUM#\r\n,regknu#,\";\",regkni#\r\n,\"" +
            std::string(126, '-') +
            "\"\r\n# longer than a line may be once it has an address\r\n"
            "Unknown#\r\nstation#\r\n",
        true);
    QTimer person;
    QObject::connect(&person, &QTimer::timeout, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      auto* answers = window_.findChild<QPlainTextEdit*>(QStringLiteral("edtREGLAntwort"));
      if (box == nullptr) {
        if (editor->isReadOnly() && answers->blockCount() > 4) ShootOnce(window_, "sending");
      } else {
        if (box->icon() == QMessageBox::Warning) ShootScreen("failed");
        box->buttons().constFirst()->click();
      }
    });
    person.start(0);
    window_.findChild<QAction*>(QStringLiteral("mnuSendAll"))->trigger();
  }

  void Select(const std::string& address) {
    if (!desk_.session.DeviceSelectByAddress(address)) std::exit(1);
  }

  void Page(int titleId) {
    const QString title = QString::fromStdString(desk_.texts.Caption(titleId));
    auto* pages = window_.findChild<QTreeWidget*>(QStringLiteral("tvwPages"));
    pages->setCurrentItem(pages->findItems(title, Qt::MatchExactly | Qt::MatchRecursive).value(0));
  }

  static void Click(QWidget& in, const char* button) {
    in.findChild<QPushButton*>(QLatin1String(button))->click();
  }

  /// Lets the operation show a dialog, uses one of its buttons first, pictures it and leaves it.
  void Form(const char* name, const std::function<void()>& operation,
            const char* button = nullptr) {
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || !dialog->isEnabled()) return;
      poll.stop();
      if (button != nullptr) Click(*dialog, button);
      Shoot(*dialog, name);
      dialog->reject();
    });
    poll.start(0);
    operation();
  }

  /// The form as it is once nothing waits to be drawn.
  void Shoot(QWidget& form, const char* name) {
    QApplication::processEvents();
    const QString file = place_.arg(QLatin1String(name));
    if (!form.grab().save(file)) std::exit(1);
    std::cout << file.toStdString() << std::endl;
  }

  void ShootOnce(QWidget& form, const char* name) {
    if (shot_.contains(QLatin1String(name))) return;
    shot_.append(QLatin1String(name));
    Shoot(form, name);
  }

  /// The main window with what stands above it.
  void ShootScreen(const char* name) {
    if (shot_.contains(QLatin1String(name))) return;
    shot_.append(QLatin1String(name));
    QApplication::processEvents();
    const QRect area = window_.geometry();
    const QString file = place_.arg(QLatin1String(name));
    if (!window_.screen()
             ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
             .save(file)) {
      std::exit(1);
    }
    std::cout << file.toStdString() << std::endl;
  }

  QString place_;
  QStringList shot_;
  RegistrySettings settings_;
  ServerFactory server_;
  WindowDialogs dialogs_;
  EventClock clock_;
  ProgramDesktop desktop_;
  Program program_;
  const Desk desk_ = program_.MakeDesk();
  frmMain window_;
};

}  // namespace
}  // namespace ostrel

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 4) return 2;
  const ostrel::Scheme scheme = ostrel::SchemeFromName(argv[3]);
  ostrel::ApplyScheme(scheme);
  ostrel::Studio studio(QString::fromLocal8Bit(argv[1]), argv[2], scheme);
  QTimer::singleShot(0, [&] {
    studio.Window();
    if (scheme == ostrel::Scheme::kLight) studio.Forms();
    studio.End();
    QCoreApplication::exit(0);
  });
  return QApplication::exec();
}
