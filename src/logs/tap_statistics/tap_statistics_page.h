#pragma once

#include "app/service.h"
#include "widgets/bar_chart.h"
#include "widgets/page.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollBar;

namespace ostrel {

/// The page of the tap-changer statistics.
class TapStatisticsPage : public Page {
 public:
  TapStatisticsPage(Service& service, Runner run);

  void Captions() override;
  void Refresh() override;
  void Read() override;
  bool Polls() const override;
  void EnableCommands(bool free) override;

 private:
  /// A caption and a number beside it.
  struct Total {
    QLabel* caption;
    QLabel* number;
  };

  void Arrange();
  Total MakeTotal(const char* name);
  void Delete();
  void ToClipboard();
  void ReadDevice();
  BarChartData ChartData() const;
  void ShowCounters();
  void ShowTotals();
  void ShowHint();
  void ResetWindow();
  void MoveWindow();

  Service& service_;
  Runner run_;
  bool windowChosen_ = false;  // by what was counted, or by the user
  QPushButton* butStatLesen;
  QPushButton* butStatDel;
  QPushButton* butTapStat2Clip;
  QCheckBox* chkStatPoll;
  BarChart* chrtTapStat;
  QScrollBar* scrlTapStat;
  Total total_;
  Total underLoad_;
};

}  // namespace ostrel
