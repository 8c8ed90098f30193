#pragma once

#include <QSplitter>
#include <vector>

#include "app/availability.h"
#include "widgets/captions.h"
#include "widgets/page.h"

class QLabel;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace ostrel {

/// The tree of the pages and, beside it, the one that is shown. Pages are made when they are shown
/// for the first time; all of them are told what happens in the order of the features.
class frmPages : public QSplitter {
 public:
  explicit frmPages(Page::Seat seat);

  /// Whether commands may be started: nothing is under way.
  void EnableCommands(bool free);
  void SetCaptions();
  /// Another device was selected, or none.
  void DeviceChanged();
  /// Reads the page that is shown.
  void Read();
  /// Lets pages be read that are to be now and then; `intervalMs` went by since the last time.
  void Tick(int intervalMs, bool mayRead);
  bool MayClose();
  void KeepUnsaved(bool unasked);

 private:
  void AddPages();
  void ShowPage(std::size_t index);
  void ShowAvailability();
  Availability On(std::size_t index) const;

  const Page::Seat seat_;
  Captions captions_;
  // By index of the features.
  std::vector<Page*> pages_;  // null until shown
  std::vector<QTreeWidgetItem*> items_;
  std::size_t shown_ = 0;
  bool free_ = false;
  QTreeWidget* tvwPages;
  QStackedWidget* stack_;
  QLabel* lblNoPage;  // shown instead of a page that the model does not have
};

}  // namespace ostrel
