#include <gtest/gtest.h>

#include <QImage>
#include <QLocale>
#include <string>

#include "widgets/bar_chart.h"
#include "widgets/bar_chart_png.h"
#include "widgets/scheme.h"
#include "widgets/window_dialogs.h"

namespace ostrel {
namespace {

TEST(WindowFilter, TurnsPairsIntoTheWindowSystemsForm) {
  const struct {
    const char *filter, *expected;
  } cases[] = {
      {"Text|*.txt", "Text (*.txt)"},
      {"Log|*.log;*.txt|All|*", "Log (*.log *.txt);;All (*)"},
      {"Log (*.log)|*.log", "Log (*.log)"},
      {"Log|*.log|left over", "Log (*.log)"},
      {"", ""},
      {"Log", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(WindowFilter(c.filter), c.expected) << c.filter;
}

TEST(UsedPositions, ShowWhatWasCounted) {
  const struct {
    int first, size, usedFrom, usedTo, most;  // usedFrom > usedTo: nothing was counted
    int from, to;
  } cases[] = {
      {-60, 120, 1, 0, 41, -10, 10},      {-60, 120, -9, 11, 41, -11, 13},
      {-60, 120, -60, -60, 41, -60, -40}, {-60, 120, 59, 59, 41, 39, 59},
      {-60, 120, -60, 59, 41, -20, 20},   {-60, 120, -60, 59, 120, -60, 59},
      {-40, 80, -40, 39, 41, -20, 20},    {3, 5, 4, 5, 41, 3, 7},
  };
  for (const auto& c : cases) {
    BarChartData data{.first = c.first, .counts = {}, .positionLabel = {}, .countLabel = {}};
    for (int at = c.first; at < c.first + c.size; ++at) {
      data.counts.push_back(at == c.usedFrom || at == c.usedTo ? c.usedFrom <= c.usedTo : 0);
    }
    const auto [from, to] = UsedPositions(data, c.most);
    EXPECT_TRUE(from == c.from && to == c.to) << c.usedFrom << ".." << c.usedTo << " of " << c.first
                                              << "+" << c.size << ": " << from << ".." << to;
  }
}

TEST(BarChart, IsAPictureInTheSchemesColours) {
  for (const bool dark : {false, true}) {
    BarChart chart;
    chart.setPalette(SchemePalette(dark ? Scheme::kDark : Scheme::kLight));
    chart.SetData(
        {.first = -2, .counts = {0, 65535, 3}, .positionLabel = "Tap", .countLabel = "Count"});
    chart.ShowPositions(-2, 0);
    QImage picture;
    ASSERT_TRUE(picture.loadFromData(QByteArray::fromStdString(chart.Png(640, 320)), "PNG"));
    EXPECT_EQ(picture.size(), QSize(640, 320)) << dark;
    EXPECT_EQ(picture.pixelColor(2, 2).lightness() < 128, dark) << dark;
    // The one high bar stands in the middle.
    EXPECT_NE(picture.pixelColor(350, 200), picture.pixelColor(2, 2)) << dark;
  }
}

TEST(BarChart, HasItsNumbersAsItsLanguageWritesThem) {
  const QLocale before;
  const auto picture = [&](const char* locale, const QLocale& users) {
    QLocale::setDefault(users);
    std::string png =
        BarChartPng({0, {1000, 65535}, "Tap", "Count", locale});  // 10,000 or 10.000 at the axis
    QLocale::setDefault(before);
    return png;
  };
  const QLocale german(QLocale::German), english(QLocale::English);
  EXPECT_EQ(picture("de", english), picture("", german));
  EXPECT_EQ(picture("en", german), picture("", english));
  EXPECT_NE(picture("de", english), picture("en", english));
}

}  // namespace
}  // namespace ostrel
