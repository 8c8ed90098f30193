#include "system.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "wire/connections.h"

namespace ostrel::bench {

std::array<int, 2> NewPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return ends;
}

int RunMain(int argc, char** argv, int (*bench)(int argc, char** argv)) {
  const bool desktop = argc > 1 && std::string_view(argv[1]) == "--glib";
  if (!desktop) setenv("QT_NO_GLIB", "1", 1);
  return RunGuarded([&](const std::filesystem::path& folder) {
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    return bench(argc, argv);
  });
}

Server::Server()
    : log_(NewPipe()), process_([this] {
        const auto program =
            std::filesystem::read_symlink("/proc/self/exe").replace_filename("ostrel-server");
        dup2(log_[1], STDERR_FILENO);
        execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        throw std::runtime_error(program.string() + " does not start");
      }) {
  close(log_[1]);
  std::string text;
  char bytes[1024];
  while (text.find("listening") == std::string::npos) {
    const ssize_t count = read(log_[0], bytes, sizeof(bytes));
    if (count <= 0) throw std::runtime_error("the server does not listen: " + text);
    text.append(bytes, static_cast<std::size_t>(count));
  }
}

Server::~Server() {
  close(log_[0]);
}

Program::Program(int port) {
  const Connection connection{
      .name = "bench", .kind = "tcp", .host = "127.0.0.1", .port = port, .device = {}};
  Connections(settings_).Add(connection);
  link_.LoadSettings();
  link_.OfferChooser(false);
  if (const Error error = link_.ConnectionOpen(connection.name)) {
    throw std::runtime_error("no connection: " + error.detail);
  }
}

std::string Program::Exchange(const std::string& line) {
  const Answer answer = link_.CommandExchangeCode(link_.CurrentChannel(), line);
  if (!answer.Ok()) throw std::runtime_error("no answer: " + std::to_string(answer.error.code));
  return answer.text;
}

}  // namespace ostrel::bench
