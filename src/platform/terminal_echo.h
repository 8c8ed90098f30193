#pragma once

namespace ostrel {

/// Whether the terminal at standard input shows what is typed. A signal that ends the process while
/// it does not gives the terminal back as it was.
void ShowTyping(bool show);

}  // namespace ostrel
