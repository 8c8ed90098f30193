// Loaded before Qt: ends the process when its first painted window goes to the screen.

#include <unistd.h>

class QRegion;
class QWindow;
class QPoint;

class QBackingStore {
 public:
  void flush(const QRegion& region, QWindow* window, const QPoint& offset);
};

void QBackingStore::flush(const QRegion&, QWindow*, const QPoint&) {
  _exit(0);
}
