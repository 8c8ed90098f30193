#include "platform/terminal_echo.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cstddef>
#include <iterator>

namespace ostrel {

namespace {

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

termios asItWas;
struct sigaction earlier[std::size(kEnding)];
bool hidden = false;

void GiveBack(int number) {
  tcsetattr(STDIN_FILENO, TCSANOW, &asItWas);
  // The signal does what it does without this handler once the handler returns.
  raise(number);
}

void Hide() {
  if (tcgetattr(STDIN_FILENO, &asItWas) != 0) return;
  struct sigaction action = {};
  action.sa_handler = &GiveBack;
  sigemptyset(&action.sa_mask);
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (std::size_t n = 0; n < std::size(kEnding); ++n) {
    sigaction(kEnding[n], nullptr, &earlier[n]);
    // A signal that is ignored, as by nohup, stays so.
    if (earlier[n].sa_handler != SIG_IGN) sigaction(kEnding[n], &action, nullptr);
  }
  termios silent = asItWas;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSADRAIN, &silent);
  hidden = true;
}

}  // namespace

void ShowTyping(bool show) {
  if (show != hidden) return;
  if (!show) return Hide();
  tcsetattr(STDIN_FILENO, TCSADRAIN, &asItWas);
  for (std::size_t n = 0; n < std::size(kEnding); ++n) sigaction(kEnding[n], &earlier[n], nullptr);
  hidden = false;
}

}  // namespace ostrel
