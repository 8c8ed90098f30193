#include "logs/tap_statistics/tap_statistics_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "base/texts.h"
#include "logs/tap_statistics/tap_statistics_text.h"
#include "logs/tap_statistics/tap_statistics_texts.h"

namespace ostrel {

namespace {

constexpr int kMostVisible = 41;

}  // namespace

TapStatisticsPage::TapStatisticsPage(const Seat& seat)
    : Page(seat),
      statistics_(desk_),
      chkStatPoll(PollSwitch("chkStatPoll")),
      chrtTapStat(Named(new BarChart, "chrtTapStat")),
      scrlTapStat(Named(new QScrollBar(Qt::Horizontal), "scrlTapStat")) {
  Arrange();
  connect(scrlTapStat, &QScrollBar::valueChanged, this, &TapStatisticsPage::MoveWindow);
}

QHBoxLayout* TapStatisticsPage::Commands() {
  auto* row = new QHBoxLayout;
  row->addWidget(ReadCommand("butStatLesen", text::kRead, [this] { ReadDevice(); }));
  row->addWidget(Command(
      "butTapStat2Clip", text::kCopy, About::kFiles, [this] { ToClipboard(); },
      [this] { return statistics_.Counters().counted; }));
  row->addWidget(chkStatPoll);
  row->addStretch();
  row->addWidget(Command("butStatDel", text::kDelete, About::kDevice, [this] {
    if (statistics_.Clear() == Ending::kDone) ReadDevice();
  }));
  return row;
}

QLabel* TapStatisticsPage::AddTotal(QHBoxLayout& row, const char* name, int id) {
  auto* caption = new QLabel;
  captions_.Add([=, this] { caption->setText(captions_.Text(id) + QLatin1Char(':')); });
  auto* number = Named(new QLabel, name);
  QFont bold = number->font();
  bold.setBold(true);
  number->setFont(bold);
  number->setTextInteractionFlags(Qt::TextSelectableByMouse);
  for (QLabel* label : {caption, number}) {
    label->setTextFormat(Qt::PlainText);
    row.addWidget(label);
  }
  row.addSpacing(24);
  return number;
}

void TapStatisticsPage::Arrange() {
  scrlTapStat->setFocusPolicy(Qt::StrongFocus);
  chrtTapStat->setMinimumSize(320, 160);
  auto* totals = new QHBoxLayout;
  lblTapSum = AddTotal(*totals, "lblTapSum", text::kTapsTotal);
  lblTapSumL = AddTotal(*totals, "lblTapSumL", text::kTapsUnderLoad);
  totals->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Commands());
  layout->addWidget(chrtTapStat, 1);
  layout->addWidget(scrlTapStat);
  layout->addLayout(totals);
}

void TapStatisticsPage::Forget() {
  statistics_.DeviceChanged();
  windowChosen_ = false;
}

void TapStatisticsPage::ReadDevice() {
  // What failed would fail again a minute later, with a message each time.
  if (!statistics_.Read()) chkStatPoll->setChecked(false);
}

void TapStatisticsPage::ToClipboard() {
  desk_.dialogs.ToClipboard(TapTable(statistics_.Counters(), desk_.texts),
                            BarChartPng(ChartData()));
  desk_.texts.Show(text::kCopiedAsTextAndPicture);
}

BarChartData TapStatisticsPage::ChartData() const {
  return TapChart(statistics_.Counters(), desk_.texts);
}

void TapStatisticsPage::Refresh() {
  chrtTapStat->SetData(ChartData());
  // The first reading of a device chooses the window; after it the user's choice stays.
  if (!windowChosen_) ResetWindow();
  windowChosen_ = statistics_.Counters().counted;
  MoveWindow();
  ShowTotals();
  ShowHint();
}

void TapStatisticsPage::ShowTotals() {
  QLocale locale;
  locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
  const TapCounters& counters = statistics_.Counters();
  const auto text = [&](const std::optional<std::int32_t>& number) {
    return number ? locale.toString(*number) : QStringLiteral("–");
  };
  lblTapSum->setText(text(counters.total));
  lblTapSumL->setText(text(counters.underLoad));
}

void TapStatisticsPage::ShowHint() {
  const bool device = desk_.session.Selected().GetKenn().has_value();
  const int hint = device ? text::kNotReadYet : text::kChooseDeviceFirst;
  chrtTapStat->SetHint(statistics_.Counters().counted ? QString() : captions_.Text(hint));
}

void TapStatisticsPage::ResetWindow() {
  const BarChartData chart = ChartData();
  const auto [first, last] = UsedPositions(chart, kMostVisible);
  const int size = last - first + 1;
  scrlTapStat->setRange(chart.first, chart.first + static_cast<int>(chart.counts.size()) - size);
  scrlTapStat->setPageStep(size);
  scrlTapStat->setValue(first);
}

void TapStatisticsPage::MoveWindow() {
  const int first = scrlTapStat->value();
  chrtTapStat->ShowPositions(first, first + scrlTapStat->pageStep() - 1);
}

Page* MakeTapStatisticsPage(const Page::Seat& seat) {
  return new TapStatisticsPage(seat);
}

}  // namespace ostrel
