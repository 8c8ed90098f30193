#include "widgets/code_editor.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTextFrame>
#include <algorithm>
#include <utility>

namespace ostrel {

namespace {

constexpr int kMargin = 6;
constexpr int kMark = QTextFormat::UserProperty;

/// Between the two: readable on the background, but behind the text.
QColor Between(const QColor& text, const QColor& back) {
  return QColor((text.red() + back.red()) / 2, (text.green() + back.green()) / 2,
                (text.blue() + back.blue()) / 2);
}

/// Formats are part of the document's history, so that undo and redo take the mark with them.
void MarkWhole(const QTextDocument& document, int mark) {
  QTextFrameFormat format = document.rootFrame()->frameFormat();
  format.setProperty(kMark, mark);
  document.rootFrame()->setFrameFormat(format);
}

/// Paragraphs as the lines of a file; what stands in them stays as it is.
std::string WithLineEnds(QString raw) {
  raw.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n"));
  return raw.toStdString();
}

}  // namespace

/// The strip with the numbers of the lines.
class CodeEditor::Numbers : public QWidget {
 public:
  explicit Numbers(CodeEditor& editor) : QWidget(&editor), editor_(editor) {}

 protected:
  void paintEvent(QPaintEvent* event) override { editor_.PaintNumbers(*event); }

 private:
  CodeEditor& editor_;
};

/// Gives each line its look.
class CodeEditor::Looks : public QSyntaxHighlighter {
 public:
  Looks(CodeEditor& editor, Rule rule)
      : QSyntaxHighlighter(editor.document()), editor_(editor), rule_(std::move(rule)) {}

 protected:
  void highlightBlock(const QString& text) override {
    const QPalette& palette = editor_.palette();
    const QColor back = palette.color(QPalette::Base);
    QTextCharFormat format;
    switch (rule_(text.toStdString())) {
      case LineLook::kPlain:
        return;
      case LineLook::kDimmed:
        format.setForeground(Between(palette.color(QPalette::Text), back));
        break;
      case LineLook::kMarked:
        format.setBackground(Between(QColor(0xff, 0xb3, 0x00), back));
        break;
      case LineLook::kWrong:
        format.setBackground(Between(QColor(0xe5, 0x39, 0x35), back));
        break;
    }
    setFormat(0, static_cast<int>(text.size()), format);
  }

 private:
  CodeEditor& editor_;
  Rule rule_;
};

CodeEditor::CodeEditor(Rule rule)
    : numbers_(new Numbers(*this)), looks_(new Looks(*this, std::move(rule))) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabChangesFocus(true);  // no key is a trap
  connect(this, &QPlainTextEdit::blockCountChanged, this, &CodeEditor::PlaceNumbers);
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int scrolled) {
    if (scrolled != 0) numbers_->scroll(0, scrolled);
    if (scrolled == 0) numbers_->update(0, rect.y(), numbers_->width(), rect.height());
  });
  PlaceNumbers();
}

std::string CodeEditor::Text() const {
  // Unlike the plain text this keeps blanks that do not break.
  return WithLineEnds(document()->toRawText());
}

void CodeEditor::SetText(const std::string& text, bool undoable, int mark) {
  const QString shown = QString::fromStdString(text);
  if (undoable) {
    QTextCursor all(document());
    all.beginEditBlock();
    all.select(QTextCursor::Document);
    all.insertText(shown);
    MarkWhole(*document(), mark);
    all.endEditBlock();
  } else {
    setPlainText(shown);
    document()->setUndoRedoEnabled(false);  // else undo begins by taking the mark away
    MarkWhole(*document(), mark);
    document()->setUndoRedoEnabled(true);
    document()->setModified(false);
  }
  moveCursor(QTextCursor::Start);
}

int CodeEditor::Mark() const {
  return document()->rootFrame()->frameFormat().intProperty(kMark);
}

std::string CodeEditor::SelectedText() const {
  return WithLineEnds(textCursor().selectedText());
}

void CodeEditor::ShowRunning(int line) {
  running_ = line;
  QList<QTextEdit::ExtraSelection> marks;
  if (const QTextBlock block = document()->findBlockByNumber(line); line >= 0 && block.isValid()) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(block);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    mark.format.setBackground(
        Between(palette().color(QPalette::Highlight), palette().color(QPalette::Base)));
    marks.append(mark);
    const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
    if (place.top() < 0 || place.bottom() > viewport()->height()) {
      verticalScrollBar()->setValue(line - viewport()->height() / fontMetrics().height() / 2);
    }
  }
  setExtraSelections(marks);
  numbers_->update();
}

bool CodeEditor::Find(const QString& text, bool backward) {
  if (text.isEmpty()) return false;
  const auto flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  QTextCursor found = document()->find(text, textCursor(), flags);
  if (found.isNull()) {
    QTextCursor edge(document());
    if (backward) edge.movePosition(QTextCursor::End);
    found = document()->find(text, edge, flags);
  }
  if (found.isNull()) return false;
  setTextCursor(found);
  return true;
}

void CodeEditor::keyPressEvent(QKeyEvent* event) {
  // What is typed behind the marker key marks a place one day; until then it is swallowed,
  // beginning with the carriage return that the key itself types.
  const bool markerKey = event->key() == Qt::Key_M && event->modifiers() == Qt::ControlModifier;
  if (markerKey) marker_ = true;
  const QString typed = markerKey ? QStringLiteral("\r") : event->text();
  if (marker_ && !typed.isEmpty()) {
    if (typed != QLatin1String("m")) marker_ = false;
    return event->accept();
  }
  if (event == QKeySequence::InsertLineSeparator) {
    // Else a line is broken where no file and no device sees a line end.
    QKeyEvent plain(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    return QPlainTextEdit::keyPressEvent(&plain);
  }
  QPlainTextEdit::keyPressEvent(event);
}

void CodeEditor::mouseReleaseEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseReleaseEvent(event);
  if (event->button() == Qt::RightButton && onMenu) onMenu(event->globalPosition().toPoint());
}

void CodeEditor::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse has its own way above; the menu key opens at the caret.
  if (event->reason() != QContextMenuEvent::Mouse && onMenu) {
    onMenu(viewport()->mapToGlobal(cursorRect().bottomLeft()));
  }
  event->accept();
}

bool CodeEditor::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasUrls() || QPlainTextEdit::canInsertFromMimeData(source);
}

void CodeEditor::insertFromMimeData(const QMimeData* source) {
  const QString file = source->urls().value(0).toLocalFile();
  if (file.isEmpty() || !onFile) return QPlainTextEdit::insertFromMimeData(source);
  onFile(file.toStdString());
}

void CodeEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  PlaceNumbers();
}

void CodeEditor::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    looks_->rehighlight();
    ShowRunning(running_);
  }
  if (event->type() == QEvent::FontChange) PlaceNumbers();
}

int CodeEditor::NumbersWidth() const {
  const auto digits = std::max<qsizetype>(3, QString::number(blockCount()).size());
  return 2 * kMargin + static_cast<int>(digits) * fontMetrics().horizontalAdvance(QLatin1Char('9'));
}

void CodeEditor::PlaceNumbers() {
  setViewportMargins(NumbersWidth(), 0, 0, 0);
  const QRect area = contentsRect();
  numbers_->setGeometry(area.left(), area.top(), NumbersWidth(), area.height());
}

void CodeEditor::PaintNumbers(QPaintEvent& event) {
  QPainter painter(numbers_);
  painter.fillRect(event.rect(), palette().color(QPalette::Window));
  const QColor text = palette().color(QPalette::WindowText);
  const QColor dim = Between(text, palette().color(QPalette::Window));
  QTextBlock block = firstVisibleBlock();
  qreal top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= event.rect().bottom(); block = block.next()) {
    const qreal height = blockBoundingRect(block).height();
    painter.setPen(block.blockNumber() == running_ ? text : dim);
    painter.drawText(QRectF(0, top, numbers_->width() - kMargin, height), Qt::AlignRight,
                     QString::number(block.blockNumber() + 1));
    top += height;
  }
}

}  // namespace ostrel
