#pragma once

namespace ostrel {

/// Whether the terminal at standard input shows what is typed. A signal that ends or stops the
/// process while it does not gives the terminal back as it was, until the process goes on.
void ShowTyping(bool show);

}  // namespace ostrel
