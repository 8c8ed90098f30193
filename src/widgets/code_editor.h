#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <string>

namespace ostrel {

/// How a line is shown.
enum class LineLook { kPlain, kDimmed, kMarked, kWrong };

/// A monospaced editor of lines: with their numbers, each line in the look that a rule gives it,
/// one of them marked as the one that runs, and a search.
class CodeEditor : public QPlainTextEdit {
 public:
  using Rule = std::function<LineLook(const std::string& line)>;

  explicit CodeEditor(Rule rule);

  /// The whole text with CR LF between its lines, every character as it was given.
  std::string Text() const;
  /// Replaces the whole text; the one before comes back with undo when `undoable`. The mark goes
  /// with the text: undo brings back that of the text before.
  void SetText(const std::string& text, bool undoable = false, int mark = 0);
  int Mark() const;
  /// The selected text with CR LF between its lines.
  std::string SelectedText() const;
  /// The line of the caret, counted from 0.
  int CaretLine() const { return textCursor().blockNumber(); }

  /// Marks the line (counted from 0) and brings it into view; -1 takes the mark away.
  void ShowRunning(int line);
  /// Selects the next place of the text from the caret on, around the end; false when there is
  /// none.
  bool Find(const QString& text, bool backward);

  /// A file was dropped on the text.
  std::function<void(const std::string& path)> onFile;
  /// Where the right mouse button was released over the text, in global coordinates.
  std::function<void(const QPoint&)> onMenu;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  class Numbers;
  class Looks;

  int NumbersWidth() const;
  void PlaceNumbers();
  void PaintNumbers(QPaintEvent& event);

  Numbers* numbers_;
  Looks* looks_;
  int running_ = -1;
  bool marker_ = false;
};

}  // namespace ostrel
