// Time and memory until the first window is painted, against a window with nothing in it.

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRuns = 15;

struct Sample {
  double ms = 0;
  long kib = 0;
};

/// Starts a program in a process of its own; -1 when that fails.
pid_t Start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& part : command) arguments.push_back(const_cast<char*>(part.c_str()));
  arguments.push_back(nullptr);
  const pid_t pid = fork();
  if (pid != 0) return pid;
  execvp(arguments[0], arguments.data());
  _exit(127);
}

/// A display of this bench's own.
class Display {
 public:
  Display() {
    int ends[2];
    if (pipe(ends) != 0) return;
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    pid_ = Start({"Xvfb", "-screen", "0", "1024x768x24", "-nolisten", "tcp", "-displayfd",
                  std::to_string(ends[1])});
    close(ends[1]);
    std::string number;
    for (char byte; read(ends[0], &byte, 1) == 1 && byte != '\n';) number += byte;
    close(ends[0]);
    ready_ = !number.empty();
    setenv("DISPLAY", (":" + number).c_str(), 1);
  }
  ~Display() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  bool Ready() const { return ready_; }

 private:
  pid_t pid_ = -1;
  bool ready_ = false;
};

/// Settings as on the first day, removed at the end.
class FreshSettings {
 public:
  FreshSettings() : folder_(std::filesystem::temp_directory_path() / "bench_startup_XXXXXX") {
    if (mkdtemp(folder_.data()) == nullptr) return;
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
      setenv(name, folder_.c_str(), 1);
  }
  ~FreshSettings() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

 private:
  std::string folder_;
};

std::optional<Sample> Measure(const std::string& program) {
  const auto start = Clock::now();
  const pid_t pid = Start({program});
  int status = -1;
  rusage usage{};
  if (wait4(pid, &status, 0, &usage) != pid || status != 0) return std::nullopt;
  const std::chrono::duration<double, std::milli> passed = Clock::now() - start;
  return Sample{passed.count(), usage.ru_maxrss};
}

template <typename Number>
Number Median(const std::vector<Sample>& samples, Number Sample::*member) {
  std::vector<Number> numbers;
  for (const Sample& sample : samples) numbers.push_back(sample.*member);
  std::sort(numbers.begin(), numbers.end());
  return numbers[numbers.size() / 2];
}

void Print(const char* name, const std::vector<Sample>& samples) {
  std::printf("%-16s %8.1f ms %8.1f MiB\n", name, Median(samples, &Sample::ms),
              static_cast<double>(Median(samples, &Sample::kib)) / 1024);
}

int Compare(const std::filesystem::path& folder, int runs) {
  // The first run of each only warms the caches.
  std::vector<Sample> ours, blank;
  for (int run = 0; run <= runs; ++run) {
    const auto one = Measure(folder / "ostrel-service");
    const auto other = Measure(folder / "blank_window");
    if (!one || !other) {
      std::fputs("bench_startup: a program did not get as far as its first window\n", stderr);
      return 1;
    }
    if (run == 0) continue;
    ours.push_back(*one);
    blank.push_back(*other);
  }
  std::printf("first painted window, medians of %d runs\n", runs);
  Print("ostrel-service", ours);
  Print("blank window", blank);
  std::printf("%-16s %8.2f    %8.2f\n", "ratio",
              Median(ours, &Sample::ms) / Median(blank, &Sample::ms),
              static_cast<double>(Median(ours, &Sample::kib)) /
                  static_cast<double>(Median(blank, &Sample::kib)));
  return 0;
}

}  // namespace

/// bench_startup [RUNS]
int main(int argc, char** argv) {
  int runs = kRuns;
  if (argc > 1) std::from_chars(argv[1], argv[1] + std::string_view(argv[1]).size(), runs);
  const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path();
  const FreshSettings settings;
  const Display display;
  if (!display.Ready() || runs < 1) {
    std::fputs("usage: bench_startup [RUNS]; Xvfb must be installed\n", stderr);
    return 1;
  }
  setenv("LD_PRELOAD", (folder / "libfirst_paint.so").c_str(), 1);
  return Compare(folder, runs);
}
