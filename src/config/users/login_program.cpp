#include "config/users/login_program.h"

#include <system_error>

namespace ostrel {

bool LoginProgramShow(Desktop& desktop) {
  if (desktop.RaiseWindow("login")) return true;
  const std::filesystem::path own = desktop.ProgramFolder();
  for (const std::filesystem::path& folder : {own / ".." / "Login", own}) {
    const std::filesystem::path program = (folder / "OstrelLogin.exe").lexically_normal();
    std::error_code ignored;
    if (!std::filesystem::exists(program, ignored)) continue;
    if (desktop.StartProgram(program, {"/start=login"})) return true;
  }
  return false;
}

}  // namespace ostrel
