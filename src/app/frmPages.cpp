#include "app/frmPages.h"

#include <QLabel>
#include <QStackedWidget>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

#include "base/texts.h"
#include "device/clsDevice.h"
#include "device/models.h"

namespace ostrel {

#define FEATURE(name, group, title, models, needs) Page* Make##name##Page(const Page::Seat& seat);
#include "app/features.inc"
#undef FEATURE

namespace {

struct Feature {
  int groupId;
  int titleId;
  std::span<const int> models;
  Needs needs;
  Page* (*make)(const Page::Seat& seat);
};

constexpr Feature kFeatures[] = {
#define FEATURE(name, group, title, models, needs) {group, title, models, needs, &Make##name##Page},
#include "app/features.inc"
#undef FEATURE
};

}  // namespace

frmPages::frmPages(Page::Seat seat)
    : seat_(std::move(seat)),
      captions_(seat_.desk.texts),
      pages_(std::size(kFeatures), nullptr),
      tvwPages(Named(new QTreeWidget, "tvwPages")),
      stack_(new QStackedWidget),
      lblNoPage(Named(new QLabel, "lblNoPage")) {
  tvwPages->setHeaderHidden(true);
  tvwPages->setMinimumWidth(120);
  lblNoPage->setTextFormat(Qt::PlainText);
  lblNoPage->setAlignment(Qt::AlignCenter);
  lblNoPage->setWordWrap(true);
  stack_->addWidget(lblNoPage);
  addWidget(tvwPages);
  addWidget(stack_);
  setStretchFactor(1, 1);
  setSizes({240, 710});
  setChildrenCollapsible(false);
  AddPages();
  captions_.Add([this] { ShowAvailability(); });
}

void frmPages::AddPages() {
  QTreeWidgetItem* group = nullptr;
  int groupId = 0;
  const auto caption = [this](QTreeWidgetItem* item, int id) {
    captions_.Add([this, item, id] { item->setText(0, captions_.Text(id)); });
  };
  for (const Feature& feature : kFeatures) {
    if (feature.groupId != groupId) {
      group = new QTreeWidgetItem(tvwPages);
      group->setFlags(Qt::ItemIsEnabled);
      group->setExpanded(true);
      groupId = feature.groupId;
      caption(group, groupId);
    }
    auto* item = new QTreeWidgetItem(group);
    item->setData(0, Qt::UserRole, static_cast<int>(items_.size()));
    caption(item, feature.titleId);
    items_.push_back(item);
  }
  tvwPages->setCurrentItem(items_.front());
  connect(tvwPages, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    const QVariant index = item != nullptr ? item->data(0, Qt::UserRole) : QVariant();
    if (index.isValid()) ShowPage(static_cast<std::size_t>(index.toInt()));
  });
}

Availability frmPages::On(std::size_t index) const {
  const Selection& selected = seat_.desk.session.Selected();
  const auto model = selected.GetKenn() ? std::optional(selected.GetTypeCode()) : std::nullopt;
  return AvailabilityOf(kFeatures[index].models, kFeatures[index].needs, model);
}

void frmPages::ShowPage(std::size_t index) {
  shown_ = index;
  if (On(index) == Availability::kAbsent) return stack_->setCurrentWidget(lblNoPage);
  Page*& page = pages_[index];
  if (page == nullptr) {
    page = kFeatures[index].make(seat_);
    page->DeviceChanged();
    stack_->addWidget(page);
    EnableCommands(free_);
  }
  stack_->setCurrentWidget(page);
}

void frmPages::ShowAvailability() {
  for (std::size_t n = 0; n < items_.size(); ++n) {
    items_[n]->setDisabled(On(n) == Availability::kAbsent);
  }
  lblNoPage->setText(captions_.Filled(text::kPageNotOnModel,
                                      ModelName(seat_.desk.session.Selected().GetTypeCode())));
  ShowPage(shown_);
}

void frmPages::EnableCommands(bool free) {
  free_ = free;
  for (std::size_t n = 0; n < pages_.size(); ++n) {
    if (pages_[n] != nullptr) pages_[n]->EnableCommands(free && On(n) == Availability::kUsable);
  }
}

void frmPages::SetCaptions() {
  captions_.SetAll();
  for (Page* page : pages_) {
    if (page != nullptr) page->SetCaptions();
  }
}

void frmPages::DeviceChanged() {
  ShowAvailability();
  for (Page* page : pages_) {
    if (page != nullptr) page->DeviceChanged();
  }
  EnableCommands(free_);
}

void frmPages::Read() {
  Page* const page = pages_[shown_];
  if (page != nullptr && page == stack_->currentWidget()) page->Read();
}

void frmPages::Tick(int intervalMs, bool mayRead) {
  for (Page* page : pages_) {
    if (page != nullptr) page->Tick(intervalMs, mayRead);
  }
}

bool frmPages::MayClose() {
  return std::all_of(pages_.begin(), pages_.end(),
                     [](Page* page) { return page == nullptr || page->MayClose(); });
}

void frmPages::KeepUnsaved(bool unasked) {
  for (Page* page : pages_) {
    if (page != nullptr) page->KeepUnsaved(unasked);
  }
}

}  // namespace ostrel
