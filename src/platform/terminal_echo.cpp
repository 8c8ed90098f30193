#include "platform/terminal_echo.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>

namespace ostrel {

namespace {

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

termios asItWas, silent;
bool hidden = false;

/// What a signal does while nothing is shown, and what it did before.
struct Handled {
  int number;
  struct sigaction earlier;
};
Handled handled[std::size(kEnding) + 2];

void Handle(Handled& one, int number, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = flags;
  one.number = number;
  sigaction(number, nullptr, &one.earlier);
  // A signal that is ignored, as by nohup, stays so.
  if (one.earlier.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
}

void GiveBack(int number) {
  tcsetattr(STDIN_FILENO, TCSANOW, &asItWas);
  // The signal does what it does without this handler once the handler returns.
  raise(number);
}

/// The shell may have used the terminal meanwhile.
void GoOn(int /*number*/) {
  const int error = errno;
  tcsetattr(STDIN_FILENO, TCSANOW, &silent);
  errno = error;
}

void Pause(int number) {
  const int error = errno;
  struct sigaction mine = {};
  sigaction(number, nullptr, &mine);
  mine.sa_handler = &Pause;
  tcsetattr(STDIN_FILENO, TCSANOW, &asItWas);
  raise(number);  // stops here
  sigaction(number, &mine, nullptr);
  // Where nobody could start it again the system does not stop it, and no signal says so.
  GoOn(number);
  errno = error;
}

void Hide() {
  if (tcgetattr(STDIN_FILENO, &asItWas) != 0) return;
  silent = asItWas;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  Handled* next = handled;
  for (const int ending : kEnding)
    Handle(*next++, ending, &GiveBack, static_cast<int>(SA_RESETHAND));
  // What is being read goes on after a pause.
  Handle(*next++, SIGTSTP, &Pause, static_cast<int>(SA_RESETHAND | SA_NODEFER | SA_RESTART));
  Handle(*next, SIGCONT, &GoOn, SA_RESTART);
  tcsetattr(STDIN_FILENO, TCSADRAIN, &silent);
  hidden = true;
}

}  // namespace

void ShowTyping(bool show) {
  if (show != hidden) return;
  if (!show) return Hide();
  tcsetattr(STDIN_FILENO, TCSADRAIN, &asItWas);
  for (const Handled& one : handled) sigaction(one.number, &one.earlier, nullptr);
  hidden = false;
}

}  // namespace ostrel
