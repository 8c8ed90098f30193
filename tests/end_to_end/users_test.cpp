// Users and rights through the command line, the real server and simulated devices; passwords at a
// real terminal.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <QJsonArray>

#include "end_to_end/programs.h"
#include "kit/scripted_device.h"
#include "simulator/pty.h"

namespace ostrel {
namespace {

TEST(UsersEndToEnd, EveryOperationAtAProtectedDevice) {
  const Programs programs;
  std::unique_ptr<QProcess> simulator;
  programs.UseTcp(programs.StartSimulator(simulator).toInt());
  const struct {
    QStringList arguments;
    QByteArray input;
    int status;
    QByteArray told;  // somewhere on either stream
  } steps[] = {
      {{"users", "set", "2", "--grant", "5", "--timeout", "0"}, "4711\n", 1, "access denied"},
      {{"login", "1"}, "0815\n", 1, "wrong password"},
      {{"login", "1"}, "4711\n", 0, R"({"user": 1, "grant": 5})"},
      {{"users", "set", "2", "--grant", "1", "--timeout", "65535"}, "4711\n", 0, "settingsSent"},
      {{"users", "set", "0", "--grant", "3", "--timeout", "7"}, "4711\n", 0, "settingsSent"},
      {{"users", "password", "2"}, "4711\nx\ny\n4712\n4712\n", 0, "1257"},
      {{"users", "ports", "--com1", "0", "--com2", "1", "--com4", "1"}, "4711\n", 0, "1155"},
      {{"users"}, "", 0, R"("name": "User 2", "passwordSet": true, "grant": 1, "timeout": 65535})"},
      {{"login", "2"}, "4712\n", 0, R"({"user": 2, "grant": 1})"},
      {{"logout"}, "", 0, "loggedOut"},
      {{"whoami"}, "", 0, R"({"user": 0, "grant": 3})"},
      {{"login", "1"}, "4711\n", 0, "\"grant\": 5"},
      {{"users", "unprotect", "--yes"}, "4711\n", 0, "unprotected"},
      {{"users"}, "", 0, "10342"},
      {{"users", "password", "1"}, "007\n007\n", 0, "passwordSet"},
  };
  for (const auto& step : steps) {
    const Outcome done =
        programs.Run(QStringList{"--station", "B2", "--json"} + step.arguments, step.input);
    const QByteArray all = done.out + done.err;
    EXPECT_EQ(done.status, step.status) << step.arguments.join(' ').toStdString() << all.data();
    EXPECT_TRUE(all.contains(step.told)) << step.arguments.join(' ').toStdString() << all.data();
    for (const char* secret : {"4711", "4712", "0815"}) EXPECT_FALSE(all.contains(secret));
  }
}

bool Echoes(int terminal) {
  termios now;
  return tcgetattr(terminal, &now) == 0 && (now.c_lflag & ECHO) != 0;
}

TEST(UsersEndToEnd, APasswordIsHiddenAndTheTerminalGivenBack) {
  const Programs programs;
  ASSERT_EQ(programs.Run({"identify"}).status, 0);
  programs.Enter();
  for (const int end : {0, SIGTERM, SIGINT, SIGHUP}) {
    simulator::Pty terminal;
    ASSERT_EQ(terminal.Error(), "");
    const int host = open(terminal.Name().c_str(), O_RDWR | O_NOCTTY);
    termios cooked = {};
    tcgetattr(host, &cooked);
    cooked.c_lflag |= ECHO | ICANON;
    ASSERT_EQ(tcsetattr(host, TCSANOW, &cooked), 0);
    const pid_t child = fork();
    if (child == 0) {
      for (const int stream : {0, 1, 2}) dup2(host, stream);
      execl(OSTREL_PROGRAMS "/ostrel", "ostrel", "--station", "B2", "login", "2", nullptr);
      _exit(127);
    }
    EXPECT_TRUE(WaitUntil([&] { return !Echoes(host); })) << end;
    if (end == 0) {
      EXPECT_EQ(write(terminal.Master(), "1234\n", 5), 5);
    } else {
      EXPECT_EQ(kill(child, end), 0);
    }
    int status = -1;
    EXPECT_TRUE(WaitUntil([&] { return waitpid(child, &status, WNOHANG) == child; })) << end;
    EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, end);
    EXPECT_TRUE(Echoes(host)) << end;
    char shown[4096] = {};
    EXPECT_GT(read(terminal.Master(), shown, sizeof shown - 1), 0);
    EXPECT_EQ(std::string(shown).find("1234"), std::string::npos) << shown;
    close(host);
  }
}

}  // namespace
}  // namespace ostrel
