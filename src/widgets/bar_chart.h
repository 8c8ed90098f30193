#pragma once

#include <QPalette>
#include <QWidget>
#include <string>
#include <utility>

#include "widgets/bar_chart_png.h"

class QCPBars;
class QCPItemText;
class QCustomPlot;
class QMouseEvent;

namespace ostrel {

/// First and last of at most `most` positions that show what was counted, with some margin; around
/// position 0 when nothing was.
std::pair<int, int> UsedPositions(const BarChartData& data, int most);

/// A bar a position, in the colours of the palette. The position under the pointer is told.
class BarChart : public QWidget {
 public:
  explicit BarChart(QWidget* parent = nullptr);

  void SetData(const BarChartData& values);
  /// The positions that are visible, from first to last.
  void ShowPositions(int first, int last);
  /// A text over the chart; empty = none.
  void SetHint(const QString& hint);
  /// PNG bytes of the chart, `width` × `height` pixels large, in the colours of its palette.
  std::string Png(int width, int height);

 protected:
  void changeEvent(QEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void Colour();
  void MakeBars();
  void MakeAxes();
  void PointerAt(const QMouseEvent& event);
  void Mark(int position);
  void Unmark();

  QCustomPlot* plot_;
  QCPBars* bars_ = nullptr;
  QCPBars* marked_ = nullptr;
  QCPItemText* label_ = nullptr;
  QCPItemText* hint_ = nullptr;
  BarChartData data_;
};

}  // namespace ostrel
