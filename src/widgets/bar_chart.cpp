#include "widgets/bar_chart.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <functional>

#include "widgets/scheme.h"

namespace ostrel {

namespace {

constexpr double kBarWidth = 0.78;
constexpr double kHeadroom = 1.12;
constexpr int kMargin = 2;   // positions beside the used ones
constexpr int kFewest = 21;  // positions in a chart
constexpr double kLowestTop = 10;
constexpr int kPictureWidth = 1200;
constexpr int kPictureHeight = 600;

QString PositionText(double position, const QLocale& locale) {
  const int whole = static_cast<int>(std::lround(position));
  return (whole > 0 ? QStringLiteral("+") : QString()) + locale.toString(whole);
}

QString CountText(double count, QLocale locale) {
  locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
  return locale.toString(static_cast<qlonglong>(count));
}

QColor Mixed(const QColor& front, const QColor& back, double part) {
  const auto mix = [&](int a, int b) {
    return static_cast<int>(std::lround(a * part + b * (1 - part)));
  };
  return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                mix(front.blue(), back.blue()));
}

/// Ticks at whole numbers only.
class WholeTicker : public QCPAxisTicker {
 public:
  using Text = std::function<QString(double, const QLocale&)>;
  explicit WholeTicker(Text text) : text_(std::move(text)) {}

 protected:
  double getTickStep(const QCPRange& range) override {
    return std::max(1.0, std::round(QCPAxisTicker::getTickStep(range)));
  }
  int getSubTickCount(double) override { return 0; }
  QString getTickLabel(double tick, const QLocale& locale, QChar, int) override {
    return text_(tick, locale);
  }

 private:
  Text text_;
};

QCPItemText* AddText(QCustomPlot* plot) {
  auto* text = new QCPItemText(plot);
  text->setSelectable(false);
  text->setVisible(false);
  text->setLayer(QStringLiteral("overlay"));
  text->setPadding(QMargins(7, 3, 7, 3));
  return text;
}

}  // namespace

std::pair<int, int> UsedPositions(const BarChartData& data, int most) {
  const auto used = [](std::int32_t count) { return count != 0; };
  const auto begin = std::find_if(data.counts.begin(), data.counts.end(), used);
  const auto end = std::find_if(data.counts.rbegin(), data.counts.rend(), used).base();
  const bool any = begin < end;
  const int first = any ? data.first + static_cast<int>(begin - data.counts.begin()) : 0;
  const int last = any ? data.first + static_cast<int>(end - data.counts.begin()) - 1 : 0;

  const int all = static_cast<int>(data.counts.size());
  const int wanted = std::max(last - first + 1 + 2 * kMargin, kFewest);
  const int shown = std::max(1, std::min({wanted, most, all}));
  const int from = (first + last - shown + 1) / 2;
  const int begins = std::clamp(from, data.first, data.first + std::max(0, all - shown));
  return {begins, begins + shown - 1};
}

BarChart::BarChart(QWidget* parent) : QWidget(parent), plot_(new QCustomPlot(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot_);
  MakeAxes();
  MakeBars();
  Colour();
  QObject::connect(plot_, &QCustomPlot::mouseMove, this,
                   [this](QMouseEvent* event) { PointerAt(*event); });
}

void BarChart::MakeAxes() {
  plot_->xAxis->setTicker(QSharedPointer<WholeTicker>::create(&PositionText));
  plot_->yAxis->setTicker(QSharedPointer<WholeTicker>::create(&CountText));
  plot_->xAxis->ticker()->setTickCount(12);
  plot_->xAxis->grid()->setVisible(false);
  for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
    axis->setLabelPadding(6);
    axis->setTickLengthIn(0);
    axis->grid()->setZeroLinePen(Qt::NoPen);
  }
  plot_->yAxis->setBasePen(Qt::NoPen);
  plot_->yAxis->setTickPen(Qt::NoPen);
  plot_->yAxis->setRange(0, kLowestTop);
}

void BarChart::MakeBars() {
  const auto add = [this] {
    auto* bars = new QCPBars(plot_->xAxis, plot_->yAxis);
    bars->setWidth(kBarWidth);
    bars->setPen(Qt::NoPen);
    bars->setAntialiased(false);
    bars->setSelectable(QCP::stNone);
    return bars;
  };
  bars_ = add();
  marked_ = add();
  label_ = AddText(plot_);
  label_->position->setType(QCPItemPosition::ptPlotCoords);
  hint_ = AddText(plot_);
  hint_->position->setType(QCPItemPosition::ptAxisRectRatio);
  hint_->position->setCoords(0.5, 0.45);
}

void BarChart::Colour() {
  const QPalette colours = palette();
  const QColor text = colours.color(QPalette::Active, QPalette::Text);
  const QColor base = colours.color(QPalette::Active, QPalette::Base);
  const QColor bar = colours.color(QPalette::Active, QPalette::Highlight);
  plot_->setBackground(base);
  for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
    axis->setTickLabelColor(text);
    axis->setLabelColor(text);
    axis->setTickLabelFont(font());
    axis->setLabelFont(font());
    axis->grid()->setPen(QPen(Mixed(text, base, 0.14), 1));
  }
  plot_->xAxis->setBasePen(QPen(Mixed(text, base, 0.6), 1));
  plot_->xAxis->setTickPen(QPen(Mixed(text, base, 0.6), 1));
  bars_->setBrush(bar);
  marked_->setBrush(Mixed(text, bar, 0.45));
  label_->setFont(font());
  label_->setColor(base);
  label_->setBrush(Mixed(text, base, 0.9));
  hint_->setFont(font());
  hint_->setColor(Mixed(text, base, 0.8));
  hint_->setBrush(base);
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void BarChart::SetData(const BarChartData& values) {
  data_ = values;
  const QString locale = QString::fromStdString(data_.locale);
  plot_->setLocale(locale.isEmpty() ? QLocale() : QLocale(locale));
  QVector<double> positions, counts;
  for (std::size_t n = 0; n < data_.counts.size(); ++n) {
    positions.append(data_.first + static_cast<int>(n));
    counts.append(data_.counts[n]);
  }
  bars_->setData(positions, counts, true);
  plot_->xAxis->setLabel(QString::fromStdString(data_.positionLabel));
  plot_->yAxis->setLabel(QString::fromStdString(data_.countLabel));
  const double most = counts.isEmpty() ? 0 : *std::max_element(counts.begin(), counts.end());
  plot_->yAxis->setRange(0, std::max(most * kHeadroom, kLowestTop));
  Unmark();
}

void BarChart::ShowPositions(int first, int last) {
  plot_->xAxis->setRange(first - 0.6, last + 0.6);
  Unmark();
}

void BarChart::SetHint(const QString& hint) {
  hint_->setText(hint);
  hint_->setVisible(!hint.isEmpty());
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

std::string BarChart::Png(int width, int height) {
  const QPixmap picture = plot_->toPixmap(width, height);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  picture.save(&buffer, "PNG");
  return bytes.toStdString();
}

void BarChart::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Colour();
  QWidget::changeEvent(event);
}

void BarChart::leaveEvent(QEvent* event) {
  Unmark();
  QWidget::leaveEvent(event);
}

void BarChart::PointerAt(const QMouseEvent& event) {
  const int position =
      static_cast<int>(std::lround(plot_->xAxis->pixelToCoord(event.position().x())));
  const int index = position - data_.first;
  const bool inside = plot_->axisRect()->rect().contains(event.position().toPoint());
  if (inside && !hint_->visible() && index >= 0 && index < static_cast<int>(data_.counts.size())) {
    Mark(position);
  } else {
    Unmark();
  }
}

void BarChart::Mark(int position) {
  const double count = data_.counts[static_cast<std::size_t>(position - data_.first)];
  const QCPRange shown = plot_->xAxis->range();
  marked_->setData({static_cast<double>(position)}, {count}, true);
  label_->setText(PositionText(position, plot_->locale()) + QStringLiteral(": ") +
                  CountText(count, plot_->locale()));
  // The label stays inside the chart.
  const double place = (position - shown.lower) / shown.size();
  const Qt::Alignment side = place < 0.1   ? Qt::AlignLeft
                             : place > 0.9 ? Qt::AlignRight
                                           : Qt::AlignHCenter;
  label_->setPositionAlignment(side | Qt::AlignBottom);
  label_->position->setCoords(position, count + plot_->yAxis->range().size() * 0.015);
  label_->setVisible(true);
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void BarChart::Unmark() {
  marked_->setData({}, {});
  label_->setVisible(false);
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

std::string BarChartPng(const BarChartData& data) {
  BarChart chart;
  chart.setPalette(SchemePalette(Scheme::kLight));
  chart.SetData(data);
  const auto [first, last] = UsedPositions(data, static_cast<int>(data.counts.size()));
  chart.ShowPositions(first, last);
  return chart.Png(kPictureWidth, kPictureHeight);
}

}  // namespace ostrel
