#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "base/messages.h"
#include "widgets/named.h"

class QLabel;
class QPushButton;
class QWidget;

namespace ostrel {

/// The texts of the controls of a window, a page or a form. Each is declared once, with the message
/// that it shows, and follows the language.
class Captions {
 public:
  explicit Captions(const Messages& messages) : messages_(messages) {}
  Captions(const Captions&) = delete;
  Captions& operator=(const Captions&) = delete;

  /// What a control shows of a message.
  QString Text(int id) const { return QString::fromStdString(messages_.Caption(id)); }
  /// The same without the letter that it underlines.
  QString Plain(int id) const { return Text(id).remove(QLatin1Char('&')); }
  /// The same with its first "%s" replaced.
  QString Filled(int id, const std::string& value) const {
    return QString::fromStdString(messages_.Filled(id, value));
  }

  /// Declares the text of a control.
  template <typename Control>
  Control* On(Control* control, int id) {
    Add([this, control, id] { control->setText(Text(id)); });
    return control;
  }
  /// A button with this name and text, and what a click does.
  QPushButton* Button(const char* name, int id, std::function<void()> click);
  /// A label whose letter leads to its field.
  QLabel* Label(int id, QWidget* field);
  /// Declares any other text: `set` takes it from here, at once and on each change of the language.
  void Add(std::function<void()> set);
  /// Sets all texts again.
  void SetAll() const;

 private:
  const Messages& messages_;
  std::vector<std::function<void()>> sets_;
};

}  // namespace ostrel
