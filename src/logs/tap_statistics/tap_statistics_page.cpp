#include "logs/tap_statistics/tap_statistics_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "base/texts.h"
#include "logs/tap_statistics/tap_statistics_text.h"
#include "logs/tap_statistics/tap_statistics_texts.h"
#include "widgets/named.h"

namespace ostrel {

namespace {

constexpr int kMostVisible = 41;

}  // namespace

TapStatisticsPage::TapStatisticsPage(Service& service, Runner run)
    : service_(service),
      run_(std::move(run)),
      butStatLesen(Named(new QPushButton, "butStatLesen")),
      butStatDel(Named(new QPushButton, "butStatDel")),
      butTapStat2Clip(Named(new QPushButton, "butTapStat2Clip")),
      chkStatPoll(Named(new QCheckBox, "chkStatPoll")),
      chrtTapStat(Named(new BarChart, "chrtTapStat")),
      scrlTapStat(Named(new QScrollBar(Qt::Horizontal), "scrlTapStat")),
      total_(MakeTotal("lblTapSum")),
      underLoad_(MakeTotal("lblTapSumL")) {
  Arrange();
  connect(butStatLesen, &QPushButton::clicked, this, &TapStatisticsPage::Read);
  connect(butStatDel, &QPushButton::clicked, this, &TapStatisticsPage::Delete);
  connect(butTapStat2Clip, &QPushButton::clicked, this, &TapStatisticsPage::ToClipboard);
  connect(scrlTapStat, &QScrollBar::valueChanged, this, &TapStatisticsPage::MoveWindow);
  Refresh();
}

TapStatisticsPage::Total TapStatisticsPage::MakeTotal(const char* name) {
  Total total{new QLabel, Named(new QLabel, name)};
  QFont bold = total.number->font();
  bold.setBold(true);
  total.number->setFont(bold);
  for (QLabel* label : {total.caption, total.number}) label->setTextFormat(Qt::PlainText);
  total.number->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return total;
}

void TapStatisticsPage::Arrange() {
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {butStatLesen, butTapStat2Clip}) buttons->addWidget(button);
  buttons->addWidget(chkStatPoll);
  buttons->addStretch();
  buttons->addWidget(butStatDel);

  auto* totals = new QHBoxLayout;
  for (const Total& total : {total_, underLoad_}) {
    totals->addWidget(total.caption);
    totals->addWidget(total.number);
    totals->addSpacing(24);
  }
  totals->addStretch();

  scrlTapStat->setFocusPolicy(Qt::StrongFocus);
  chrtTapStat->setMinimumSize(320, 160);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(buttons);
  layout->addWidget(chrtTapStat, 1);
  layout->addWidget(scrlTapStat);
  layout->addLayout(totals);
}

void TapStatisticsPage::Captions() {
  const auto caption = [this](int id) {
    return QString::fromStdString(service_.Texts().Caption(id));
  };
  butStatLesen->setText(caption(text::kRead));
  butStatDel->setText(caption(text::kDelete));
  butTapStat2Clip->setText(caption(text::kCopy));
  chkStatPoll->setText(caption(text::kReadEveryMinute));
  total_.caption->setText(caption(text::kTapsTotal) + QLatin1Char(':'));
  underLoad_.caption->setText(caption(text::kTapsUnderLoad) + QLatin1Char(':'));
  chrtTapStat->SetData(ChartData());
  ShowHint();
}

void TapStatisticsPage::Refresh() {
  windowChosen_ = false;
  ShowCounters();
}

void TapStatisticsPage::EnableCommands(bool free) {
  const bool device = service_.Selected().GetKenn().has_value();
  for (QPushButton* button : {butStatLesen, butStatDel}) button->setEnabled(free && device);
  butTapStat2Clip->setEnabled(free && service_.Statistics().Counters().counted);
}

void TapStatisticsPage::Read() {
  if (!butStatLesen->isEnabled()) return;
  run_([this] { ReadDevice(); });
}

bool TapStatisticsPage::Polls() const {
  return chkStatPoll->isChecked() && isVisible();
}

void TapStatisticsPage::ReadDevice() {
  // What failed would fail again a minute later, with a message each time.
  if (!service_.Reconnect() || !service_.Statistics().Read()) chkStatPoll->setChecked(false);
  ShowCounters();
}

void TapStatisticsPage::Delete() {
  run_([this] {
    if (!service_.Reconnect()) return;
    if (service_.Statistics().Clear() == TapStatistics::Clearing::kDone) ReadDevice();
  });
}

void TapStatisticsPage::ToClipboard() {
  service_.Boxes().ToClipboard(TapTable(service_.Statistics().Counters(), service_.Texts()),
                               BarChartPng(ChartData()));
  service_.Texts().Show(text::kCopiedAsTextAndPicture);
}

BarChartData TapStatisticsPage::ChartData() const {
  return TapChart(service_.Statistics().Counters(), service_.Texts());
}

void TapStatisticsPage::ShowCounters() {
  chrtTapStat->SetData(ChartData());
  // The first reading of a device chooses the window; after it the user's choice stays.
  if (!windowChosen_) ResetWindow();
  windowChosen_ = service_.Statistics().Counters().counted;
  MoveWindow();
  ShowTotals();
  ShowHint();
}

void TapStatisticsPage::ShowTotals() {
  QLocale locale;
  locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
  const TapCounters& counters = service_.Statistics().Counters();
  const auto text = [&](std::int32_t number) {
    return counters.totalled ? locale.toString(number) : QStringLiteral("–");
  };
  total_.number->setText(text(counters.total));
  underLoad_.number->setText(text(counters.underLoad));
}

void TapStatisticsPage::ShowHint() {
  const bool device = service_.Selected().GetKenn().has_value();
  const int hint = device ? text::kNotReadYet : text::kChooseDeviceFirst;
  chrtTapStat->SetHint(service_.Statistics().Counters().counted
                           ? QString()
                           : QString::fromStdString(service_.Texts().Caption(hint)));
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

}  // namespace ostrel
