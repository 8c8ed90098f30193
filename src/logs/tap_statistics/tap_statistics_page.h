#pragma once

#include "logs/tap_statistics/tap_statistics.h"
#include "widgets/bar_chart.h"
#include "widgets/page.h"

class QHBoxLayout;
class QLabel;
class QScrollBar;

namespace ostrel {

/// The page of the tap-changer statistics.
class TapStatisticsPage : public Page {
 public:
  explicit TapStatisticsPage(const Seat& seat);

 protected:
  void Forget() override;
  void Refresh() override;

 private:
  void Arrange();
  QHBoxLayout* Commands();
  /// Adds a caption and the number beside it.
  QLabel* AddTotal(QHBoxLayout& row, const char* name, int id);
  void ReadDevice();
  void ToClipboard();
  BarChartData ChartData() const;
  void ShowTotals();
  void ShowHint();
  void ResetWindow();
  void MoveWindow();

  TapStatistics statistics_;
  bool windowChosen_ = false;  // by what was counted, or by the user
  QCheckBox* chkStatPoll;
  BarChart* chrtTapStat;
  QScrollBar* scrlTapStat;
  QLabel* lblTapSum;
  QLabel* lblTapSumL;
};

}  // namespace ostrel
