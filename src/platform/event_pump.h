#pragma once

namespace ostrel {

/// Lets events run while a call to the server waits, so that the window stays alive; nothing can be
/// clicked meanwhile. Returns as soon as anything happened, after `atMostMs` at the latest.
void PumpEvents(int atMostMs);

}  // namespace ostrel
